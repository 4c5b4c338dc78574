#include "dialogs/new_dialog.h"

#include <algorithm>
#include <limits>

#include "platform/desktop/twips.h"
#include "platform/numbers.h"

namespace quillary {

namespace {

struct Prompt {
  Field Index;
  const char* Text;
};

// What stands in a new record's boxes until the user types over it.
constexpr std::array<Prompt, 4> kPrompts{{{Field::FirstName, "First Name"},
                                          {Field::LastName, "Last Name"},
                                          {Field::Address5, "ZIP/Postal code"},
                                          {Field::Address6, "Country"}}};

QPushButton* MakeButton(QWidget* parent, const QString& name, const QString& caption, int left) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(name);
  Place(*button, left, 5580, 1215, 375);
  return button;
}

}  // namespace

NewDialog::NewDialog(SharedData& shared, Profile& profile, Records& records, SharingGuard& guard,
                     Hub& hub, MsgBoxSnglTxt& msgBoxSnglTxt, PleaseWait& pleaseWait)
    : Form(QStringLiteral("NewDialog")),
      shared_(shared),
      profile_(profile),
      records_(records),
      guard_(guard),
      hub_(hub),
      msgBoxSnglTxt_(msgBoxSnglTxt),
      pleaseWait_(pleaseWait),
      Frame1(new RecordBoxes(this)),
      BtnOK(MakeButton(this, QStringLiteral("BtnOK"), QStringLiteral("OK"), 960)),
      BtnCancel(MakeButton(this, QStringLiteral("BtnCancel"), QStringLiteral("Cancel"), 2460)) {
  setWindowTitle(QStringLiteral("New Name"));
  SetSize(4635, 6135);
  Place(*Frame1, 180, 120, 4275, 5235);
  connect(BtnOK, &QPushButton::clicked, this, &NewDialog::BtnOK_Click);
  connect(BtnCancel, &QPushButton::clicked, this, &NewDialog::Unload);
  SetDefaultButton(BtnOK);
  SetCancelButton(BtnCancel);
  SetOwner(hub.MainWindow());
}

void NewDialog::ShowNewDialog() {
  for (std::size_t i = 0; i < shared_.NoOfFields; ++i) Frame1->SetValue(i, std::string());
  Frame1->SetValue(Field::Sal, "Mr.");
  for (const Prompt& prompt : kPrompts) Frame1->SetValue(prompt.Index, prompt.Text);
  Show(QStringLiteral("New Name"));
}

void NewDialog::ShowDuplicateDialog() {
  for (std::size_t i = 0; i < shared_.NoOfFields; ++i) {
    Frame1->SetValue(i, shared_.FieldValues.at(i));
  }
  Show(QStringLiteral("New Name - Duplicate"));
}

void NewDialog::Show(const QString& caption) {
  hub_.SetPanel(1, QString());
  setWindowTitle(caption);
  Frame1->Begin();
  MoveToCorner(hub_.MainGeometry());
  ShowForm();
  hub_.EnableMain(false);
}

void NewDialog::EnableOK(bool enable) {
  BtnOK->setEnabled(enable);
}

void NewDialog::Form_Activate() {
  hub_.SetPanel(1, windowTitle());
}

void NewDialog::Form_Unload() {
  hub_.SetPanel(1, QString());
  hub_.EnableMain(true);
}

QWidget* NewDialog::FirstControl() const {
  return goesOn_ ? &Frame1->LastBox() : Form::FirstControl();
}

void NewDialog::BtnOK_Click() {
  guard_.InUseTimer.stop();
  RemovePrompts();
  if (const auto refusal = Check()) {
    Tell(*refusal);
    guard_.InUseTimer.start();
    return;
  }
  const QPoint place = pos();
  // Hidden first: while a dialog is shown, the main window lets it come before itself.
  HideForm();
  hub_.BringToFront();
  pleaseWait_.ShowPleaseWait();
  const QString wait = QStringLiteral("Please wait while inserting new record");
  hub_.SetPanel(1, wait);
  pleaseWait_.SetLbl1(wait);

  std::string RecNo;
  const auto refusal = Insert(RecNo);
  guard_.InUseTimer.start();
  if (refusal.has_value()) {
    pleaseWait_.HideForm();
    hub_.SetPanel(1, QString());
    Tell(*refusal);
    MoveTo(place);
    goesOn_ = true;
    ShowForm();
    goesOn_ = false;
    Frame1->GoOn();
    return;
  }
  Unload();
  pleaseWait_.HideForm();
  hub_.BringToFront();
  SelectNew(RecNo);
  hub_.SetData();
}

