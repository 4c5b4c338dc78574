#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>

#include "tests/support/check_invariants.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

// What the records and the lists are to be, by the plainest means.
struct Model {
  struct Record {
    FieldArray Fields;
    std::string ShowName;
    std::string ShowCompany;
  };

  explicit Model(const TextComparer& textComparer) : Comparer(textComparer) {}

  void Store(const std::string& recNo, const FieldArray& fields) {
    Record& record = Records[recNo];
    record.Fields = fields;
    std::string first = fields[FirstName];
    std::string last = fields[LastName];
    std::string company = fields[Company];
    record.ShowName = BuildShowName(first, last, company);
    record.ShowCompany = BuildShowCompany(first, last, company);
  }
  void Insert(const std::string& recNo) {
    Put(Names, recNo, &Record::ShowName, true);
    Put(Companies, recNo, &Record::ShowCompany, true);
    if (FilterOn && Matches(recNo)) {
      Put(FilteredNames, recNo, &Record::ShowName, false);
      Put(FilteredCompanies, recNo, &Record::ShowCompany, false);
    }
  }
  void Remove(const std::string& recNo) {
    for (Texts* list : {&Names, &Companies, &FilteredNames, &FilteredCompanies}) {
      std::erase(*list, recNo);
    }
  }
  void Filter(const std::string& text) {
    FilterOn = true;
    Criterion = text;
    FilteredNames.clear();
    std::copy_if(Names.begin(), Names.end(), std::back_inserter(FilteredNames),
                 [this](const auto& recNo) { return Matches(recNo); });
    FilteredCompanies = Sorted(FilteredNames, &Record::ShowCompany);
  }
  Texts Sorted(Texts recNos, std::string Record::*text) const {
    std::stable_sort(recNos.begin(), recNos.end(), [&](const auto& a, const auto& b) {
      return Comparer.Compare(Records.at(a).*text, Records.at(b).*text) < 0;
    });
    return recNos;
  }

  const TextComparer& Comparer;
  std::map<std::string, Record> Records;
  Texts Names;
  Texts Companies;
  Texts Deleted;  // the one deleted last comes first
  bool FilterOn = false;
  std::string Criterion;  // for the last name
  Texts FilteredNames;
  Texts FilteredCompanies;

 private:
  bool Matches(const std::string& recNo) const {
    const std::string& value = Records.at(recNo).Fields[LastName];
    return LowerCase(value).find(LowerCase(Criterion)) != std::string::npos;
  }
  void Put(Texts& list, const std::string& recNo, std::string Record::*text, bool beforeEqual) {
    const std::string& own = Records.at(recNo).*text;
    const auto place = std::find_if(list.begin(), list.end(), [&](const auto& other) {
      const int order = Comparer.Compare(own, Records.at(other).*text);
      return beforeEqual ? order <= 0 : order < 0;
    });
    list.insert(place, recNo);
  }
};

class ModelTest : public StoreTest {
 protected:
  ModelTest() {
    // The records stand in two files, and soon in three.
    SetHeader("TotalNoOfRecords", "85");
    Access.FinishLater([] {});
  }

  std::size_t Below(std::size_t limit) { return Engine() % limit; }
  std::string Word() {
    static const Texts words{"",   "Ann", "ann", "Élan", "elan",  "Zoë", "王",
                             "(x", "10",  "9",   "כהן",  " Lee ", "Ämne"};
    return words[Below(words.size())];
  }
  FieldArray SomeFields() { return {"Dr.", Word(), Word(), "", Word()}; }
  std::string Shown() { return Lines.RecNos[Below(Lines.RecNos.size())]; }

