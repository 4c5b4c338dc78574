#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/line_reader.h"
#include "store/profile_line.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {
namespace {

constexpr std::int32_t Nowhere = -1;

// What the lists need of one record. The ways along the chains use little of it and go from record
// to record in no order of the memory, so that little stands together.
struct Links {
  std::int32_t Number = Nowhere;  // none: there is no such section
  std::int32_t NextName = Nowhere;
  std::int32_t NextCompany = Nowhere;
  bool IsInNames = false;
  bool IsInCompanies = false;
};
struct Texts {
  std::string_view RecNo;
  std::string_view ShowName;
  std::string_view ShowCompany;
};

struct Listed {
  Links* Chained = nullptr;
  Texts* Shown = nullptr;
};

std::int32_t Link(std::string_view text) {
  return ParseRecordNumber(text).value_or(Nowhere);
}

// A record file as far as the lists need it. Of two sections or entries of one name the first one
// counts.
class Block {
 public:
  // The texts are kept in `store`.
  Block(std::int32_t fileNumber, std::string_view bytes, TextStore& store)
      : first_(fileNumber * RecordsPerFile), store_(store) {
    if (bytes.starts_with(ByteOrderMark)) bytes.remove_prefix(ByteOrderMark.size());
    LineReader reader(bytes);
    std::string_view line;
    while (reader.Next(line)) {
      if (MayMatter(line.front())) Take(line);
    }
  }
  Listed Find(std::int32_t number) { return {&LinksOf(number), &TextsOf(number)}; }

 private:
  static constexpr std::string_view Prefix = "Record";
  static constexpr std::array<std::string_view, 4> Keys{"ShowName", "ShowCompany", "NextName",
                                                        "NextCompany"};

  // The first four letters, in lower case, as one number. Characters that are no letters may look
  // like some.
  static std::uint32_t Beginning(const char* text) {
    std::uint32_t letters = 0;
    std::memcpy(&letters, text, sizeof letters);
    return letters | 0x20202020U;
  }

  // Most lines are told by their first character to be neither headings nor wanted entries.
  static bool MayMatter(char first) {
    return first == '[' || first == 'S' || first == 'N' || first == 's' || first == 'n' ||
           IsBlank(first);
  }

  // False for most of the other lines with other keys.
  static bool MayBeWanted(std::string_view line) {
    if (line.size() < sizeof(std::uint32_t)) return false;
    const std::uint32_t beginning = Beginning(line.data());
    return beginning == Beginning("show") || beginning == Beginning("next");
  }

  Links& LinksOf(std::int32_t number) { return links_[static_cast<std::size_t>(number - first_)]; }
  Texts& TextsOf(std::int32_t number) { return texts_[static_cast<std::size_t>(number - first_)]; }

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
    const std::int32_t number = digits.starts_with(' ') ? Nowhere : Link(digits);
    if (number < first_ || number - first_ >= RecordsPerFile) return;
    if (LinksOf(number).Number != Nowhere) return;
    LinksOf(number).Number = number;
    TextsOf(number).RecNo = store_.Keep(digits);
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
    switch (key) {
      case 0:
        TextsOf(current_).ShowName = Value(written);
        break;
      case 1:
        TextsOf(current_).ShowCompany = Value(written);
        break;
      case 2:
        LinksOf(current_).NextName = WrittenLink(written);
        break;
      default:
        LinksOf(current_).NextCompany = WrittenLink(written);
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
    return store_.Keep(IsPlainValue(written) ? written : DecodeValue(written));
  }

  // A number hardly ever needs decoding.
  static std::int32_t WrittenLink(std::string_view written) {
    const std::int32_t number = Link(written);
    return number != Nowhere || written.empty() ? number : Link(DecodeValue(written));
  }

  std::int32_t first_;
  TextStore& store_;
  std::array<Links, RecordsPerFile> links_;
  std::array<Texts, RecordsPerFile> texts_;
  std::int32_t current_ = Nowhere;  // the record whose section is being read
  std::array<bool, Keys.size()> isSet_{};
};

// A chain leads to and fro through the files: each is gone through once, in its own order, when the
// first of its records is met.
class ListedRecords {
  static constexpr std::int32_t UsualFiles = 4096;

