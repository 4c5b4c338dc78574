#include <algorithm>
#include <cstddef>

#include "platform/numbers.h"
#include "platform/text.h"
#include "store/chain.h"
#include "store/record_reader.h"
#include "store/records.h"

namespace quillary {

// The record that follows the listed ones in the files, where the header's count is smaller than
// the chain is long; empty as a rule. It stays linked, so that no record is lost by a wrong count.
std::string Records::RecordBehind(const Chain& chain, const std::vector<std::string>& recNos) {
  const std::string link = data_.NoOfRecords < 1 ? ReadHeaderEntry(chain.FirstRecord)
                                                 : ReadRecordEntry(recNos.back(), chain.Next);
  std::string recNo(Trim(link));
  if (recNo.empty() || !ParseRecordNumber(recNo) || !RecordExists(recNo) ||
      std::find(recNos.begin(), recNos.end(), recNo) != recNos.end()) {
    return {};
  }
  return recNo;
}

void Records::NoteLink(const Chain& chain, const std::vector<std::string>& recNos,
                       std::size_t index, const std::string& behind) {
  const std::string file = RecordFile(recNos[index]);
  const std::string section = RecordSection(recNos[index]);
  const bool isLast = index + 1 == recNos.size();
  Note(file, section, chain.Prev, index == 0 ? std::string_view() : Trim(recNos[index - 1]));
  Note(file, section, chain.Next, isLast ? std::string_view(behind) : Trim(recNos[index + 1]));
  if (isLast && !behind.empty()) NoteRecordEntry(behind, chain.Prev, Trim(recNos[index]));
}

// Every link of both lists as they are in memory. Without `progress` no events run meanwhile.
void Records::NoteLinks(const std::string& behindNames, const std::string& behindCompanies,
                        ProgressHooks* progress) {
  const auto count = static_cast<std::size_t>(std::max<std::int16_t>(data_.NoOfRecords, 0));
  NoteHeaderEntry(NameChain.FirstRecord, Trim(data_.NamesRecNo[0]));
  NoteHeaderEntry(CompanyChain.FirstRecord, Trim(data_.CompaniesRecNo[0]));
  if (data_.ListsIncomplete) NoteHeaderEntry("NoOfRecords", NumberText(data_.NoOfRecords));
  for (std::size_t i = 0; i < count; ++i) {
    if (progress != nullptr) {
      progress->Step(static_cast<double>(i + 1) / static_cast<double>(count) * 100);
    }
    NoteLink(NameChain, data_.NamesRecNo, i, behindNames);
    NoteLink(CompanyChain, data_.CompaniesRecNo, i, behindCompanies);
  }
}

RunTimeError Records::RestoreLinks() {
  if (const RunTimeError error = CheckHeader(); error != RunTimeError::None) return error;
  if (listsError_ != RunTimeError::None) return listsError_;
  if (!data_.ListsIncomplete && !linksOutdated_) return RunTimeError::None;
  ProfileUpdate update(profile_);
  NoteLinks(behindNames_, behindCompanies_, nullptr);
  update.OnUndo([this, wasIncomplete = data_.ListsIncomplete, wereOutdated = linksOutdated_] {
    data_.ListsIncomplete = wasIncomplete;
    linksOutdated_ = wereOutdated;
  });
  data_.ListsIncomplete = false;
  linksOutdated_ = false;
  return update.Commit();
}

}  // namespace quillary
