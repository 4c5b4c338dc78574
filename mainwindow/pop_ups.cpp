#include <QGuiApplication>
#include <QStyleHints>
#include <utility>

#include "app/select_record.h"
#include "mainwindow/main_dialog.h"

namespace quillary {

void MainDialog::ConnectButtons() {
  BtnCopy->MouseDown = [this](const QMouseEvent& event) { return BtnCopy_MouseDown(event); };
  BtnNew->MouseDown = [this](const QMouseEvent& event) { return BtnNew_MouseDown(event); };
  BtnDelete->MouseDown = [this](const QMouseEvent& event) { return BtnDelete_MouseDown(event); };
  // By the keyboard.
  connect(BtnCopy, &QPushButton::clicked, this, &MainDialog::CopySelected);
  connect(BtnExchange, &QPushButton::clicked, this, &MainDialog::BtnExchange_Click);
  connect(LstNames, &ListBox::DblClick, this, &MainDialog::CopySelected);

  connect(StatBar, &StatusBar::MouseDown, this,
          [this](int panel, QMouseEvent* event) { StatBar_MouseDown(panel, *event); });
  connect(StatBar, &StatusBar::MouseMove, this, &MainDialog::StatBar_MouseMove);
  connect(StatBar, &StatusBar::PanelDblClick, this, &MainDialog::StatBar_PanelDblClick);

  connect(&quillMnu_, &QuillMnu::MnuNameStyleArray_Click, this,
          &MainDialog::MnuNameStyleArray_Click);
  connect(&quillMnu_, &QuillMnu::MnuCopyArray_Click, this, &MainDialog::MnuCopyArray_Click);
  connect(&quillMnu_, &QuillMnu::MnuViewArray_Click, this, &MainDialog::MnuViewArray_Click);
  // By itself as well as out of MnuLstNames.
  connect(quillMnu_.MnuExchange, &QMenu::aboutToShow, this, &MainDialog::MnuExchange_Open);
}

bool MainDialog::BtnCopy_MouseDown(const QMouseEvent& event) {
  if (HeldKeys(event) == Qt::NoModifier) {
    CopySelected();
  } else {
    CopyAll();
  }
  return true;
}

bool MainDialog::BtnNew_MouseDown(const QMouseEvent& event) {
  // Without a name to duplicate it is a click like any other.
  if (!ShiftAlone(event) || !AnythingToShow()) return false;
  commands_->ShowDuplicateDialog();
  return true;
}

bool MainDialog::BtnDelete_MouseDown(const QMouseEvent& event) {
  if (!ShiftAlone(event)) return false;
  // Each further press of a double or triple click would delete one more.
  const quint64 before = std::exchange(deletePressedAt_, event.timestamp());
  const auto interval =
      static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
  if (before == 0 || event.timestamp() - before >= interval) commands_->DeleteWithoutConfirmation();
  return true;
}

void MainDialog::BtnExchange_Click() {
  guard_->InUseTimer.stop();
  quillMnu_.ShowCancel(true);
  QMenu* menu = quillMnu_.MnuExchange;
  connect(
      menu, &QMenu::aboutToHide, this, [this] { guard_->InUseTimer.start(); },
      Qt::SingleShotConnection);
  menu->popup(BtnExchange->mapToGlobal(QPoint(BtnExchange->width(), BtnExchange->height())));
}

void MainDialog::MnuExchange_Open() {
  quillMnu_.EnableRestore(!shared_.InUse && records_->EnableRestoreEntry());
}

QMenu* MainDialog::PopUpOf(const QObject* control) {
  if (control == BtnCopy) return quillMnu_.MnuCopy;
  if (control == BtnNew) return shared_.NoOfRecords > 0 ? quillMnu_.MnuNew : nullptr;
  if (control == BtnDelete) return quillMnu_.MnuDelete;
  if (control == BtnFilter) return quillMnu_.MnuFilter;
  if (control == BtnExchange) return quillMnu_.MnuExchange;
  // The list gets the keyboard, its viewport the mouse.
  if (control == LstNames || control == LstNames->viewport()) return &quillMnu_.MnuLstNames;
  return nullptr;
}

bool MainDialog::PopUp(const QObject* control, QPoint place) {
  QMenu* menu = PopUpOf(control);
  if (menu == nullptr || !static_cast<const QWidget*>(control)->isEnabled()) return false;
  menu->popup(place);
  return true;
}

void MainDialog::StatBar_MouseDown(int panel, const QMouseEvent& event) {
  if (event.button() != Qt::RightButton) return;
  if (panel == 3) quillMnu_.MnuView->popup(event.globalPosition().toPoint());
  if (panel == 4) quillMnu_.MnuFilter->popup(event.globalPosition().toPoint());
}

void MainDialog::StatBar_MouseMove(int panel) {
  if (panel == 3) {
    SetPanel(1, QStringLiteral(
                    "Double-Click to change, for this session only. (Right Click for options)"));
  } else if (panel == 4) {
    SetPanel(1,
             shared_.FilterOn
                 ? QStringLiteral("Double-Click to turn Filter OFF. (Right Click for options)")
                 : QStringLiteral("Double-Click to get Filter dialog. (Right Click for options)"));
  } else {
    SetPanel(1, QString());
  }
}

void MainDialog::StatBar_PanelDblClick(int panel) {
  const QString text = Panel(panel).trimmed();
  if (text == QStringLiteral("Name") || text == QStringLiteral("Company")) {
    SwitchView();
  } else if (text == QStringLiteral("Filter - ON")) {
    commands_->FilterOff();
  } else if (text == QStringLiteral("Filter - OFF")) {
    commands_->ShowFilterDialog();
  }
}

void MainDialog::MnuCopyArray_Click(int index) {
  if (index == 0) {
    CopySelected();
  } else if (index == 1) {
    CopyAll();
  }
}

void MainDialog::MnuViewArray_Click(int index) {
  // Only to the order that is not in force.
  if ((index == 0) != (shared_.ViewMode == 0)) SwitchView();
}

void MainDialog::SwitchView() {
  shared_.ViewMode = shared_.ViewMode == 0 ? 1 : 0;
  records_->ShowRecords();
  SetPanel(1, QString());
  SelectRecord(shared_, *this, shared_.CurRecordNo);
  SetData();
}

}  // namespace quillary
