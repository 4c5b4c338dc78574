#include "dialogs/change_dialog.h"

#include <algorithm>
#include <utility>

#include "app/select_record.h"
#include "auxiliary/unread_records.h"
#include "platform/desktop/twips.h"

namespace quillary {

ChangeDialog::ChangeDialog(const QString& name, const Tools& tools, Wording wording)
    : Form(name),
      shared_(tools.Shared),
      records_(tools.Store),
      guard_(tools.Guard),
      hub_(tools.Main),
      msgBoxSnglTxt_(tools.Message),
      pleaseWait_(tools.Wait),
      wording_(std::move(wording)) {
  SetOwner(hub_.MainWindow());
}

void ChangeDialog::SetButtons(QPushButton& change, QPushButton& cancel) {
  connect(&change, &QPushButton::clicked, this, &ChangeDialog::MakeChange);
  connect(&cancel, &QPushButton::clicked, this, &ChangeDialog::Unload);
  SetDefaultButton(&change);
  SetCancelButton(&cancel);
}

void ChangeDialog::EnableOK(bool enable) {
  DefaultButton()->setEnabled(enable);
}

void ChangeDialog::ShowAtCorner() {
  EnableOK(!shared_.InUse);
  MoveToCorner(hub_.MainGeometry());
  ShowForm();
  hub_.EnableMain(false);
}

void ChangeDialog::Form_Activate() {
  hub_.SetPanel(1, windowTitle());
}

void ChangeDialog::Form_Unload() {
  hub_.SetPanel(1, QString());
  hub_.EnableMain(true);
}

void ChangeDialog::MakeChange() {
  guard_.InUseTimer.stop();
  if (const auto refusal = Check()) {
    Tell(*refusal);
    guard_.InUseTimer.start();
    return;
  }
  const bool isShown = IsLoaded();
  const QPoint place = pos();
  // Hidden first: while a dialog is shown, the main window lets it come before itself.
  HideForm();
  hub_.BringToFront();
  pleaseWait_.ShowPleaseWait();
  hub_.SetPanel(1, wording_.Wait);
  pleaseWait_.SetLbl1(wording_.Wait);

  bool comesBack = isShown;
  const auto refusal = TryChange(comesBack);
  guard_.InUseTimer.start();
  if (refusal.has_value()) {
    pleaseWait_.HideForm();
    hub_.SetPanel(1, QString());
    Tell(*refusal);
    if (comesBack) {
      MoveTo(place);
      ComeBack();
    } else {
      if (isShown) Unload();
      hub_.SetData();
    }
    return;
  }
  Unload();
  pleaseWait_.HideForm();
  hub_.BringToFront();
  Select();
  hub_.SetData();
}

std::optional<ChangeDialog::Refusal> ChangeDialog::TryChange(bool& comesBack) {
  // The timer may have had no turn since the other application started.
  guard_.CheckInUse();
  if (shared_.InUse) {
    hub_.ShowReadOnly();
    EnableOK(false);
    return Refusal{wording_.Title,
                   QStringLiteral("Another application is using the data file now.\r"
                                  "Nothing was changed. You can try again when it "
                                  "has ended.")};
  }
  const RunTimeError error = Change();
  if (error == RunTimeError::None) return std::nullopt;
  QString advice = QStringLiteral("You can try again.");
  RunTimeError unread = RunTimeError::None;
  if (records_.MustReadLists(error)) {
    comesBack = FitsNewLists(ReadListsAgain(unread)) && comesBack;
    advice = QStringLiteral("The list has been read again.");
  }
  return Refusal{wording_.Title,
                 QStringLiteral("%1: %2.\rNothing was changed. %3")
                     .arg(wording_.Failed, QString::fromStdString(RunTimeErrorText(error)), advice),
                 MsgIcon::Critical, unread};
}

// Selects the record that was selected, or else what stands in its place. Whether it is there.
bool ChangeDialog::ReadListsAgain(RunTimeError& unread) {
  // An order that cannot be stored now is stored with the next change.
  static_cast<void>(records_.ReadListsAgain(&unread));
  const std::int16_t before = shared_.CurListIndex;
  const bool isListed = SelectRecord(shared_, hub_, shared_.CurRecordNo);
  if (!isListed) {
    const int last = std::max(hub_.ListCount() - 1, 0);
    shared_.CurListIndex = static_cast<std::int16_t>(std::clamp<int>(before, 0, last));
  }
  hub_.SetData();
  hub_.EnableMain(false);
  return isListed;
}

bool ChangeDialog::ReadSelected(const QString& title) {
  const RunTimeError error = records_.ReadRecord(shared_.CurRecordNo);
  if (error == RunTimeError::None) return true;
  hub_.NoteToldFault(error);
  Tell({title,
        QStringLiteral("The record could not be read: %1.")
            .arg(QString::fromStdString(RunTimeErrorText(error))),
        MsgIcon::Critical});
  return false;
}

std::optional<ChangeDialog::Refusal> ChangeDialog::CheckRoom() const {
  if (shared_.NoOfRecords < MaxRecords) return std::nullopt;
  return Refusal{windowTitle(),
                 QStringLiteral("The data file is full: it holds %1 names.").arg(MaxRecords)};
}

void ChangeDialog::Tell(const Refusal& refusal) {
  msgBoxSnglTxt_.ShowMsg(refusal.Text, MsgButtons::Left, QStringLiteral("OK"), QString(),
                         refusal.Icon, refusal.Title);
  if (refusal.Unread != RunTimeError::None) {
    TellUnreadRecords(msgBoxSnglTxt_, refusal.Unread, refusal.Title);
  }
}

QPushButton* MakeButton(QWidget* parent, const QString& name, const QString& caption, int left,
                        int top) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(name);
  Place(*button, left, top, 1215, 375);
  return button;
}

}  // namespace quillary
