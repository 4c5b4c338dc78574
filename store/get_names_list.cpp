#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
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

// What the lists need of one record.
struct Listed {
  std::int32_t Number = Nowhere;  // none: there is no such section
  std::int32_t NextName = Nowhere;
  std::int32_t NextCompany = Nowhere;
  bool IsInNames = false;
  bool IsInCompanies = false;
  std::string RecNo;
  std::string ShowName;
  std::string ShowCompany;
};

std::int32_t Link(std::string_view text) {
  return ParseRecordNumber(text).value_or(Nowhere);
}

// A record file as far as the lists need it. Of two sections or entries of one name the first one
// counts.
class Block {
 public:
  Block(std::int32_t fileNumber, std::string_view bytes) : first_(fileNumber * RecordsPerFile) {
    if (bytes.starts_with(ByteOrderMark)) bytes.remove_prefix(ByteOrderMark.size());
    // The first characters of headings and of the wanted keys.
    ForLinesBeginningWith<'[', 'S', 's', 'N', 'n', ' ', '\t'>(
        bytes, [this](std::string_view line) { Take(line); });
  }
  Listed* Find(std::int32_t number) {
    Listed& record = records_[static_cast<std::size_t>(number - first_)];
    return record.Number == Nowhere ? nullptr : &record;
  }

 private:
  static constexpr std::string_view Prefix = "Record";
  static constexpr std::size_t KeyCount = 4;
  static constexpr std::array<std::string_view, KeyCount> Keys{"ShowName", "ShowCompany",
                                                               "NextName", "NextCompany"};

  void Take(std::string_view line) {
    if (line.front() == '[' || IsBlank(line.front())) {
      if (const auto name = ParseHeading(line)) return Begin(*name);
    }
    if (current_ != nullptr) TakeEntry(line);
  }

  void Begin(std::string_view section) {
    current_ = nullptr;
    isSet_ = {};
    if (!EqualNames(section.substr(0, Prefix.size()), Prefix)) return;
    const std::string_view digits = section.substr(Prefix.size());
    const std::int32_t number = digits.starts_with(' ') ? Nowhere : Link(digits);
    if (number < first_ || number - first_ >= RecordsPerFile) return;
    Listed& record = records_[static_cast<std::size_t>(number - first_)];
    if (record.Number != Nowhere) return;
    record.Number = number;
    record.RecNo = digits;
    current_ = &record;
  }

  void TakeEntry(std::string_view line) {
    // Only the lines that are wanted are taken apart wholly.
    const std::size_t equals = line.find('=');
    const std::string_view name = TrimBlanks(line.substr(0, equals));
    std::size_t key = 0;
    while (key < KeyCount && !EqualNames(name, Keys[key])) ++key;
    if (key == KeyCount || isSet_[key]) return;
    isSet_[key] = true;
    std::string value = DecodeValue(ParseEntry(line).Written);
    switch (key) {
      case 0:
        current_->ShowName = std::move(value);
        break;
      case 1:
        current_->ShowCompany = std::move(value);
        break;
      case 2:
        current_->NextName = Link(value);
        break;
      default:
        current_->NextCompany = Link(value);
    }
  }

  std::int32_t first_;
  std::array<Listed, RecordsPerFile> records_;
  Listed* current_ = nullptr;  // the record whose section is being read
  std::array<bool, KeyCount> isSet_{};
};

// A chain leads to and fro through the files: each is gone through once, in its own order, when the
// first of its records is met.
class ListedRecords {
 public:
  ListedRecords(Profile& profile, std::string_view dataPath)
      : snapshot_(profile), dataPath_(dataPath) {}

  // Null where there is no such record.
  Listed* Find(std::int32_t number) {
    if (number < 0) return nullptr;
    const std::int32_t fileNumber = number / RecordsPerFile;
    std::unique_ptr<Block>& block = BlockAt(fileNumber);
    if (!block) {
      block = std::make_unique<Block>(fileNumber,
                                      snapshot_.Bytes(RecordFileName(dataPath_, fileNumber)));
    }
    return block->Find(number);
  }

 private:
  // Damaged links may name any file: only the usual ones have a place in a table.
  std::unique_ptr<Block>& BlockAt(std::int32_t fileNumber) {
    constexpr std::int32_t UsualFiles = 4096;
    if (fileNumber >= UsualFiles) return others_[fileNumber];
    const auto index = static_cast<std::size_t>(fileNumber);
    if (index >= usual_.size()) usual_.resize(index + 1);
    return usual_[index];
  }

