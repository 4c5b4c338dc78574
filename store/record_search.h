#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text_search.h"
#include "store/number_table.h"
#include "store/profile.h"
#include "store/store_data.h"

namespace quillary {

// Finds a text in some of the entries of records, upper and lower case being the same. Each record
// file is gone through once, as it is when the first of its records is asked for.
class RecordSearch {
 public:
  // `text` is not empty.
  RecordSearch(Profile& profile, std::string_view dataPath, std::string_view text,
               std::vector<std::string> keys);

  // The index of the first of the keys whose value in the record contains the text.
  // A record whose file cannot be read contains nothing.
  std::optional<std::size_t> FirstKey(std::string_view recNo);
  // The first error that kept a record file from being read; a missing file is none.
  RunTimeError Error() const { return snapshot_.Error(); }

 private:
  // For each record of a file the index of the key, or the number of keys.
  using Found = std::array<std::uint8_t, RecordsPerFile>;

  Found SearchFile(std::int32_t fileNumber);
  std::uint8_t SearchSection(std::string_view bytes, std::size_t begin, std::size_t end,
                             std::size_t& hit) const;
  std::size_t KeyOf(std::string_view line, std::size_t before) const;

  ProfileSnapshot snapshot_;
  std::string dataPath_;
  TextSearch text_;
  TextSearch written_;  // a part of the text that stands in the file as it is
  std::vector<std::string> keys_;
  NumberTable<std::unique_ptr<const Found>> files_;
};

}  // namespace quillary
