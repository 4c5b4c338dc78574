#include "store/records.h"

#include <algorithm>
#include <cstddef>

#include "store/chain.h"
#include "store/record_reader.h"

namespace quillary {

const Records::Chain Records::NameChain{"NameFirstRecord", "PrevName", "NextName", "ShowName"};
const Records::Chain Records::CompanyChain{"CompanyFirstRecord", "PrevCompany", "NextCompany",
                                           "ShowCompany"};

Records::Records(StoreData& data, Profile& profile, const TextComparer& comparer,
                 ProgressHooks& progress, ListHooks& lines)
    : data_(data), profile_(profile), comparer_(comparer), progress_(progress), lines_(lines) {}

std::string Records::RecordFile(std::string_view RecNo) const {
  return RecordFileName(data_.DataPath, RecordFileNumber(RecNo));
}

std::string Records::ReadRecordEntry(std::string_view RecNo, std::string_view Key) {
  return profile_.ReadEntry(RecordFile(RecNo), RecordSection(RecNo), Key);
}

RunTimeError Records::WriteRecordEntry(std::string_view RecNo, std::string_view Key,
                                       std::string_view Value) {
  return profile_.WriteEntry(RecordFile(RecNo), RecordSection(RecNo), Key, Value);
}

std::string Records::ReadHeaderEntry(std::string_view Key) {
  return profile_.ReadEntry(data_.DataFile, HeaderSection, Key);
}

RunTimeError Records::WriteHeaderEntry(std::string_view Key, std::string_view Value) {
  ProfileUpdate update(profile_);
  const RunTimeError error = profile_.WriteEntry(data_.DataFile, HeaderSection, Key, Value);
  if (error != RunTimeError::None) return error;
  const auto* const name = std::find(ListKeyNames.begin(), ListKeyNames.end(), Key);
  if (name != ListKeyNames.end()) {
    std::string& known = knownKeys_.at(static_cast<std::size_t>(name - ListKeyNames.begin()));
    update.OnUndo([&known, before = known] { known = before; });
    known = Trim(Value);
  }
  return update.Commit();
}

void Records::Note(std::string_view file, std::string_view section,
                   std::span<const EntryValue> entries) {
  if (profile_.WriteEntries(file, section, entries) == RunTimeError::None) return;
  // A joined group that ends without Commit makes the whole group fail.
  const ProfileUpdate failing(profile_);
}

void Records::NoteRecordEntry(std::string_view RecNo, std::string_view Key,
                              std::string_view Value) {
  const EntryValue entry{Key, Value};
  Note(RecordFile(RecNo), RecordSection(RecNo), {&entry, 1});
}

void Records::NoteHeaderEntry(std::string_view Key, std::string_view Value) {
  // A write that cannot be noted makes the group fail.
  static_cast<void>(WriteHeaderEntry(Key, Value));
}

RunTimeError Records::ReadFields(std::string_view RecNo, FieldArray& fields) {
  RecordReader reader(profile_, data_.DataPath);
  const ProfileText::Section section = reader.Record(RecNo);
  for (std::size_t i = 0; i < data_.NoOfFields; ++i) {
    fields.at(i) = section.Value(data_.FieldKeys.at(i)).value_or(std::string());
  }
  return reader.Error();
}

// Whether the header could be the one that was opened: data may vanish with their disk.
RunTimeError Records::CheckHeader() {
  ProfileSnapshot snapshot(profile_);
  const auto application = snapshot.Text(data_.DataFile).Value(HeaderSection, "Application");
  if (snapshot.Error() != RunTimeError::None) return snapshot.Error();
  const bool isOurs = EqualWithoutCase(application.value_or(std::string()), Signature);
  return isOurs ? RunTimeError::None : RunTimeError::FileNotFound;
}

bool Records::RecordExists(std::string_view RecNo) {
  return RecordReader(profile_, data_.DataPath).Record(RecNo).Exists();
}

}  // namespace quillary
