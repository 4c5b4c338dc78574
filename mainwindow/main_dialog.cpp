#include "mainwindow/main_dialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QWindow>
#include <utility>

#include "platform/desktop/menu_key.h"
#include "platform/desktop/raise_window.h"
#include "platform/numbers.h"

namespace quillary {

namespace {

// The windows that stand in front of `window`: the message box or the dialogs that disabled it.
void RaiseDialogs(const QWidget& window) {
  if (QWidget* modal = QApplication::activeModalWidget()) {
    RaiseWindow(*modal);
    return;
  }
  for (QWidget* dialog : QApplication::topLevelWidgets()) {
    if (dialog->isVisible() && dialog->windowHandle() != nullptr &&
        dialog->windowHandle()->transientParent() == window.windowHandle()) {
      RaiseWindow(*dialog);
    }
  }
}

}  // namespace

MainDialog::MainDialog(SharedData& shared)
    : shared_(shared),
      LstNames(new ListBox(QStringLiteral("LstNames"))),
      DetailsPanel(new QFrame),
      DetailsFrame(new QGroupBox(QStringLiteral(" Details to copy "))),
      FrmFind(new QGroupBox(QStringLiteral(" Find "))),
      StatBar(new StatusBar(QStringLiteral("StatBar"))) {
  setObjectName(QStringLiteral("MainDialog"));
  LstNames->setAccessibleName(QStringLiteral("Names"));
  connect(LstNames, &ListBox::Click, this, [this] { TellFault(LstNames_Click()); });
  MakeDetails();
  MakeCopyBoxes();
  MakeButtons();
  MakeFind();
  LayOut();
  ConnectButtons();
  ConnectFind();
  TrackMouse();
  SetDefaultButton(*BtnCopy);
}

void MainDialog::Connect(Records& records, Commands& commands, SharingGuard& guard,
                         std::function<Percent&()> percent,
                         std::function<MsgBoxSnglTxt&()> msgBox) {
  records_ = &records;
  commands_ = &commands;
  guard_ = &guard;
  percent_ = std::move(percent);
  msgBox_ = std::move(msgBox);
  quillMnu_.Connect(commands);
  const auto start = [this, &commands](CommandButton* button, void (Commands::*command)()) {
    connect(button, &QPushButton::clicked, this, [&commands, command] { (commands.*command)(); });
  };
  start(BtnNew, &Commands::ShowNewDialog);
  start(BtnEdit, &Commands::ShowEditDialog);
  start(BtnDelete, &Commands::ShowDeleteDialog);
  start(BtnFilter, &Commands::ShowFilterDialog);
  start(BtnDial, &Commands::OpenDialer);
  start(BtnSetup, &Commands::ShowSetup);
  start(BtnAbout, &Commands::ShowAboutDialog);
  start(BtnExit, &Commands::ExitApplication);
}

void MainDialog::EnableMain(bool enable) {
  if (enable == isEnabled()) return;
  if (!enable) focusBefore_ = focusWidget();
  setEnabled(enable);
  // Disabling takes the focus away; the user goes on where he was.
  if (enable && focusBefore_ != nullptr && focusBefore_->isEnabled()) focusBefore_->setFocus();
}

void MainDialog::BringToFront() {
  RaiseWindow(*this);
}

void MainDialog::SetLines(const TextList& texts, const TextList& recordNumbers) {
  LstNames->SetLines(texts, recordNumbers);
}

void MainDialog::InsertLine(std::size_t index, std::string_view text,
                            std::string_view recordNumber) {
  LstNames->InsertLine(static_cast<int>(index), text, ToInt32(recordNumber));
}

void MainDialog::RemoveLine(std::size_t index) {
  LstNames->RemoveLine(static_cast<int>(index));
}

void MainDialog::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  // Not isActiveWindow: that is also true while a dialog in front of this window is active.
  if (event->type() == QEvent::ActivationChange && QApplication::activeWindow() == this) {
    Form_Activate();
  }
}