 public:
  ListedRecords(Profile& profile, std::string_view dataPath, TextStore& store)
      : snapshot_(profile), dataPath_(dataPath), store_(store) {}

  // Nothing where there is no such record.
  std::optional<Listed> Find(std::int32_t number) {
    if (number < 0) return std::nullopt;
    const std::int32_t fileNumber = number / RecordsPerFile;
    std::unique_ptr<Block>& block = BlockAt(fileNumber);
    if (!block) {
      block = std::make_unique<Block>(
          fileNumber, snapshot_.Bytes(RecordFileName(dataPath_, fileNumber)), store_);
    }
    const Listed record = block->Find(number);
    if (record.Chained->Number == Nowhere) return std::nullopt;
    return record;
  }

  // The first error that kept a record file from being read.
  RunTimeError Error() const { return snapshot_.Error(); }

  // How many record numbers, from 0 on, are looked at where chains do not lead to every record.
  static constexpr std::int32_t UsualNumbers = UsualFiles * RecordsPerFile;

 private:
  // Damaged links may name any file: only the usual ones have a place in a table.
  std::unique_ptr<Block>& BlockAt(std::int32_t fileNumber) {
    if (fileNumber >= UsualFiles) return others_[fileNumber];
    const auto index = static_cast<std::size_t>(fileNumber);
    if (index >= usual_.size()) usual_.resize(index + 1);
    return usual_[index];
  }

  ProfileSnapshot snapshot_;
  std::string dataPath_;
  TextStore& store_;
  std::vector<std::unique_ptr<Block>> usual_;
  std::unordered_map<std::int32_t, std::unique_ptr<Block>> others_;
};

// The way along one of the two chains.
struct Walk {
  std::int32_t Links::*Next;
  bool Links::*IsIn;
  std::int32_t At;
  std::vector<Listed> Found;

  // False at the end of the chain, be it a proper one or not.
  bool Go(ListedRecords& records) {
    const std::optional<Listed> record = records.Find(At);
    if (!record || record->Chained->*IsIn) return false;
    record->Chained->*IsIn = true;
    Found.push_back(*record);
    At = record->Chained->*Next;
    return true;
  }
};

TextList MakeList(const std::vector<Listed>& found, std::string_view Texts::*text,
                  const std::shared_ptr<TextStore>& store) {
  std::vector<std::string_view> texts;
  texts.reserve(std::max<std::size_t>(found.size(), 1));
  for (const Listed& record : found) texts.push_back(record.Shown->*text);
  if (texts.empty()) texts.emplace_back();
  return {store, std::move(texts)};
}

using Numbers = std::unordered_set<std::int32_t>;

// A stray link may lead into the deleted list.
void DropDeleted(Walk& walk, const Numbers& deleted) {
  std::erase_if(walk.Found,
                [&](const Listed& record) { return deleted.contains(record.Chained->Number); });
}

// The records below `end` that neither chain leads to, though they are not deleted.
std::vector<Listed> FindStrays(ListedRecords& records, std::int32_t end, RecordReader& reader,
                               const Numbers& deleted) {
  std::vector<Listed> strays;
  for (std::int32_t number = 0; number < end; ++number) {
    const std::optional<Listed> record = records.Find(number);
    if (!record || record->Chained->IsInNames || record->Chained->IsInCompanies) continue;
    // A section without a display string holds links at most.
    if (record->Shown->ShowName.empty() || deleted.contains(number)) continue;
    const std::string recNo = NumberText(number);
    const bool isDeleted =
        !reader.Value(recNo, "PrevDel").empty() || !reader.Value(recNo, "NextDel").empty();
    if (!isDeleted) strays.push_back(*record);
  }
  return strays;
}

bool IsOnlyThere(const Listed& companyRecord) {
  return !companyRecord.Chained->IsInNames;
}

// Both lists become all records that either way has found, and the strays. False if there are more
// than the lists can hold.
bool Unite(Walk& names, Walk& companies, const std::vector<Listed>& strays,
           const TextComparer& comparer) {
  std::vector<Listed> all = names.Found;
  std::copy_if(companies.Found.begin(), companies.Found.end(), std::back_inserter(all),
               IsOnlyThere);
  all.insert(all.end(), strays.begin(), strays.end());
  const auto sorted = [&](std::string_view Texts::*text) {
    std::vector<Listed> list = all;
    std::stable_sort(list.begin(), list.end(), [&](const Listed& a, const Listed& b) {
      return comparer.Compare(a.Shown->*text, b.Shown->*text) < 0;
    });
    if (list.size() > MaxRecords) list.resize(MaxRecords);
    return list;
  };
  names.Found = sorted(&Texts::ShowName);
  companies.Found = sorted(&Texts::ShowCompany);
  return all.size() <= MaxRecords;
}

}  // namespace