  ProfileSnapshot snapshot_;
  std::string dataPath_;
  std::vector<std::unique_ptr<Block>> usual_;
  std::unordered_map<std::int32_t, std::unique_ptr<Block>> others_;
};

// The way along one of the two chains.
struct Walk {
  std::int32_t Listed::*Next;
  bool Listed::*IsIn;
  std::int32_t At;
  std::vector<Listed*> Found;

  // False at the end of the chain, be it a proper one or not.
  bool Go(ListedRecords& records) {
    Listed* const record = records.Find(At);
    if (record == nullptr || record->*IsIn) return false;
    record->*IsIn = true;
    Found.push_back(record);
    At = record->*Next;
    return true;
  }
};

void MoveToList(const std::vector<Listed*>& found, std::string Listed::*text,
                std::vector<std::string>& texts, std::vector<std::string>& recNos) {
  const std::size_t size = std::max<std::size_t>(found.size(), 1);
  texts.resize(size);
  recNos.resize(size);
  for (std::size_t i = 0; i < found.size(); ++i) {
    texts[i] = std::move(found[i]->*text);
    recNos[i] = found[i]->RecNo;
  }
}

// Both lists become all records that either way has found.
void Unite(Walk& names, Walk& companies, const TextComparer& comparer) {
  std::vector<Listed*> all = names.Found;
  std::copy_if(companies.Found.begin(), companies.Found.end(), std::back_inserter(all),
               [](const Listed* record) { return !record->IsInNames; });
  if (all.size() > MaxRecords) all.resize(MaxRecords);
  const auto sorted = [&](std::string Listed::*text) {
    std::vector<Listed*> list = all;
    std::stable_sort(list.begin(), list.end(), [&](const Listed* a, const Listed* b) {
      return comparer.Compare(a->*text, b->*text) < 0;
    });
    return list;
  };
  names.Found = sorted(&Listed::ShowName);
  companies.Found = sorted(&Listed::ShowCompany);
}

}  // namespace

void Records::GetNamesList() {
  const auto count = static_cast<std::size_t>(std::max<std::int16_t>(data_.NoOfRecords, 0));
  for (auto* list :
       {&data_.NamesList, &data_.NamesRecNo, &data_.CompaniesList, &data_.CompaniesRecNo}) {
    list->assign(std::max<std::size_t>(count, 1), std::string());
  }
  data_.ListsIncomplete = false;
  progress_.Begin("Please wait while getting names list...", "Loading Names...");

  ListedRecords records(profile_, data_.DataPath);
  Walk names{
      &Listed::NextName, &Listed::IsInNames, Link(ReadHeaderEntry(NameChain.FirstRecord)), {}};
  Walk companies{&Listed::NextCompany,
                 &Listed::IsInCompanies,
                 Link(ReadHeaderEntry(CompanyChain.FirstRecord)),
                 {}};
  names.Found.reserve(count);
  companies.Found.reserve(count);
  bool isWhole = true;
  for (std::size_t i = 0; i < count && isWhole; ++i) {
    if (i > 0) progress_.Step(static_cast<double>(i + 1) / static_cast<double>(count) * 100);
    isWhole = names.Go(records);
    isWhole = companies.Go(records) && isWhole;
  }
  // A count that is too small shows two different parts of the records; otherwise the two chains
  // are to hold the same ones.
  if (isWhole && names.At == Nowhere && companies.At == Nowhere) {
    isWhole = std::all_of(names.Found.begin(), names.Found.end(),
                          [](const Listed* record) { return record->IsInCompanies; });
  }
  if (!isWhole) {
    while (names.Found.size() < MaxRecords && names.Go(records)) {
    }
    while (companies.Found.size() < MaxRecords && companies.Go(records)) {
    }
    Unite(names, companies, comparer_);
    data_.NoOfRecords = static_cast<std::int16_t>(names.Found.size());
    data_.ListsIncomplete = true;
  }
  MoveToList(names.Found, &Listed::ShowName, data_.NamesList, data_.NamesRecNo);
  MoveToList(companies.Found, &Listed::ShowCompany, data_.CompaniesList, data_.CompaniesRecNo);
  progress_.End();
}

}  // namespace quillary
