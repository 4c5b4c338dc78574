#include "app/setup/setup_dialog.h"

#include "app/select_record.h"
#include "platform/numbers.h"

namespace quillary {

namespace {

// Chooses a button of the group, or none (null).
void Choose(QButtonGroup& group, QAbstractButton* choice) {
  // An exclusive group does not let go of its last choice.
  group.setExclusive(false);
  for (QAbstractButton* button : group.buttons()) button->setChecked(false);
  group.setExclusive(true);
  if (choice != nullptr) choice->setChecked(true);
  // Tab stops once in a group: at the choice, not at the button that last had the focus.
  const QAbstractButton* stop = choice != nullptr ? choice : group.buttons().first();
  for (QAbstractButton* button : group.buttons()) {
    button->setFocusPolicy(button == stop ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

// No selection where the list has no such line.
void Select(QComboBox& list, int index) {
  list.setCurrentIndex(index < list.count() ? index : -1);
}

std::uint8_t Selected(const QComboBox& list, std::uint8_t withoutSelection) {
  const int index = list.currentIndex();
  return index < 0 ? withoutSelection : static_cast<std::uint8_t>(index);
}

}  // namespace

SetupDialog::SetupDialog(SharedData& shared, Profile& profile, Records& records, Hub& hub,
                         Commands& commands, MsgBoxSnglTxt& msgBoxSnglTxt)
    : Form(QStringLiteral("SetupDialog")),
      shared_(shared),
      profile_(profile),
      records_(records),
      hub_(hub),
      commands_(commands),
      msgBoxSnglTxt_(msgBoxSnglTxt) {
  setWindowTitle(QStringLiteral("Quillary Setup"));
  LayOut();
  connect(OptShowName, &OptionButton::DblClick, BtnOK, &QPushButton::click);
  connect(OptShowCompany, &OptionButton::DblClick, BtnOK, &QPushButton::click);
  connect(&commPort_, &QButtonGroup::idClicked, this,
          [this](int port) { shared_.CommPort = static_cast<std::uint8_t>(port); });
  connect(OptToneDial, &OptionButton::clicked, this, [this] { shared_.DialSystem = "DT"; });
  connect(OptPulseDial, &OptionButton::clicked, this, [this] { shared_.DialSystem = "DP"; });
  connect(ChkUsePrefix, &QCheckBox::clicked, this, &SetupDialog::ChkUsePrefix_Click);
  connect(BtnOK, &QPushButton::clicked, this, &SetupDialog::BtnOK_Click);
  connect(BtnCancel, &QPushButton::clicked, this, &SetupDialog::BtnCancel_Click);
  SetDefaultButton(BtnOK);
  SetCancelButton(BtnCancel);
  SetOwner(hub.MainWindow());
}

void SetupDialog::ShowSetup() {
  if (!IsLoaded()) Form_Load();
  MoveToCorner(hub_.MainGeometry());
  ShowForm();
  hub_.EnableMain(false);
}

void SetupDialog::Form_Load() {
  const auto read = [this](std::string_view key) {
    return profile_.ReadEntry(shared_.PrefsFile, shared_.PrefsSection, key);
  };
  viewMode_ = shared_.ViewMode;
  storedNameStyle_ = ToByte(read(PrefsKey::NameField));
  Select(*LstNameStyle, storedNameStyle_);
  // The list may be in another order for the moment.
  const bool isByName = ToByte(read(PrefsKey::Show)) == 0;
  Choose(show_, isByName ? OptShowName : OptShowCompany);

  shared_.CommPort = ToByte(read(PrefsKey::CommPort));
  shared_.DialSystem = read(PrefsKey::DialSystem);
  Choose(commPort_, commPort_.button(shared_.CommPort));
  const bool isTone = shared_.DialSystem == "DT";
  const bool isPulse = shared_.DialSystem == "DP";
  Choose(dialSystem_, isTone ? OptToneDial : isPulse ? OptPulseDial : nullptr);
  ChkTips->setChecked(TipsAtStart(profile_, shared_));

  ChkUsePrefix->setChecked(Val(read(PrefsKey::UsePrefix)) != 0);
  Select(*LstPrefixSeparator, shared_.PrefixSprt);
  for (std::size_t i = 0; i < txtPrefix_.size(); ++i) {
    txtPrefix_.at(i)->setText(QString::fromStdString(shared_.*PrefixKeys.at(i).Text));
    txtPrefix_.at(i)->setCursorPosition(0);
  }
  ChkUsePrefix_Click();
  for (std::size_t i = 0; i < chkCopy_.size(); ++i) {
    chkCopy_.at(i)->setChecked(shared_.CopyValues.at(i) != 0);
  }
}

void SetupDialog::Form_Unload() {
  // However Setup was closed: no later one leads to the dialer.
  if (shared_.MsgBoxAnswer == SetupForDialer) shared_.MsgBoxAnswer = 0;
  hub_.SetPanel(1, QString());
  hub_.EnableMain(true);
}

void SetupDialog::ChkUsePrefix_Click() {
  LstPrefixSeparator->setEnabled(ChkUsePrefix->isChecked());
  for (QLineEdit* box : txtPrefix_) box->setEnabled(ChkUsePrefix->isChecked());
}

void SetupDialog::BtnOK_Click() {
  const std::int16_t askedBy = shared_.MsgBoxAnswer;
  const RunTimeError error = Store();
  if (error != RunTimeError::None) {
    msgBoxSnglTxt_.ShowMsg(QStringLiteral("The preferences could not be saved: ") +
                               QString::fromStdString(RunTimeErrorText(error)) +
                               QStringLiteral(".\rNothing was changed. You can try again."),
                           MsgButtons::Left, QStringLiteral("OK"), QString(), MsgIcon::Critical,
                           windowTitle());
    shared_.MsgBoxAnswer = askedBy;
    return;
  }
  HideForm();
  hub_.BringToFront();
  if (shared_.ViewMode != viewMode_) records_.ShowRecords();
  SelectRecord(shared_, hub_, shared_.CurRecordNo);
  Unload();
  // Before the dialer, which disables the main window.
  hub_.SetData();
  if (askedBy == SetupForDialer) {
    shared_.MsgBoxAnswer = 1;
    commands_.OpenDialer();
  }
}

void SetupDialog::BtnCancel_Click() {
  shared_.MsgBoxAnswer = 0;
  Unload();
}

RunTimeError SetupDialog::Store() {
  ProfileUpdate update(profile_);
  Preferences& preferences = shared_;
  update.OnUndo([this, &preferences, before = preferences, viewMode = shared_.ViewMode] {
    preferences = before;
    shared_.ViewMode = viewMode;
  });
  TakeChoices();
  const RunTimeError error = StorePreferences(profile_, shared_, ChkTips->isChecked());
  return error == RunTimeError::None ? update.Commit() : error;
}

void SetupDialog::TakeChoices() {
  shared_.NameStyle = Selected(*LstNameStyle, storedNameStyle_);
  shared_.ViewMode = OptShowCompany->isChecked() ? 1 : 0;
  shared_.UsePrefix = ChkUsePrefix->isChecked();
  shared_.PrefixSprt = Selected(*LstPrefixSeparator, shared_.PrefixSprt);
  for (std::size_t i = 0; i < txtPrefix_.size(); ++i) {
    // A box may not hold every byte of the text that was put in.
    if (!txtPrefix_.at(i)->isModified()) continue;
    shared_.*PrefixKeys.at(i).Text = txtPrefix_.at(i)->text().toStdString();
  }
  for (std::size_t i = 0; i < chkCopy_.size(); ++i) {
    shared_.CopyValues.at(i) = chkCopy_.at(i)->isChecked() ? 1 : 0;
  }
}

}  // namespace quillary
