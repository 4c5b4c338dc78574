#include "tests/support/check_invariants.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
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
  explicit Files(const std::string& folder) : folder_(folder) {
    header_ = Parse(folder + "/quill.dat")["General Info"];
  }

  std::string Header(const std::string& key) { return header_[key]; }
  std::string Value(const std::string& recNo, const std::string& key) {
    const std::string file = std::to_string(std::stol(recNo) / 100);
    if (!files_.contains(file)) files_[file] = Parse(folder_ + "/quill" + file + ".dat");
    return files_[file]["Record" + recNo][key];
  }

  // The record numbers of a chain, everything about it checked but the order of its texts.
  RecNos Chain(const std::string& count, const std::string& first, const std::string& kind) {
    RecNos chain;
    std::set<std::string> seen;
    std::string previous;
    const std::string next = "Next" + kind;
    for (std::string at = Header(first); !at.empty(); at = Value(at, next)) {
      if (at.find_first_not_of("0123456789") != std::string::npos) {
        Complain("Next", kind, " leads to ", at);
        break;
      }
      if (!seen.insert(at).second) {
        Complain("record ", at, " comes twice along Next", kind);
        break;
      }
      if (Value(at, "Prev" + kind) != previous) Complain("wrong Prev", kind, " of record ", at);
      if (std::stol(at) >= std::stol("0" + Header("TotalNoOfRecords"))) {
        Complain("record ", at, " was never handed out");
      }
      chain.push_back(at);
      previous = at;
    }
    if (Header(count) != std::to_string(chain.size())) {
      Complain(count, " is ", Header(count), ", the chain has ", chain.size());
    }
    return chain;
  }

  void CheckOrder(const RecNos& chain, const std::string& key) {
    for (std::size_t i = 1; i < chain.size(); ++i) {
      if (comparer_.Compare(Value(chain[i - 1], key), Value(chain[i], key)) > 0) {
        Complain("records ", chain[i - 1], " and ", chain[i], " stand in the wrong order of ", key);
      }
    }
  }

  void CheckUnlinked(const RecNos& chain, const std::vector<std::string>& kinds) {
    for (const auto& recNo : chain) {
      for (const auto& kind : kinds) {
        if (!Value(recNo, "Prev" + kind).empty() || !Value(recNo, "Next" + kind).empty()) {
          Complain("record ", recNo, " has a link of a list it is not in: ", kind);
        }
      }
    }
  }

  template <typename... Parts>
  void Complain(const Parts&... parts) {
    (complaints_ << ... << parts) << '\n';
  }
  testing::AssertionResult Result() const {
    if (complaints_.str().empty()) return testing::AssertionSuccess();
    return testing::AssertionFailure() << complaints_.str();
  }

 private:
  std::string folder_;
  Entries header_;
  std::map<std::string, std::map<std::string, Entries>> files_;
  TextComparer comparer_;
  std::ostringstream complaints_;
};

struct Lists {
  RecNos Names;
  RecNos Companies;
};

Lists CheckLists(Files& files) {
  Lists lists{files.Chain("NoOfRecords", "NameFirstRecord", "Name"),
              files.Chain("NoOfRecords", "CompanyFirstRecord", "Company")};
  const RecNos deleted = files.Chain("DelNoOfRecords", "DelFirstRecord", "Del");
  files.CheckOrder(lists.Names, "ShowName");
  files.CheckOrder(lists.Companies, "ShowCompany");
  files.CheckUnlinked(lists.Names, {"Del"});
  files.CheckUnlinked(deleted, {"Name", "Company"});
  if (std::set(lists.Names.begin(), lists.Names.end()) !=
      std::set(lists.Companies.begin(), lists.Companies.end())) {
    files.Complain("the two lists hold different records");
  }
  return lists;
}

void CheckMemory(Files& files, const RecNos& chain, const std::string& key, const TextList& texts,
                 const TextList& recNos) {
  std::vector<std::string> expected;
  for (const auto& recNo : chain) expected.push_back(files.Value(recNo, key));
  if (texts != (chain.empty() ? TextList{""} : TextList(expected)) ||
      recNos != (chain.empty() ? TextList{""} : TextList(chain))) {
    files.Complain("the list in memory differs from the files in ", key);
  }
}

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
  if (count == 0) {
    texts.clear();
    recNos.clear();
  }
  if (lines.Texts != texts || lines.RecNos != recNos) {
    files.Complain("the list box differs from the list in memory");
  }
}

// Both filtered lists hold the same live records, each in order and with its display string.
void CheckFiltered(Files& files, const StoreData& data, const RecNos& live) {
  if (data.FilteredCount == 0) return;
  const RecNos names(data.FilteredNamesRecNo.begin(), data.FilteredNamesRecNo.end());
  const RecNos companies(data.FilteredCompaniesRecNo.begin(), data.FilteredCompaniesRecNo.end());
  const std::set<std::string> filtered(names.begin(), names.end());
  const std::set<std::string> all(live.begin(), live.end());
  if (names.size() != static_cast<std::size_t>(data.FilteredCount) ||
      filtered.size() != names.size() || companies.size() != names.size() ||
      filtered != std::set(companies.begin(), companies.end()) ||
      !std::includes(all.begin(), all.end(), filtered.begin(), filtered.end())) {
    files.Complain("the filtered lists hold other records");
    return;
  }
  CheckMemory(files, names, "ShowName", data.FilteredNames, names);
  CheckMemory(files, companies, "ShowCompany", data.FilteredCompanies, companies);
  files.CheckOrder(names, "ShowName");
  files.CheckOrder(companies, "ShowCompany");
}

}  // namespace

testing::AssertionResult CheckFiles(const std::string& folder) {
  Files files(folder);
  CheckLists(files);
  return files.Result();
}

testing::AssertionResult CheckInvariants(const StoreWorld& world) {
  return CheckInvariants(world.Folder.Path(), world.Data, world.Lines);
}

testing::AssertionResult CheckInvariants(const std::string& folder, const StoreData& data,
                                         const RecordedLines& lines) {
  Files files(folder);
  const Lists chains = CheckLists(files);
  if (static_cast<std::size_t>(data.NoOfRecords) != chains.Names.size()) {
    files.Complain("NoOfRecords in memory is ", data.NoOfRecords);
  }
  CheckMemory(files, chains.Names, "ShowName", data.NamesList, data.NamesRecNo);
  CheckMemory(files, chains.Companies, "ShowCompany", data.CompaniesList, data.CompaniesRecNo);
  if (data.FilterOn) CheckFiltered(files, data, chains.Names);
  CheckLines(files, data, lines);
  return files.Result();
}

}  // namespace quillary::test
