#include "mainwindow/main_dialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QWindow>

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
  // The list shows a record that cannot be read as an empty one; SetData tells why.
  connect(LstNames, &ListBox::Click, this, [this] { static_cast<void>(LstNames_Click()); });
  connect(&quillMnu_, &QuillMnu::MnuNameStyleArray_Click, this,
          &MainDialog::MnuNameStyleArray_Click);
  MakeDetails();
  MakeCopyBoxes();
  MakeButtons();
  MakeFind();
  LayOut();
  TrackMouse();
}

void MainDialog::Connect(Records& records, Commands& commands) {
  records_ = &records;
  commands_ = &commands;
  quillMnu_.Connect(commands);
  connect(BtnNew, &QPushButton::clicked, this, [&commands] { commands.ShowNewDialog(); });
  connect(BtnFilter, &QPushButton::clicked, this, [&commands] { commands.ShowFilterDialog(); });
  connect(BtnAbout, &QPushButton::clicked, this, [&commands] { commands.ShowAboutDialog(); });
  connect(BtnExit, &QPushButton::clicked, this, [&commands] { commands.ExitApplication(); });
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

void MainDialog::SetLines(const std::vector<std::string>& texts,
                          const std::vector<std::string>& recordNumbers) {
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
  if (isEnabled()) {
    SetData();
  } else {
    RaiseDialogs(*this);
  }
}

void MainDialog::closeEvent(QCloseEvent* event) {
  if (!isEnabled()) {
    event->ignore();
    RaiseDialogs(*this);
    return;
  }
  commands_->ExitApplication();
}

bool MainDialog::BtnNew_MouseDown(const QMouseEvent& event) {
  if (shared_.NoOfRecords <= 0) return event.button() == Qt::RightButton;
  if (event.button() == Qt::RightButton) {
    quillMnu_.MnuNew->popup(event.globalPosition().toPoint());
    return true;
  }
  if (event.button() == Qt::LeftButton && ShiftAlone(event)) {
    commands_->ShowDuplicateDialog();
    return true;
  }
  return false;
}

}  // namespace quillary
