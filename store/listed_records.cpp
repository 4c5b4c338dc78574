#include "store/listed_records.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <utility>

#include "platform/text.h"
#include "store/line_reader.h"
#include "store/profile_line.h"
#include "store/record_reader.h"

namespace quillary {

std::int32_t LinkedNumber(std::string_view text) {
  return ParseRecordNumber(text).value_or(Trim(text).empty() ? Nowhere : Astray);
}

// A record file as far as the lists need it. Of two sections or entries of one name the first one
// counts.
class ListedRecords::Block {
 public:
  // The texts are kept in the stores, if there are such.
  Block(std::int32_t fileNumber, std::string_view bytes, TextStore* texts, TextStore* recNos)
      : first_(fileNumber * RecordsPerFile), textStore_(texts), recNos_(recNos) {
    if (bytes.starts_with(ByteOrderMark)) bytes.remove_prefix(ByteOrderMark.size());
    LineReader reader(bytes);
    std::string_view line;
    while (reader.Next(line)) {
      if (MayMatter(line.front())) Take(line);
    }
  }
  ListedRecord Find(std::int32_t number) { return {&LinksOf(number), &TextsOf(number)}; }

 private:
  static constexpr std::string_view Prefix = "Record";
  // The two texts, then the links.
  static constexpr std::array<std::string_view, 6> Keys{"ShowName",    "ShowCompany", "NextName",
                                                        "NextCompany", "PrevName",    "NextDel"};
  static constexpr std::array<std::int32_t RecordLinks::*, 4> Links{
      &RecordLinks::NextName, &RecordLinks::NextCompany, &RecordLinks::PrevName,
      &RecordLinks::NextDel};

  // The first four letters, in lower case, as one number. Characters that are no letters may look
  // like some.
  static std::uint32_t Beginning(const char* text) {
    std::uint32_t letters = 0;
    std::memcpy(&letters, text, sizeof letters);
    return letters | 0x20202020U;
  }

  // Most lines are told by their first character to be neither headings nor wanted entries.
  static bool MayMatter(char first) {
    return first == '[' || first == 'S' || first == 'P' || first == 'N' || first == 's' ||
           first == 'p' || first == 'n' || IsBlank(first);
  }

  // False for most of the other lines with other keys.
  static bool MayBeWanted(std::string_view line) {
    if (line.size() <= sizeof(std::uint32_t)) return false;
    const std::uint32_t beginning = Beginning(line.data());
    return beginning == Beginning("show") || beginning == Beginning("next") ||
           (beginning == Beginning("prev") && (line[4] == 'N' || line[4] == 'n'));
  }

  RecordLinks& LinksOf(std::int32_t number) {
    return links_[static_cast<std::size_t>(number - first_)];
  }
  RecordTexts& TextsOf(std::int32_t number) {
    return texts_[static_cast<std::size_t>(number - first_)];
  }

  void Take(std::string_view line) {
    if (line.front() == '[' || IsBlank(line.front())) {
      if (const auto name = ParseHeading(line)) return Begin(*name);
    } else if (!MayBeWanted(line)) {
      return;
    }
    if (current_ != Nowhere) TakeEntry(line);
  }

  void Begin(std::string_view section) {
    current_ = Nowhere;
    isSet_ = {};
    if (!EqualNames(section.substr(0, Prefix.size()), Prefix)) return;
    const std::string_view digits = section.substr(Prefix.size());
    const std::int32_t number = digits.starts_with(' ') ? Nowhere : LinkedNumber(digits);
    if (number < first_ || number - first_ >= RecordsPerFile) return;
    if (LinksOf(number).Number != Nowhere) return;
    LinksOf(number).Number = number;
    if (recNos_ != nullptr) TextsOf(number).RecNo = recNos_->Keep(digits);
    current_ = number;
  }

  void TakeEntry(std::string_view line) {
    std::size_t key = 0;
    while (key < Keys.size() && !IsEntryOf(line, Keys[key])) ++key;
    std::string_view written;
    if (key < Keys.size()) {
      written = TrimBlanks(WithoutEnd(line.substr(Keys[key].size() + 1)));
    } else {
      const WrittenEntry entry = ParseEntry(line);
      key = KeyInOtherCase(entry.Key);
      if (key == Keys.size()) return;
      written = entry.Written;
    }
    if (isSet_[key]) return;
    isSet_[key] = true;
    if (key == 0) {
      TextsOf(current_).ShowName = Value(written);
    } else if (key == 1) {
      TextsOf(current_).ShowCompany = Value(written);
    } else {
      LinksOf(current_).*Links[key - 2] = WrittenLink(written);
    }
  }

  // Whether the line is an entry of that key, written as this program does.
  static bool IsEntryOf(std::string_view line, std::string_view key) {
    return line.size() > key.size() && line[key.size()] == '=' && line.starts_with(key);
  }

  static std::size_t KeyInOtherCase(std::string_view name) {
    const auto* const found = std::find_if(
        Keys.begin(), Keys.end(), [&](std::string_view key) { return EqualNames(name, key); });
    return static_cast<std::size_t>(found - Keys.begin());
  }

  std::string_view Value(std::string_view written) {
    if (textStore_ == nullptr) return {};
    return textStore_->Keep(IsPlainValue(written) ? written : DecodeValue(written));
  }

  // A number hardly ever needs decoding.
  static std::int32_t WrittenLink(std::string_view written) {
    const std::int32_t number = LinkedNumber(written);
    return number != Astray ? number : LinkedNumber(DecodeValue(written));
  }

  std::int32_t first_;
  TextStore* textStore_;
  TextStore* recNos_;
  std::array<RecordLinks, RecordsPerFile> links_;
  std::array<RecordTexts, RecordsPerFile> texts_;
  std::int32_t current_ = Nowhere;  // the record whose section is being read
  std::array<bool, Keys.size()> isSet_{};
};

ListedRecords::ListedRecords(Profile& profile, std::string_view dataPath, TextStore& texts,
                             TextStore& recNos)
    : snapshot_(profile),
      pathOf_([path = std::string(dataPath)](std::int32_t fileNumber) {
        return RecordFileName(path, fileNumber);
      }),
      texts_(&texts),
      recNos_(&recNos) {}

ListedRecords::ListedRecords(Profile& profile, PathOf pathOf)
    : snapshot_(profile), pathOf_(std::move(pathOf)) {}

ListedRecords::~ListedRecords() = default;

std::optional<ListedRecord> ListedRecords::Find(std::int32_t number) {
  if (number < 0) return std::nullopt;
  const std::int32_t fileNumber = number / RecordsPerFile;
  std::unique_ptr<Block>& block = blocks_[fileNumber];
  if (!block) {
    const std::string path = pathOf_(fileNumber);
    block = std::make_unique<Block>(
        fileNumber, path.empty() ? std::string_view() : snapshot_.Bytes(path), texts_, recNos_);
  }
  const ListedRecord record = block->Find(number);
  if (record.Chained->Number == Nowhere) return std::nullopt;
  return record;
}

}  // namespace quillary