void Records::GetNamesList() {
  const auto count = static_cast<std::size_t>(std::max<std::int16_t>(data_.NoOfRecords, 0));
  for (auto* list :
       {&data_.NamesList, &data_.NamesRecNo, &data_.CompaniesList, &data_.CompaniesRecNo}) {
    *list = TextList(std::max<std::size_t>(count, 1));
  }
  data_.ListsIncomplete = false;
  linksOutdated_ = false;
  listsError_ = ReadListKeys(readKeys_);
  behindNames_.clear();
  behindCompanies_.clear();
  progress_.Begin("Please wait while getting names list...", "Loading Names...");

  const auto store = std::make_shared<TextStore>();
  ListedRecords records(profile_, data_.DataPath, *store);
  Walk names{&Links::NextName, &Links::IsInNames, Link(ReadHeaderEntry(NameChain.FirstRecord)), {}};
  Walk companies{&Links::NextCompany,
                 &Links::IsInCompanies,
                 Link(ReadHeaderEntry(CompanyChain.FirstRecord)),
                 {}};
  names.Found.reserve(count);
  companies.Found.reserve(count);
  bool isWhole = true;
  bool isTooLong = false;
  for (std::size_t i = 0; i < count && isWhole; ++i) {
    if (i > 0) progress_.Step(static_cast<double>(i + 1) / static_cast<double>(count) * 100);
    isWhole = names.Go(records);
    isWhole = companies.Go(records) && isWhole;
  }
  // Also a count that is too small is to show the same records in both lists.
  isWhole =
      isWhole && std::all_of(names.Found.begin(), names.Found.end(),
                             [](const Listed& record) { return record.Chained->IsInCompanies; });
  if (!isWhole) {
    while (names.Found.size() < MaxRecords && names.Go(records)) {
    }
    while (companies.Found.size() < MaxRecords && companies.Go(records)) {
    }
    Numbers deleted;
    const RunTimeError error = ReadDeletedNumbers(deleted);
    if (listsError_ == RunTimeError::None) listsError_ = error;
    DropDeleted(names, deleted);
    DropDeleted(companies, deleted);
    std::vector<Listed> strays;
    const auto reached = static_cast<std::ptrdiff_t>(names.Found.size()) +
                         std::count_if(companies.Found.begin(), companies.Found.end(), IsOnlyThere);
    // Where none is missing, what else stands in the files was left behind on purpose.
    if (reached < static_cast<std::ptrdiff_t>(count)) {
      RecordReader reader(profile_, data_.DataPath);
      const std::int32_t end =
          std::clamp(ToInt32(ReadHeaderEntry("TotalNoOfRecords")), 0, ListedRecords::UsualNumbers);
      strays = FindStrays(records, end, reader, deleted);
    }
    // What has no place in the lists must not fall out of the chains.
    isTooLong = !Unite(names, companies, strays, comparer_);
    data_.NoOfRecords = static_cast<std::int16_t>(names.Found.size());
    data_.ListsIncomplete = true;
  }
  if (listsError_ == RunTimeError::None) listsError_ = records.Error();
  if (listsError_ == RunTimeError::None && isTooLong) listsError_ = RunTimeError::DeviceError;
  data_.NamesList = MakeList(names.Found, &Texts::ShowName, store);
  data_.NamesRecNo = MakeList(names.Found, &Texts::RecNo, store);
  data_.CompaniesList = MakeList(companies.Found, &Texts::ShowCompany, store);
  data_.CompaniesRecNo = MakeList(companies.Found, &Texts::RecNo, store);
  progress_.End();
}

}  // namespace quillary