void MainDialog::Form_Activate() {
  if (!isEnabled() || QApplication::activeModalWidget() != nullptr) {
    RaiseDialogs(*this);
    return;
  }
  // The window also comes back from the progress window of a search, with what that has found.
  DetailLabel* line = Label.at(foundLine_);
  const bool isFound = line->TextColour() == DetailLabel::Colour::Found;
  const std::string RecNo = shared_.CurRecordNo;
  SetData();
  if (isFound && shared_.CurRecordNo == RecNo) line->SetTextColour(DetailLabel::Colour::Found);
}

void MainDialog::closeEvent(QCloseEvent* event) {
  if (!isEnabled()) {
    event->ignore();
    RaiseDialogs(*this);
    return;
  }
  commands_->ExitApplication();
}

// What the controls inside the window get.
bool MainDialog::eventFilter(QObject* object, QEvent* event) {
  // While a dialog is open, panel 1 is the dialog's, and nothing else is to be started.
  if (!isEnabled()) return QMainWindow::eventFilter(object, event);
  switch (event->type()) {
    case QEvent::MouseMove: {
      // The event also goes to the parents of the control under the mouse: it is looked up.
      const QPoint place = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
      ShowHint(childAt(mapFromGlobal(place)));
      break;
    }
    case QEvent::Leave:
      if (object == DetailsPanel) EndHighlight();
      break;
    case QEvent::MouseButtonPress:
      if (MouseDown(object, *static_cast<QMouseEvent*>(event))) return true;
      break;
    case QEvent::ContextMenu: {
      const auto& menu = *static_cast<QContextMenuEvent*>(event);
      // The mouse has opened it when the button went down.
      if (menu.reason() == QContextMenuEvent::Keyboard && PopUp(object, menu.globalPos())) {
        return true;
      }
      break;
    }
    case QEvent::KeyPress:
      if (object == DetailsPanel && DetailsPanel_KeyDown(*static_cast<QKeyEvent*>(event))) {
        return true;
      }
      break;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
      FocusChange(object, *static_cast<QFocusEvent*>(event));
      break;
    default:
      break;
  }
  return QMainWindow::eventFilter(object, event);
}

bool MainDialog::MouseDown(const QObject* control, const QMouseEvent& event) {
  if (control == FrmFind) SetPanel(1, QString());
  if (control == CopyrightLabel && event.button() == Qt::LeftButton) BtnAbout->click();
  return event.button() == Qt::RightButton && PopUp(control, event.globalPosition().toPoint());
}

void MainDialog::FocusChange(const QObject* control, const QFocusEvent& event) {
  if (event.reason() == Qt::PopupFocusReason) {
    if (control == DetailsPanel && event.gotFocus()) {
      Label.at(static_cast<std::size_t>(keyLine_))->SetHasKeyboard(true);
    }
    return;
  }
  if (control == DetailsPanel) {
    if (event.gotFocus()) {
      // Coming back from another window the user goes on where he was.
      const bool isByTab =
          event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason;
      const bool goesOn = !isByTab && Label.at(static_cast<std::size_t>(keyLine_))->isEnabled();
      GoToLine(goesOn ? keyLine_ : NameLine, 1);
    } else {
      Label.at(static_cast<std::size_t>(keyLine_))->SetHasKeyboard(false);
      EndHighlight();
      if (!IsDialling()) SetPanel(1, QString());
    }
  }
  // The control still has the focus of its window.
  if (event.reason() == Qt::ActiveWindowFocusReason) return;
  if (event.gotFocus()) {
    if (control == TxtFind) TxtFind_GotFocus();
    ShowDefaultButton();
  } else if (control == TxtFind || control == CboSrchIn) {
    FindBox_LostFocus();
  }
}

void MainDialog::SetDefaultButton(CommandButton& button) {
  defaultButton_ = &button;
  ShowDefaultButton();
}

void MainDialog::ShowDefaultButton() {
  auto* focused = qobject_cast<CommandButton*>(focusWidget());
  const CommandButton* pressed = focused != nullptr ? focused : defaultButton_;
  for (CommandButton* button : findChildren<CommandButton*>()) {
    button->setDefault(button == pressed);
  }
}

void MainDialog::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isEnter) {
    defaultButton_->click();
  } else if (!OpenMenuByKey(*event, *this)) {
    QMainWindow::keyPressEvent(event);
  }
}

}  // namespace quillary
