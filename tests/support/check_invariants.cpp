#include "tests/support/check_invariants.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

namespace quillary::test {
namespace {

using Entries = std::map<std::string, std::string>;
using RecNos = std::vector<std::string>;

std::map<std::string, Entries> Parse(const std::string& path) {
  std::map<std::string, Entries> sections;
  std::ifstream stream(path, std::ios::binary);
  std::string section;
  for (std::string line; std::getline(stream, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (line.starts_with('[')) {
      section = line.substr(1, line.find(']') - 1);
    } else if (const std::size_t equals = line.find('='); equals != std::string::npos) {
      std::string value = line.substr(equals + 1);
      if (value.size() > 1 && value.front() == '"') value = value.substr(1, value.size() - 2);
      sections[section].emplace(line.substr(0, equals), value);
    }
  }
  return sections;
}

class Files {
 public:
  explicit Files(const std::string& header)
      : folder_(header.substr(0, header.rfind('/') + 1)), header_(Parse(header)["General Info"]) {}

  std::string Header(const std::string& key) { return header_[key]; }
  std::string Value(const std::string& recNo, const std::string& key) {
    const std::string file = std::to_string(std::stol(recNo) / 100);
    if (!files_.contains(file)) files_[file] = Parse(folder_ + "quill" + file + ".dat");
    return files_[file]["Record" + recNo][key];
  }

  // The record numbers of a chain, everything about it checked: `text` is the key of what it is
  // sorted by, `others` are the chains that its records are not in.
  RecNos Chain(const std::string& kind, const std::string& count, const std::string& first,
               const std::string& text, const RecNos& others) {
    RecNos chain;
    std::set<std::string> seen;
    const std::string next = "Next" + kind;
    for (std::string at = Header(first); !at.empty(); at = Value(at, next)) {
      const bool isNumber = at.find_first_not_of("0123456789") == std::string::npos;
      Expect(isNumber, next, " leads to ", at);
      const bool isNew = seen.insert(at).second;
      Expect(isNew, "record ", at, " comes twice along ", next);
      if (!isNumber || !isNew) break;
      const std::string previous = chain.empty() ? "" : chain.back();
      Expect(Value(at, "Prev" + kind) == previous, "wrong Prev", kind, " of record ", at);
      Expect(std::stol(at) < std::stol("0" + Header("TotalNoOfRecords")), at, " is no record yet");
      for (const auto& other : others) {
        Expect(Value(at, "Prev" + other).empty() && Value(at, "Next" + other).empty(), "record ",
               at, " has a link of a list that it is not in: ", other);
      }
      chain.push_back(at);
    }
    Expect(Header(count) == std::to_string(chain.size()), count, " is ", Header(count),
           ", the chain has ", chain.size());
    if (!text.empty()) CheckOrder(chain, text);
    return chain;
  }

  void CheckOrder(const RecNos& recNos, const std::string& key) {
    for (std::size_t i = 1; i < recNos.size(); ++i) {
      Expect(comparer_.Compare(Value(recNos[i - 1], key), Value(recNos[i], key)) <= 0, "records ",
             recNos[i - 1], " and ", recNos[i], " stand in the wrong order of ", key);
    }
  }

  // The records by name and by company.
  std::pair<RecNos, RecNos> CheckLists() {
    RecNos names = Chain("Name", "NoOfRecords", "NameFirstRecord", "ShowName", {"Del"});
    RecNos companies = Chain("Company", "NoOfRecords", "CompanyFirstRecord", "ShowCompany", {});
    Chain("Del", "DelNoOfRecords", "DelFirstRecord", "", {"Name", "Company"});
    Expect(SetOf(names) == SetOf(companies), "the two lists hold different records");
    return {names, companies};
  }

  void CheckMemory(const RecNos& chain, const std::string& key, const TextList& texts,
                   const TextList& recNos) {
    RecNos expected;
    for (const auto& recNo : chain) expected.push_back(Value(recNo, key));
    const TextList none{""};
    Expect(texts == (chain.empty() ? none : TextList(expected)) &&
               recNos == (chain.empty() ? none : TextList(chain)),
           "the list in memory differs from the files in ", key);
  }

  template <typename... Parts>
  void Expect(bool holds, const Parts&... parts) {
    if (!holds) (complaints_ << ... << parts) << '\n';
  }
  testing::AssertionResult Result() const {
    if (complaints_.str().empty()) return testing::AssertionSuccess();
    return testing::AssertionFailure() << complaints_.str();
  }

  template <class List>
  static std::set<std::string> SetOf(const List& list) {
    return {list.begin(), list.end()};
  }

 private:
  std::string folder_;
  Entries header_;
  std::map<std::string, std::map<std::string, Entries>> files_;
  TextComparer comparer_;
  std::ostringstream complaints_;
};

void CheckLines(Files& files, const StoreData& data, const RecordedLines& lines) {
  const bool isByName = data.ViewMode == 0;
  TextList texts = isByName ? data.NamesList : data.CompaniesList;
  TextList recNos = isByName ? data.NamesRecNo : data.CompaniesRecNo;
  auto count = data.NoOfRecords;
  if (data.FilterOn) {
    texts = isByName ? data.FilteredNames : data.FilteredCompanies;
    recNos = isByName ? data.FilteredNamesRecNo : data.FilteredCompaniesRecNo;
    count = data.FilteredCount;
  }
  if (count == 0) texts = recNos = TextList();
  files.Expect(lines.Texts == texts && lines.RecNos == recNos,
               "the list box differs from the list in memory");
}

// Both filtered lists hold the same live records, each in order and with its display string.
void CheckFiltered(Files& files, const StoreData& data, const RecNos& live) {
  if (data.FilteredCount == 0) return;
  const RecNos names(data.FilteredNamesRecNo.begin(), data.FilteredNamesRecNo.end());
  const RecNos companies(data.FilteredCompaniesRecNo.begin(), data.FilteredCompaniesRecNo.end());
  const auto filtered = Files::SetOf(names);
  const auto all = Files::SetOf(live);
  files.Expect(names.size() == static_cast<std::size_t>(data.FilteredCount) &&
                   filtered.size() == names.size() && companies.size() == names.size() &&
                   filtered == Files::SetOf(companies) &&
                   std::includes(all.begin(), all.end(), filtered.begin(), filtered.end()),
               "the filtered lists hold other records");
  files.CheckMemory(names, "ShowName", data.FilteredNames, names);
  files.CheckMemory(companies, "ShowCompany", data.FilteredCompanies, companies);
  files.CheckOrder(names, "ShowName");
  files.CheckOrder(companies, "ShowCompany");
}

}  // namespace

testing::AssertionResult CheckFiles(const std::string& folder) {
  Files files(folder + "/quill.dat");
  files.CheckLists();
  return files.Result();
}

testing::AssertionResult CheckInvariants(const StoreProgram& program) {
  const StoreData& data = program.Lists();
  Files files(program.Names.Find(data.DataPath + "quill.dat"));
  const auto [names, companies] = files.CheckLists();
  files.Expect(static_cast<std::size_t>(data.NoOfRecords) == names.size(),
               "NoOfRecords in memory is ", data.NoOfRecords);
  files.CheckMemory(names, "ShowName", data.NamesList, data.NamesRecNo);
  files.CheckMemory(companies, "ShowCompany", data.CompaniesList, data.CompaniesRecNo);
  if (data.FilterOn) CheckFiltered(files, data, names);
  CheckLines(files, data, program.Lines);
  return files.Result();
}

}  // namespace quillary::test
