#include "store/text_list.h"

#include <algorithm>
#include <cstring>

namespace quillary {

std::string_view TextStore::Keep(std::string_view text) {
  if (text.empty()) return {};
  auto* const place = static_cast<char*>(memory_.allocate(text.size(), alignof(char)));
  std::memcpy(place, text.data(), text.size());
  return {place, text.size()};
}

TextList::TextList(std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) push_back(text);
}

TextList::TextList(const std::vector<std::string>& texts) {
  for (const std::string& text : texts) push_back(text);
}

void TextList::insert(std::size_t index, std::string_view text) {
  views_.insert(views_.begin() + static_cast<std::ptrdiff_t>(index), store_->Keep(text));
}

void TextList::erase(std::size_t index) {
  views_.erase(views_.begin() + static_cast<std::ptrdiff_t>(index));
}

TextList TextList::Picked(const std::vector<std::size_t>& places) const {
  std::vector<std::string_view> views;
  views.reserve(places.size());
  for (const std::size_t place : places) {
    views.push_back(place < views_.size() ? views_[place] : std::string_view());
  }
  return {store_, std::move(views)};
}

void TextList::Rearrange(const std::vector<std::size_t>& order) {
  std::vector<std::string_view> views;
  views.reserve(order.size());
  for (const std::size_t index : order) views.push_back(views_[index]);
  views_ = std::move(views);
}

}  // namespace quillary
