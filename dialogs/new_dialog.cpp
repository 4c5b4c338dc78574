#include "dialogs/new_dialog.h"

#include <array>
#include <limits>

#include "app/select_record.h"
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

}  // namespace

NewDialog::NewDialog(SharedData& shared, Profile& profile, Records& records, SharingGuard& guard,
                     Hub& hub, MsgBoxSnglTxt& msgBoxSnglTxt, PleaseWait& pleaseWait)
    : RecordDialog(
          QStringLiteral("NewDialog"), {shared, records, guard, hub, msgBoxSnglTxt, pleaseWait},
          {QStringLiteral("Please wait while inserting new record"),
           QStringLiteral("Record Not Saved"), QStringLiteral("The record could not be saved")},
          profile) {
  setWindowTitle(QStringLiteral("New Name"));
}

void NewDialog::ShowNewDialog() {
  FieldArray values;
  values[Field::Sal] = "Mr.";
  for (const Prompt& prompt : kPrompts) values.at(prompt.Index) = prompt.Text;
  ShowDialog(values, QStringLiteral("New Name"));
}

void NewDialog::ShowDuplicateDialog() {
  const QString caption = QStringLiteral("New Name - Duplicate");
  if (ReadSelected(caption)) ShowDialog(shared_.FieldValues, caption);
}

void NewDialog::RemovePrompts() {
  for (const Prompt& prompt : kPrompts) {
    if (Frame1->Text(prompt.Index) == QLatin1String(prompt.Text)) {
      Frame1->SetValue(prompt.Index, std::string());
    }
  }
}

std::optional<ChangeDialog::Refusal> NewDialog::Check() {
  RemovePrompts();
  if (auto refusal = RecordDialog::Check()) return refusal;
  if (auto refusal = CheckRoom()) return refusal;
  if (Val(records_.ReadHeaderEntry("TotalNoOfRecords")) >=
      std::numeric_limits<std::int32_t>::max()) {
    return Refusal{windowTitle(),
                   QStringLiteral("The data file is full: no record number is left.")};
  }
  return std::nullopt;
}

RunTimeError NewDialog::Change() {
  ProfileUpdate update(profile_);
  const Typed typed = TakeBoxes(update);
  RunTimeError error = records_.NextRecordNumber(recNo_);
  if (error == RunTimeError::None) error = records_.WriteRecord(recNo_);
  if (error == RunTimeError::None) {
    error = records_.InsertRecord(recNo_, typed.ShowName, typed.ShowCompany);
  }
  return error == RunTimeError::None ? update.Commit() : error;
}

void NewDialog::Select() {
  SelectRecord(shared_, hub_, recNo_);
}

}  // namespace quillary
