#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

#include "store/chain.h"
#include "store/records.h"

namespace quillary {
namespace {

constexpr std::string_view SortingText = "Please wait while sorting names list...";

double Percent(std::size_t done, std::size_t count) {
  return static_cast<double>(done) / static_cast<double>(count) * 100;
}

bool IsSorted(const TextComparer& comparer, const TextList& texts) {
  return std::is_sorted(texts.begin(), texts.end(),
                        [&](const auto& a, const auto& b) { return comparer.Compare(a, b) < 0; });
}

// The order of the sorted texts, by their indices.
std::vector<std::size_t> SortedOrder(const TextComparer& comparer, const TextList& texts,
                                     ProgressHooks& progress, double progressFrom) {
  std::vector<std::string> keys;
  keys.reserve(texts.size());
  for (const std::string_view text : texts) {
    keys.push_back(comparer.SortKey(text));
    progress.Step(progressFrom + Percent(keys.size(), texts.size()) / 2);
  }
  std::vector<std::size_t> order(texts.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
  return order;
}

// False: both lists were in order already and nothing was changed.
bool SortBoth(const TextComparer& comparer, ProgressHooks& progress, TextList& names,
              TextList& namesRecNo, TextList& companies, TextList& companiesRecNo) {
  if (names.size() < 2) return false;
  if (IsSorted(comparer, names) && IsSorted(comparer, companies)) {
    progress.Step(100);
    return false;
  }
  const auto nameOrder = SortedOrder(comparer, names, progress, 0);
  const auto companyOrder = SortedOrder(comparer, companies, progress, 50);
  names.Rearrange(nameOrder);
  namesRecNo.Rearrange(nameOrder);
  companies.Rearrange(companyOrder);
  companiesRecNo.Rearrange(companyOrder);
  return true;
}

}  // namespace

RunTimeError Records::SortNamesList(bool mayStore) {
  progress_.Begin(SortingText, "Sorting Names...");
  // Where the header's count is too small the chains go on; what follows must stay linked.
  if (!data_.ListsIncomplete) {
    behindNames_ = RecordBehind(NameChain, data_.NamesRecNo);
    behindCompanies_ = RecordBehind(CompanyChain, data_.CompaniesRecNo);
  }
  RunTimeError error = RunTimeError::None;
  const bool isMoved = SortBoth(comparer_, progress_, data_.NamesList, data_.NamesRecNo,
                                data_.CompaniesList, data_.CompaniesRecNo);
  if (isMoved && !mayStore) {
    linksOutdated_ = true;
  } else if (isMoved) {
    progress_.Begin("Please wait while sorting data...", "Sorting Data...");
    ProfileUpdate update(profile_);
    update.OnUndo([this] { linksOutdated_ = true; });
    NoteLinks(behindNames_, behindCompanies_, &progress_);
    linksOutdated_ = false;
    error = update.Commit(EventsRun());
  }
  progress_.End();
  return error;
}

void Records::SortFilteredList() {
  progress_.Begin(SortingText, "");
  SortBoth(comparer_, progress_, data_.FilteredNames, data_.FilteredNamesRecNo,
           data_.FilteredCompanies, data_.FilteredCompaniesRecNo);
  progress_.End();
}

}  // namespace quillary
