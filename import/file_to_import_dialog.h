#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPoint>
#include <QPushButton>
#include <QRadioButton>
#include <array>
#include <memory>

#include "import/file_lists.h"
#include "import/import_tools.h"
#include "import/records_to_import_dialog.h"
#include "platform/desktop/form.h"
#include "platform/desktop/volumes.h"

namespace quillary {

// "File to Import", the first step of the import: the user picks a delimited text file, what stands
// between its fields, and which of its lines to take. The file is read, and the second step opened,
// with OK. Hidden meanwhile, this step comes back as it was with the second one's Back.
//
// The main window is disabled from MnuImport_Click to the end of the second step.
class FileToImportDialog : public Form {
  Q_OBJECT

 public:
  explicit FileToImportDialog(const ImportTools& tools,
                              DriveList::FindVolumes findVolumes = MountedVolumes);

  // Opens the step afresh at the main window's corner. 0: the records will be added to those that
  // are there, otherwise they will replace them.
  void MnuImport_Click(int index);
  // Lets the file list take the text box for a folder to open, a pattern to apply or a file to
  // select. Does nothing where it is none of these.
  void ChangeFileName();

 protected:
  void Form_Activate() override;
  void Form_Unload() override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void MakeFileFrame();
  void MakeDelimiterFrame();
  void MakeRecordsFrame();
  void SetTabOrder();

  void Form_Load();
  void BtnOK_Click();
  void SlctDrive_Change();
  void SlctFile_DblClick();
  void ShowAgain();
  ImportChoice Choice() const;
  RunTimeError OpenSecondStep();
  void Report(RunTimeError error);
  void Tell(const QString& title, const QString& text);

  ImportTools tools_;
  std::unique_ptr<RecordsToImportDialog> secondStep_;
  QPoint place_;  // when it was hidden

  QCheckBox* Append_Replace;
  QGroupBox* Frame1;
  QLineEdit* TxtFileToImport = nullptr;
  DriveList* SlctDrive = nullptr;
  DirList* SlctDir = nullptr;
  FileList* SlctFile = nullptr;
  QGroupBox* Frame2;
  std::array<QRadioButton*, 4> OptRcrdDelimiter{};
  QLineEdit* TxtOtherDelimiter = nullptr;
  QGroupBox* Frame3;
  std::array<QRadioButton*, 2> OptRcrdToImport{};
  std::array<QLineEdit*, 2> TxtRecordsToImport{};
  QPushButton* BtnOK;
  QPushButton* BtnCancel;
};

}  // namespace quillary
