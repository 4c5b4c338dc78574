#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "store/number_table.h"
#include "store/profile.h"
#include "store/store_data.h"
#include "store/text_list.h"

namespace quillary {

// The records as GetNamesList goes through them.

inline constexpr std::int32_t Nowhere = -1;
inline constexpr std::int32_t Astray = -2;  // where a link leads that is no record number

// What the lists need of one record. The ways along the chains use little of it and go from record
// to record in no order of the memory, so that little stands together.
struct RecordLinks {
  std::int32_t Number = Nowhere;  // none: there is no such section
  std::int32_t PrevName = Nowhere;
  std::int32_t NextName = Nowhere;
  std::int32_t NextCompany = Nowhere;
  std::int32_t NextDel = Nowhere;
  bool IsInNames = false;
  bool IsInCompanies = false;
  bool IsInDeleted = false;
};
struct RecordTexts {
  std::string_view RecNo;
  std::string_view ShowName;
  std::string_view ShowCompany;
};

struct ListedRecord {
  RecordLinks* Chained = nullptr;
  RecordTexts* Shown = nullptr;
};

// The number that a link or list head names, Nowhere for an empty one.
std::int32_t LinkedNumber(std::string_view text);

// A chain leads to and fro through the files: each is gone through once, in its own order, when the
// first of its records is met.
class ListedRecords {
 public:
  // The path of a record file by its number; an empty one where there is no such file.
  using PathOf = std::function<std::string(std::int32_t fileNumber)>;

  // The texts are kept in `texts`, the record numbers by themselves in `recNos`: they are gone
  // through without the others.
  ListedRecords(Profile& profile, std::string_view dataPath, TextStore& texts, TextStore& recNos);
  // Without the texts, which are all empty. `pathOf` is called right before a file is read.
  ListedRecords(Profile& profile, PathOf pathOf);
  ~ListedRecords();
  ListedRecords(const ListedRecords&) = delete;
  ListedRecords& operator=(const ListedRecords&) = delete;

  // Nothing where there is no such record.
  std::optional<ListedRecord> Find(std::int32_t number);

  // The first error that kept a record file from being read.
  RunTimeError Error() const { return snapshot_.Error(); }

  // How many record numbers, from 0 on, are looked at where chains do not lead to every record.
  static constexpr std::int32_t UsualNumbers = 4096 * RecordsPerFile;

 private:
  class Block;

  ProfileSnapshot snapshot_;
  PathOf pathOf_;
  TextStore* texts_ = nullptr;
  TextStore* recNos_ = nullptr;
  NumberTable<std::unique_ptr<Block>> blocks_;  // by file number
};

}  // namespace quillary
