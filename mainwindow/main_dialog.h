#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <array>

#include "app/commands.h"
#include "app/hub.h"
#include "app/shared_data.h"
#include "mainwindow/command_button.h"
#include "mainwindow/detail_label.h"
#include "mainwindow/list_box.h"
#include "mainwindow/name_line.h"
#include "mainwindow/quill_mnu.h"
#include "mainwindow/status_bar.h"
#include "store/hooks.h"
#include "store/records.h"

namespace quillary {

// The main window: the names list, the details of the selected record, and the commands.
//
// Each time it becomes the active window it runs SetData. While it is disabled, the dialog that
// disabled it comes to the front instead, and the window cannot be closed. Closing it runs
// ExitApplication.
class MainDialog : public QMainWindow, public Hub, public ListHooks {
  Q_OBJECT

 public:
  explicit MainDialog(SharedData& shared);

  // What the window needs but is made after it, since the store reports to the window. To be
  // called before it is shown.
  void Connect(Records& records, Commands& commands);

  QuillMnu& Menus() { return quillMnu_; }

  // Hub
  void SetData() override;
  void SetPanel(int panel, const QString& text) override { StatBar->SetPanel(panel, text); }
  QString Panel(int panel) const override { return StatBar->Panel(panel); }
  void EnableMain(bool enable) override;
  void BringToFront() override;
  QRect MainGeometry() const override { return frameGeometry(); }
  QWidget& MainWindow() override { return *this; }
  int ListCount() const override { return LstNames->ListCount(); }
  int ItemData(int index) const override { return LstNames->ItemData(index); }
  int NewIndex() const override { return LstNames->NewIndex(); }
  void ShowReadOnly() override;

  // ListHooks
  void SetLines(const std::vector<std::string>& texts,
                const std::vector<std::string>& recordNumbers) override;
  void InsertLine(std::size_t index, std::string_view text, std::string_view recordNumber) override;
  void RemoveLine(std::size_t index) override;

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void MakeDetails();
  void MakeCopyBoxes();
  void MakeButtons();
  void MakeFind();
  void LayOut();

  void Form_Activate();
  bool BtnNew_MouseDown(const QMouseEvent& event);
  // Gives the error of reading the record.
  RunTimeError LstNames_Click();
  void Label_MouseDown(int index, const QMouseEvent& event);
  void Label_MouseMove(int index);
  // Highlights a line, or all lines of the address; -1 for none.
  void Highlight(int index);
  // The mouse is over that control or the background, but not over a line that takes it.
  void ShowHint(const QWidget* under);
  void TrackMouse();
  void MnuNameStyleArray_Click(int index);

  bool AnythingToShow() const;
  void ShowNothing();
  RunTimeError ShowRecord();
  // Tells the user that the selected record cannot be read; once, until it can be or another one
  // is selected.
  void TellFault(RunTimeError error);
  void EnableFind(bool enable);
  // Shows a copy flag's choice for a record that has the detail; otherwise an empty, disabled box.
  void SetCopyBox(std::size_t flag, bool present);

  SharedData& shared_;
  Records* records_ = nullptr;
  Commands* commands_ = nullptr;
  QuillMnu quillMnu_;
  QPointer<QMessageBox> faultBox_;
  std::string faultyRecordNo_;  // that was told
  RunTimeError toldFault_ = RunTimeError::None;
  QPointer<QWidget> focusBefore_;  // what had the focus when the window was disabled

  ListBox* LstNames;
  QFrame* DetailsPanel;
  std::array<DetailLabel*, DetailLineCount> Label{};
  QLabel* Notes = nullptr;
  QGroupBox* DetailsFrame;
  std::array<QCheckBox*, CopyFlagCount> ChkCopy{};
  CommandButton* BtnCopy = nullptr;
  CommandButton* BtnNew = nullptr;
  CommandButton* BtnEdit = nullptr;
  CommandButton* BtnDelete = nullptr;
  CommandButton* BtnFilter = nullptr;
  CommandButton* BtnDial = nullptr;
  CommandButton* BtnExchange = nullptr;
  CommandButton* BtnSetup = nullptr;
  CommandButton* BtnAbout = nullptr;
  CommandButton* BtnExit = nullptr;
  QGroupBox* FrmFind;
  QLineEdit* TxtFind = nullptr;
  CommandButton* BtnFind = nullptr;
  QLabel* SrchInLabel = nullptr;
  QComboBox* CboSrchIn = nullptr;
  StatusBar* StatBar;
};

}  // namespace quillary
