#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <array>
#include <functional>
#include <map>
#include <string>

#include "app/commands.h"
#include "app/hub.h"
#include "app/name_line.h"
#include "app/shared_data.h"
#include "app/sharing_guard.h"
#include "auxiliary/detail_label.h"
#include "auxiliary/list_box.h"
#include "auxiliary/msg_box.h"
#include "auxiliary/percent.h"
#include "mainwindow/command_button.h"
#include "mainwindow/quill_mnu.h"
#include "mainwindow/status_bar.h"
#include "platform/desktop/hurried_presses.h"
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
  // called before it is shown. The other windows are asked for when they are needed.
  void Connect(Records& records, Commands& commands, SharingGuard& guard,
               std::function<Percent&()> percent, std::function<MsgBoxSnglTxt&()> msgBox);

  QuillMnu& Menus() { return quillMnu_; }

  // Lists the names in the other order, by name or by company; the record that is shown stays
  // selected. Holds until the program ends.
  void SwitchView();
  // Put the ticked details, or all of them, on the clipboard, each line ended by a carriage return.
  void CopySelected();
  void CopyAll();
  // What CopySelected copies.
  std::string SelectedDetails() const;

  // Ends the red of the line that a search has found.
  QTimer SearchResultTimer;

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
  void NoteToldFault(RunTimeError error) override;

  // ListHooks
  void SetLines(const TextList& texts, const TextList& recordNumbers) override;
  void InsertLine(std::size_t index, std::string_view text, std::string_view recordNumber) override;
  void RemoveLine(std::size_t index) override;

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void MakeDetails();
  void MakeCopyBoxes();
  void MakeButtons();
  void MakeFind();
  void LayOut();
  void SetTabOrder();

  void Form_Activate();
  // The button that Enter presses where no button has the focus.
  void SetDefaultButton(CommandButton& button);
  void ShowDefaultButton();

  bool MouseDown(const QObject* control, const QMouseEvent& event);
  void FocusChange(const QObject* control, const QFocusEvent& event);

  void ConnectButtons();
  bool BtnCopy_MouseDown(const QMouseEvent& event);
  bool BtnNew_MouseDown(const QMouseEvent& event);
  bool BtnDelete_MouseDown(const QMouseEvent& event);
  void BtnExchange_Click();
  void MnuExchange_Open();
  // The menu that a right click on the control or the menu key opens; null for none.
  QMenu* PopUpOf(const QObject* control);
  // Opens it; false where there is none.
  bool PopUp(const QObject* control, QPoint place);
  void StatBar_MouseDown(int panel, const QMouseEvent& event);
  void StatBar_MouseMove(int panel);
  void StatBar_PanelDblClick(int panel);
  void MnuCopyArray_Click(int index);
  void MnuViewArray_Click(int index);

  // Gives the error of reading the record.
  RunTimeError LstNames_Click();
  void Label_MouseDown(int index, const QMouseEvent& event);
  void Label_MouseMove(int index);
  bool IsDialling() const;
  // Highlights a line, or all lines of the address, and gives all others the normal colour; -1 for
  // none.
  void Highlight(int index);
  // Leaves what a search has found as it is.
  void EndHighlight();
  // The details by the keyboard: the arrow keys go from line to line, the space bar
  // and Enter are a click.
  bool DetailsPanel_KeyDown(const QKeyEvent& event);
  // To the first enabled line from there on.
  void GoToLine(int index, int step);
  // The mouse is over that control or the background, but not over a line that takes it.
  void ShowHint(const QWidget* under);
  void TrackMouse();
  void MnuNameStyleArray_Click(int index);

  std::string LineWithPrefix(std::size_t line) const;

  void ConnectFind();
  // Its caption, which is its hint as well; and what was found, for those who cannot see it while
  // the focus stays where they search.
  void SetBtnFind(const QString& caption, const QString& found = {});
  void TxtFind_GotFocus();
  // The text to find, or where to search.
  void FindBox_LostFocus();
  void BtnFind_Click();
  // Searches the first `Count` lines of the list from the one after the selected line on, and round
  // to that line itself. Where it finds one, CurListIndex is that line. Gives the error that kept
  // records from being read, which were passed over.
  RunTimeError FindFunction(std::int16_t Count, bool& Found);
  void ShowFound();
  void TellNotFound(const QString& text, bool found, RunTimeError error);

  bool AnythingToShow() const;
  void ShowNothing();
  RunTimeError ShowRecord();
  // Tells the user that the selected record cannot be read, `error` being what its reading came to.
  // For all records of a file once, until one of them can be read.
  void TellFault(RunTimeError error);
  void EnableFind(bool enable);
  // Shows a copy flag's choice for a record that has the detail; otherwise an empty, disabled box.
  void SetCopyBox(std::size_t flag, bool present);

  HurriedPresses hurriedPresses_{*this};
  SharedData& shared_;
  Records* records_ = nullptr;
  Commands* commands_ = nullptr;
  SharingGuard* guard_ = nullptr;
  std::function<Percent&()> percent_;
  std::function<MsgBoxSnglTxt&()> msgBox_;
  QuillMnu quillMnu_;
  QPointer<QMessageBox> faultBox_;
  std::map<std::string, RunTimeError> toldFaults_;  // by record file
  QPointer<QWidget> focusBefore_;  // what had the focus when the window was disabled
  CommandButton* defaultButton_ = nullptr;
  quint64 deletePressedAt_ = 0;  // with Shift held; milliseconds, 0 for never
  QString btnFindTag_;
  int keyLine_ = NameLine;            // to which the keyboard has gone
  std::size_t foundLine_ = NameLine;  // which shows what a search has found

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
  QLabel* CopyrightLabel = nullptr;
  QGroupBox* FrmFind;
  QLineEdit* TxtFind = nullptr;
  CommandButton* BtnFind = nullptr;
  QLabel* SrchInLabel = nullptr;
  QComboBox* CboSrchIn = nullptr;
  StatusBar* StatBar;
};

}  // namespace quillary