  void Add() {
    const FieldArray fields = SomeFields();
    const std::string recNo = StoreWorld::Add(fields[FirstName], fields[LastName], fields[Company]);
    Expected.Store(recNo, {"", fields[FirstName], fields[LastName], "", fields[Company]});
    Expected.Insert(recNo);
  }
  void Edit(bool moves) {
    if (Lines.RecNos.empty()) return;
    const std::string recNo = Shown();
    FieldArray fields = Expected.Records.at(recNo).Fields;
    if (moves) fields = SomeFields();
    fields[Phone1] = Word() + "\r\n";
    ASSERT_EQ(StoreWorld::Edit(recNo, fields, moves), RunTimeError::None);
    if (fields[FirstName].empty() && fields[LastName].empty()) fields[Sal].clear();
    if (moves) Expected.Remove(recNo);
    Expected.Store(recNo, fields);
    if (moves) Expected.Insert(recNo);
  }
  void Delete() {
    if (Lines.RecNos.empty()) return;
    const std::string recNo = Shown();
    ASSERT_EQ(StoreWorld::Delete(recNo), RunTimeError::None);
    Expected.Remove(recNo);
    Expected.Deleted.insert(Expected.Deleted.begin(), recNo);
  }
  void Restore() {
    if (Expected.Deleted.empty()) return;
    const std::string recNo = Expected.Deleted[Below(Expected.Deleted.size())];
    ASSERT_EQ(Store.RestoreRecord(recNo), RunTimeError::None);
    std::erase(Expected.Deleted, recNo);
    Expected.Insert(recNo);
  }
  void Filter() {
    const std::string criterion = Below(3) == 0 ? Word() : "n";
    StoreWorld::Filter({"", criterion});
    Expected.Filter(criterion);
  }
  // The filter off, the other view, or all anew from the files.
  void Show(bool restart) {
    Data.FilterOn = Expected.FilterOn = false;
    Data.ViewMode = static_cast<std::uint8_t>(Below(2));
    if (!restart) return Store.ShowRecords();
    Open();
    ASSERT_EQ(Store.SortNamesList(), RunTimeError::None);
  }
  void Step() {
    const std::size_t kind = Below(20);
    if (kind < 7) return Add();
    if (kind < 11) return Edit(kind < 10);
    if (kind < 14) return Delete();
    if (kind < 17) return Restore();
    if (kind < 18) return Filter();
    Show(kind == 18);
  }

  static Texts OrEmpty(const Texts& list) { return list.empty() ? Texts{""} : list; }
  void Check() {
    ASSERT_EQ(Data.NamesRecNo, OrEmpty(Expected.Names));
    ASSERT_EQ(Data.CompaniesRecNo, OrEmpty(Expected.Companies));
    if (Data.FilterOn) {
      ASSERT_EQ(Data.FilteredNamesRecNo, OrEmpty(Expected.FilteredNames));
      ASSERT_EQ(Data.FilteredCompaniesRecNo, OrEmpty(Expected.FilteredCompanies));
    }
    Texts chain;
    for (std::string at = Header("DelFirstRecord"); !at.empty(); at = Value(at, "NextDel")) {
      chain.push_back(at);
    }
    ASSERT_EQ(chain, Expected.Deleted);
    Store.ReadDeletedNamesList();
    const auto text = Data.ViewMode == 0 ? &Model::Record::ShowName : &Model::Record::ShowCompany;
    ASSERT_EQ(Data.DelRecNo, Expected.Sorted(Expected.Deleted, text));
    for (const auto& [recNo, record] : Expected.Records) {
      ASSERT_EQ(Store.ReadRecord(recNo), RunTimeError::None);
      ASSERT_EQ(Data.FieldValues, record.Fields) << recNo;
    }
    // Until now the files may have been behind.
    ASSERT_EQ(Access.Finish(), RunTimeError::None);
    ASSERT_TRUE(CheckInvariants(*this));
  }

  Model Expected{Comparer};
  std::mt19937 Engine;
};

// QUILLARY_TEST_SEED repeats a run.
TEST_F(ModelTest, AnySequenceOfChangesGivesTheListsOfThePlainModel) {
  const char* const given = std::getenv("QUILLARY_TEST_SEED");
  const unsigned long seed = given != nullptr ? std::stoul(given) : std::random_device{}();
  SCOPED_TRACE("QUILLARY_TEST_SEED=" + std::to_string(seed));
  Engine.seed(static_cast<std::mt19937::result_type>(seed));
  for (int step = 0; step < 250; ++step) {
    SCOPED_TRACE("step " + std::to_string(step));
    Step();
    if (!HasFailure()) Check();
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace quillary::test
