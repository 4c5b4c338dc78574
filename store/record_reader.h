#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/profile.h"
#include "store/text_list.h"

namespace quillary {

// The section of a record: "Record" & the trimmed number.
std::string RecordSection(std::string_view RecNo);

// The number of the record file of a record: Int(n / 100).
std::int64_t RecordFileNumber(std::string_view RecNo);

// The record number that a link or list head names; nothing for the empty text and for a text that
// is no record number as this system writes them (digits, up to 2147483647).
std::optional<std::int32_t> ParseRecordNumber(std::string_view RecNo);

// The number of the record whose section has this name; nothing for any other section.
std::optional<std::int32_t> RecordOfSection(std::string_view section);

// The indices of record numbers in the order in which the records lie in the files. Many records
// are read and written much faster in it.
std::vector<std::size_t> OrderInFiles(const TextList& recNos);

// The name of a record file.
std::string RecordFileName(std::string_view dataPath, std::int64_t fileNumber);

// Reads many records, each record file as it was at the first access to it through this object.
class RecordReader {
 public:
  RecordReader(Profile& profile, std::string_view dataPath);

  // The first error that kept a record file from being read.
  RunTimeError Error() const { return snapshot_.Error(); }

  // A record file; empty for one that is missing. Valid as long as this object.
  const ProfileText& File(std::int64_t fileNumber);
  // The record's section; one that does not exist has no entries.
  ProfileText::Section Record(std::string_view RecNo);
  // Whether the record itself is there: a section without a display string holds links at most.
  bool HasRecord(std::string_view RecNo) { return !Value(RecNo, "ShowName").empty(); }
  // The numbers from `begin` up to and without `end` that have none, in their order.
  std::vector<std::int32_t> MissingRecords(std::int32_t begin, std::int32_t end);
  // The value of a record's key, the empty text where there is none.
  std::string Value(std::string_view RecNo, std::string_view key);

 private:
  ProfileSnapshot snapshot_;
  std::string dataPath_;
  // By file number, as far as they are usual: many for who reads all, quickly made for few.
  using Files = std::array<const ProfileText*, 64>;
  std::array<std::unique_ptr<Files>, 64> files_;
};

}  // namespace quillary