void NewDialog::RemovePrompts() {
  for (const Prompt& prompt : kPrompts) {
    if (Frame1->Text(prompt.Index) == QLatin1String(prompt.Text)) {
      Frame1->SetValue(prompt.Index, std::string());
    }
  }
}

std::optional<NewDialog::Refusal> NewDialog::Check() {
  const auto empty = [this](Field field) { return Frame1->Text(field).isEmpty(); };
  if (empty(Field::FirstName) && empty(Field::LastName) && empty(Field::Company)) {
    return Refusal{QStringLiteral("Empty Name and Company"),
                   QStringLiteral("Either Name or Company must be filled")};
  }
  if (shared_.NoOfRecords >= MaxRecords) {
    return Refusal{QStringLiteral("New Name"),
                   QStringLiteral("The data file is full: it holds %1 names.").arg(MaxRecords)};
  }
  if (Val(records_.ReadHeaderEntry("TotalNoOfRecords")) >=
      std::numeric_limits<std::int32_t>::max()) {
    return Refusal{QStringLiteral("New Name"),
                   QStringLiteral("The data file is full: no record number is left.")};
  }
  return std::nullopt;
}

std::optional<NewDialog::Refusal> NewDialog::Insert(std::string& RecNo) {
  const QString title = QStringLiteral("Record Not Saved");
  // The timer may have had no turn since the other application started.
  guard_.CheckInUse();
  if (shared_.InUse) {
    hub_.ShowReadOnly();
    EnableOK(false);
    return Refusal{title, QStringLiteral("Another application is using the data file now.\r"
                                         "Nothing was changed. You can press OK when it has "
                                         "ended.")};
  }
  const RunTimeError error = WriteAll(RecNo);
  if (error == RunTimeError::None) return std::nullopt;
  const QString reason = QString::fromStdString(RunTimeErrorText(error));
  return Refusal{title,
                 QStringLiteral("The record could not be saved: ") + reason +
                     QStringLiteral(".\rNothing was changed. You can try again."),
                 MsgIcon::Critical};
}

RunTimeError NewDialog::WriteAll(std::string& RecNo) {
  FieldArray& values = shared_.FieldValues;
  ProfileUpdate update(profile_);
  update.OnUndo([&values, before = values] { values = before; });

  for (std::size_t i = 0; i < shared_.NoOfFields; ++i) values.at(i) = Frame1->Value(i);
  std::string& firstName = values[Field::FirstName];
  std::string& lastName = values[Field::LastName];
  std::string& company = values[Field::Company];
  // There is no salutation without a personal name.
  if (firstName.empty() && lastName.empty()) values[Field::Sal].clear();
  const std::string ShowName = BuildShowName(firstName, lastName, company);
  const std::string ShowCompany = BuildShowCompany(firstName, lastName, company);

  RunTimeError error = records_.NextRecordNumber(RecNo);
  if (error == RunTimeError::None) error = records_.WriteRecord(RecNo);
  if (error == RunTimeError::None) error = records_.InsertRecord(RecNo, ShowName, ShowCompany);
  return error == RunTimeError::None ? update.Commit() : error;
}

void NewDialog::SelectNew(const std::string& RecNo) {
  if (!shared_.FilterOn) {
    shared_.CurListIndex = static_cast<std::int16_t>(hub_.NewIndex());
    return;
  }
  shared_.CurListIndex = 0;
  const int recordNo = ToInt32(RecNo);
  const int count = std::min<int>(shared_.FilteredCount, hub_.ListCount());
  for (int i = 0; i < count; ++i) {
    if (hub_.ItemData(i) == recordNo) {
      shared_.CurListIndex = static_cast<std::int16_t>(i);
      return;
    }
  }
}

void NewDialog::Tell(const Refusal& refusal) {
  msgBoxSnglTxt_.ShowMsg(refusal.Text, MsgButtons::Left, QStringLiteral("OK"), QString(),
                         refusal.Icon, refusal.Title);
}

}  // namespace quillary
