#include <cstddef>
#include <utility>

#include "store/record_search.h"
#include "store/records.h"

namespace quillary {

std::optional<Records::FoundEntry> Records::FindText(std::string_view text,
                                                     const std::vector<Field>& fields,
                                                     const TextList& recordNos, std::size_t start,
                                                     RunTimeError* error) {
  progress_.Begin("Please wait. Searching...", "");
  std::vector<std::string> keys;
  keys.reserve(fields.size());
  for (const Field field : fields) keys.push_back(data_.FieldKeys.at(field));
  RecordSearch search(profile_, data_.DataPath, text, std::move(keys));
  std::optional<FoundEntry> found;
  const std::size_t count = recordNos.size();
  for (std::size_t done = 0; done < count && !found; ++done) {
    const std::size_t index = (start + 1 + done) % count;
    const std::size_t shown = index > start ? done : done + 1;
    progress_.Step(static_cast<double>(shown) / static_cast<double>(count) * 100);
    const auto key = search.FirstKey(recordNos[index]);
    if (key) found = FoundEntry{index, *key};
  }
  progress_.End();
  if (error != nullptr) *error = search.Error();
  return found;
}

}  // namespace quillary
