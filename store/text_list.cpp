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

void TextList::Resize(std::size_t size) {
  blocks_.resize((size + BlockSize - 1) / BlockSize);
  size_ = size;
}

void TextList::push_back(std::string_view text) {
  Resize(size_ + 1);
  At(size_ - 1) = store_->Keep(text);
}

void TextList::insert(std::size_t index, std::string_view text) {
  Resize(size_ + 1);
  const std::size_t changed = index / BlockSize;
  std::size_t end = (size_ - 1) % BlockSize;  // of the block's entries
  for (std::size_t i = blocks_.size() - 1; i > changed; --i) {
    // The place before the first entry is that of the last one of a full block, which has moved on.
    Block& block = blocks_[i];
    block.First = (block.First + BlockSize - 1) % BlockSize;
    block.At(0) = blocks_[i - 1].At(BlockSize - 1);
    end = BlockSize - 1;
  }
  Block& block = blocks_[changed];
  for (std::size_t i = end; i > index % BlockSize; --i) block.At(i) = block.At(i - 1);
  At(index) = store_->Keep(text);
}

void TextList::erase(std::size_t index) {
  const std::size_t changed = index / BlockSize;
  Block& block = blocks_[changed];
  const std::size_t end = std::min(BlockSize, size_ - changed * BlockSize);
  for (std::size_t i = index % BlockSize; i + 1 < end; ++i) block.At(i) = block.At(i + 1);
  for (std::size_t i = changed + 1; i < blocks_.size(); ++i) {
    blocks_[i - 1].At(BlockSize - 1) = blocks_[i].At(0);
    blocks_[i].First = (blocks_[i].First + 1) % BlockSize;
  }
  Resize(size_ - 1);
}

TextList TextList::Picked(const std::vector<std::size_t>& places) const {
  return {store_, places.size(), [&](std::size_t i) {
            return places[i] < size_ ? (*this)[places[i]] : std::string_view();
          }};
}

bool operator==(const TextList& a, const TextList& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

}  // namespace quillary
