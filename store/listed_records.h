#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/profile.h"
#include "store/store_data.h"
#include "store/text_list.h"

namespace quillary {

// The records as GetNamesList goes through them.

inline constexpr std::int32_t Nowhere = -1;

// What the lists need of one record. The ways along the chains use little of it and go from record
// to record in no order of the memory, so that little stands together.
struct RecordLinks {
  std::int32_t Number = Nowhere;  // none: there is no such section
  std::int32_t NextName = Nowhere;
  std::int32_t NextCompany = Nowhere;
  bool IsInNames = false;
  bool IsInCompanies = false;
};
struct RecordTexts {
  std::string_view RecNo;
  std::string_view ShowName;
  std::string_view ShowCompany;
};

// Record numbers from Begin up to and without End.
struct NumberRange {
  std::int32_t Begin = 0;
  std::int32_t End = 0;
};

struct ListedRecord {
  RecordLinks* Chained = nullptr;
  RecordTexts* Shown = nullptr;
};

// The number that a link or list head names, Nowhere for none.
std::int32_t LinkedNumber(std::string_view text);

// A chain leads to and fro through the files: each is gone through once, in its own order, when the
// first of its records is met.
class ListedRecords {
  static constexpr std::int32_t UsualFiles = 4096;

 public:
  // The texts are kept in `store`.
  ListedRecords(Profile& profile, std::string_view dataPath, TextStore& store);
  ~ListedRecords();
  ListedRecords(const ListedRecords&) = delete;
  ListedRecords& operator=(const ListedRecords&) = delete;

  // Nothing where there is no such record.
  std::optional<ListedRecord> Find(std::int32_t number);

  // The first error that kept a record file from being read.
  RunTimeError Error() const { return snapshot_.Error(); }

  // How many record numbers, from 0 on, are looked at where chains do not lead to every record.
  static constexpr std::int32_t UsualNumbers = UsualFiles * RecordsPerFile;

 private:
  class Block;

  std::unique_ptr<Block>& BlockAt(std::int32_t fileNumber);

  ProfileSnapshot snapshot_;
  std::string dataPath_;
  TextStore& store_;
  std::vector<std::unique_ptr<Block>> usual_;
  std::unordered_map<std::int32_t, std::unique_ptr<Block>> others_;
};

}  // namespace quillary
