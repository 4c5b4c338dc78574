#include "dialogs/edit_dialog.h"

#include <algorithm>

#include "app/select_record.h"

namespace quillary {

EditDialog::EditDialog(SharedData& shared, Profile& profile, Records& records, SharingGuard& guard,
                       Hub& hub, MsgBoxSnglTxt& msgBoxSnglTxt, PleaseWait& pleaseWait)
    : RecordDialog(
          QStringLiteral("EditDialog"), {shared, records, guard, hub, msgBoxSnglTxt, pleaseWait},
          {QStringLiteral("Please wait while setting record"), QStringLiteral("Record Not Saved"),
           QStringLiteral("The record could not be saved")},
          profile) {
  setWindowTitle(QStringLiteral("Edit Name"));
}

void EditDialog::ShowEditDialog() {
  if (!ReadSelected(windowTitle())) return;
  stored_ = shared_.FieldValues;
  ShowDialog(shared_.FieldValues, windowTitle());
}

std::optional<ChangeDialog::Refusal> EditDialog::Check() {
  if (auto refusal = RecordDialog::Check()) return refusal;
  FieldArray now;
  // A record that is gone or cannot be read shows in the change.
  const bool isRead = records_.ReadFields(shared_.CurRecordNo, now) == RunTimeError::None;
  if (!isRead || now == stored_ || !records_.RecordExists(shared_.CurRecordNo)) return std::nullopt;
  // As many as the box can show.
  constexpr qsizetype Enough = 2;
  QStringList changed;
  for (std::size_t i = 0; i < shared_.NoOfFields; ++i) {
    if (now.at(i) != stored_.at(i)) changed << QString::fromStdString(shared_.FieldKeys.at(i));
  }
  QString names = changed.mid(0, Enough).join(QStringLiteral(", "));
  if (changed.size() > Enough) names += QStringLiteral(" and more");
  stored_ = now;
  return Refusal{windowTitle(), QStringLiteral("Another program has changed: %1.\rNothing was "
                                               "stored. Press OK again to overwrite it.")
                                    .arg(names)};
}

RunTimeError EditDialog::Change() {
  ProfileUpdate update(profile_);
  const FieldArray before = shared_.FieldValues;
  const Typed typed = TakeBoxes(update);
  const auto isChanged = [&](Field field) {
    return shared_.FieldValues.at(field) != before.at(field);
  };
  // Somebody may have written other display strings by hand.
  const auto isShown = [&](std::string_view key, const std::string& text) {
    return records_.ReadRecordEntry(shared_.CurRecordNo, key) == text;
  };
  moved_ = isChanged(Field::FirstName) || isChanged(Field::LastName) || isChanged(Field::Company) ||
           !isShown("ShowName", typed.ShowName) || !isShown("ShowCompany", typed.ShowCompany);

  const auto index = static_cast<std::size_t>(std::max<int>(shared_.CurListIndex, 0));
  const RunTimeError error = records_.ChangeRecord(shared_.CurRecordNo, index, moved_);
  return error == RunTimeError::None ? update.Commit() : error;
}

void EditDialog::Select() {
  if (moved_) SelectRecord(shared_, hub_, shared_.CurRecordNo);
}

}  // namespace quillary
