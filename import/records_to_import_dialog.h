#pragma once

#include <QComboBox>
#include <QElapsedTimer>
#include <QPushButton>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "auxiliary/plain_label.h"
#include "import/import_tools.h"
#include "platform/desktop/form.h"
#include "platform/text_search.h"

namespace quillary {

// "Records to Import", the second step of the import: shows the fields of the first lines record by
// record, lets the user say what each field is, and loads the records with OK. Either all of them
// are in the data files, or nothing is; then the user is told why and the step is back with what he
// chose. Made anew for every pass.
class RecordsToImportDialog : public Form {
  Q_OBJECT

 public:
  RecordsToImportDialog(const ImportTools& tools, ImportChoice choice);

  // Both are called before the step is shown, in this order, and give the error that kept the file
  // from being read.

  // Counts the fields of the file's first line. Leaves MsgBoxAnswer at 1; where the delimiter is
  // not in the line, tells the user so and leaves his answer.
  RunTimeError CheckDelimiter();
  // Reads the lines to be imported, with their number in the please-wait window. Where they are too
  // many, or none, asks or tells the user. Leaves MsgBoxAnswer at 0 where nothing is to be imported
  // now. Lets events run.
  RunTimeError ImportLines();

  // Shows the step at the main window's corner.
  void ShowStep();

 Q_SIGNALS:
  // The step has closed: the user wants to go back to the first one.
  void Back();
  // The step has closed, in whatever way, and the import is over.
  void Ended();

 protected:
  void Form_Activate() override;
  void Form_Unload() override;
  QWidget* FirstControl() const override;

 private:
  void MakeFields();
  void MakeInstructions();
  void SetDropList();
  void ShowFieldData();

  void BtnNext_Click();
  void BtnPrev_Click();
  void BtnBack_Click();
  void BtnOK_Click();

  bool IsTaken(const std::string& line) const;
  // Whether to go on with the lines taken so far.
  bool AskWhetherToStop();
  bool AskWhetherToStop(std::size_t room);
  void ShowCount();
  void FillFieldData();

  // What the user is told when nothing was imported; nothing if all went well. `unread`: why the
  // lists, where they were read again, lack records.
  std::optional<QString> Import(RunTimeError& unread);
  FieldArray ImportRecrods(std::size_t lineIndex) const;
  // Whether the answer is `yes`.
  bool Ask(const QString& title, const QString& text, const QString& yes, const QString& no,
           MsgIcon icon);
  void Tell(const QString& title, const QString& text, MsgIcon icon);

  ImportTools tools_;
  ImportChoice choice_;
  std::vector<TextSearch> texts_;  // that are not empty
  std::int16_t FieldCount = 0;
  std::vector<std::string> LinesToImport;
  std::int16_t PreviewLast = 0;
  std::vector<std::vector<std::string>> FieldData;  // of each preview record
  int CurRecord = 0;
  std::vector<int> FieldChoice;
  QElapsedTimer sinceCountShown_;
  bool goesBack_ = false;

  std::array<QComboBox*, MaxImportFields> CboFieldName{};
  std::array<PlainLabel*, MaxImportFields> LblFieldData{};
  QPushButton* BtnPrev;
  QPushButton* BtnNext;
  QPushButton* BtnOK;
  QPushButton* BtnBack;
  QPushButton* BtnCancel;
};

}  // namespace quillary
