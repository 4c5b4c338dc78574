#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {

// The record that follows the listed ones in the files, where the header's count is smaller than
// the chain is long; empty as a rule. It stays linked, so that no record is lost by a wrong count.
// A link that its record does not answer, or that leads to a deleted one, is a stray.
std::string Records::RecordBehind(const Chain& chain, const TextList& recNos) {
  const std::string last(data_.NoOfRecords < 1 ? std::string_view() : Trim(recNos.back()));
  const std::string recNo(
      Trim(last.empty() ? ReadHeaderEntry(chain.FirstRecord) : ReadRecordEntry(last, chain.Next)));
  if (!ParseRecordNumber(recNo) || recNo == Trim(ReadHeaderEntry("DelFirstRecord")) ||
      std::find(recNos.begin(), recNos.end(), recNo) != recNos.end()) {
    return {};
  }
  RecordReader reader(profile_, data_.DataPath);
  const auto isLink = [&](std::string_view key, std::string_view expected) {
    return Trim(reader.Value(recNo, key)) == expected;
  };
  const bool isBehind = reader.Record(recNo).Exists() && isLink(chain.Prev, last) &&
                        isLink("PrevDel", "") && isLink("NextDel", "");
  return isBehind ? recNo : std::string();
}

void Records::NoteLink(const Chain& chain, const TextList& recNos, std::size_t index,
                       const std::string& behind) {
  const bool isLast = index + 1 == recNos.size();
  const std::array<EntryValue, 2> links{
      {{chain.Prev, index == 0 ? std::string_view() : Trim(recNos[index - 1])},
       {chain.Next, isLast ? std::string_view(behind) : Trim(recNos[index + 1])}}};
  Note(RecordFile(recNos[index]), RecordSection(recNos[index]), links);
  if (isLast && !behind.empty()) NoteRecordEntry(behind, chain.Prev, Trim(recNos[index]));
}

// Every link of both lists as they are in memory. Without `progress` no events run meanwhile.
void Records::NoteLinks(const std::string& behindNames, const std::string& behindCompanies,
                        ProgressHooks* progress) {
  NoteHeaderEntry(NameChain.FirstRecord, Trim(data_.NamesRecNo[0]));
  NoteHeaderEntry(CompanyChain.FirstRecord, Trim(data_.CompaniesRecNo[0]));
  if (data_.ListsIncomplete) NoteHeaderEntry("NoOfRecords", NumberText(data_.NoOfRecords));
  if (data_.NoOfRecords < 1) return;
  const auto names = OrderInFiles(data_.NamesRecNo);
  const auto companies = OrderInFiles(data_.CompaniesRecNo);
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (progress != nullptr) {
      progress->Step(static_cast<double>(i + 1) / static_cast<double>(names.size()) * 100);
    }
    NoteLink(NameChain, data_.NamesRecNo, names[i], behindNames);
    NoteLink(CompanyChain, data_.CompaniesRecNo, companies[i], behindCompanies);
  }
}

RunTimeError Records::RestoreLinks() {
  if (const RunTimeError error = CheckHeader(); error != RunTimeError::None) return error;
  if (listsError_ != RunTimeError::None) return listsError_;
  if (const RunTimeError error = CheckLists(); error != RunTimeError::None) return error;
  // Left by a program that began the header anew; it would hold again with as many records.
  if (ToInt32(ReadHeaderEntry(ReplacedRecords)) > ToInt32(ReadHeaderEntry("TotalNoOfRecords"))) {
    NoteHeaderEntry(ReplacedRecords, "");
  }
  if (!data_.ListsIncomplete && !linksOutdated_) return RunTimeError::None;
  if (const RunTimeError error = CheckRecords(); error != RunTimeError::None) return error;
  ProfileUpdate update(profile_);
  // The links to records that are missing are about to go.
  RecordReader reader(profile_, data_.DataPath);
  if (data_.ListsIncomplete) NoteMissingRecords(reader);
  const std::int64_t number = FirstNewNumber(reader);
  if (reader.Error() != RunTimeError::None) return reader.Error();
  if (number > ToInt32(ReadHeaderEntry("TotalNoOfRecords"))) {
    NoteHeaderEntry("TotalNoOfRecords", NumberText(number));
  }
  NoteLinks(behindNames_, behindCompanies_, nullptr);
  if (data_.ListsIncomplete) {
    if (const RunTimeError error = RestoreDeletedLinks(); error != RunTimeError::None) return error;
  }
  update.OnUndo([this, wasIncomplete = data_.ListsIncomplete, wereOutdated = linksOutdated_] {
    data_.ListsIncomplete = wasIncomplete;
    linksOutdated_ = wereOutdated;
  });
  data_.ListsIncomplete = false;
  linksOutdated_ = false;
  return update.Commit();
}

}  // namespace quillary
