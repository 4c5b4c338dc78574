#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillary {

// Where the texts of one or several lists stand. Nothing is given back before the last list goes.
class TextStore {
 public:
  // The text as it stands here from now on.
  std::string_view Keep(std::string_view text);

 private:
  std::pmr::monotonic_buffer_resource memory_;
};

// A list of texts, most of which stay as they are: an entry is a view of a text that stands
// elsewhere, so that sorting moves little, and a copy shares the texts. What leaves the list keeps
// its memory until the list is made anew.
//
// The views stand in blocks, each of them a ring and full, but for the last one. An insertion or
// removal moves those of one block, and one of each block behind it.
//
// The members are named as those of the standard's containers.
class TextList {
 public:
  using value_type = std::string_view;
  class const_iterator;

  TextList() = default;
  TextList(const TextList&) = default;
  TextList& operator=(const TextList&) = default;
  TextList(TextList&& other) noexcept { Swap(other); }
  TextList& operator=(TextList&& other) noexcept {
    Swap(other);
    return *this;
  }
  ~TextList() = default;
  TextList(std::initializer_list<std::string_view> texts);
  TextList(const std::vector<std::string>& texts);  // NOLINT(google-explicit-constructor)
  // So many empty texts.
  explicit TextList(std::size_t size) { Resize(size); }
  // So many texts that stand in `store`: `viewAt(i)` is the one at index i.
  template <typename ViewAt>
  TextList(std::shared_ptr<TextStore> store, std::size_t size, ViewAt viewAt)
      : store_(std::move(store)) {
    Resize(size);
    for (std::size_t i = 0; i < size; ++i) At(i) = viewAt(i);
  }

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  std::string_view operator[](std::size_t index) const {
    return blocks_[index / BlockSize].At(index % BlockSize);
  }
  std::string_view back() const { return (*this)[size_ - 1]; }
  const_iterator begin() const;
  const_iterator end() const;

  void clear() { *this = TextList(); }
  void push_back(std::string_view text);
  void insert(std::size_t index, std::string_view text);
  void erase(std::size_t index);
  void set(std::size_t index, std::string_view text) { At(index) = store_->Keep(text); }

  // The entries at these places, sharing the texts. Behind the end there are empty ones.
  TextList Picked(const std::vector<std::size_t>& places) const;
  template <typename Predicate>
  void RemoveIf(Predicate isOut) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < size_; ++i) {
      const std::string_view text = (*this)[i];
      if (!isOut(text)) At(kept++) = text;
    }
    Resize(kept);
  }
  // `order`: for each place, the index of the entry that comes there.
  void Rearrange(const std::vector<std::size_t>& order) { *this = Picked(order); }

  friend bool operator==(const TextList& a, const TextList& b);

 private:
  static constexpr std::size_t BlockSize = 256;
  struct Block {
    std::string_view& At(std::size_t index) { return Views[(First + index) % BlockSize]; }
    std::string_view At(std::size_t index) const { return Views[(First + index) % BlockSize]; }

    std::array<std::string_view, BlockSize> Views;
    std::size_t First = 0;
  };

  std::string_view& At(std::size_t index) {
    return blocks_[index / BlockSize].At(index % BlockSize);
  }
  void Resize(std::size_t size);
  void Swap(TextList& other) {
    std::swap(store_, other.store_);
    std::swap(blocks_, other.blocks_);
    std::swap(size_, other.size_);
  }

  std::shared_ptr<TextStore> store_ = std::make_shared<TextStore>();
  std::vector<Block> blocks_;
  std::size_t size_ = 0;
};

class TextList::const_iterator {
 public:
  using iterator_category = std::random_access_iterator_tag;
  using value_type = std::string_view;
  using difference_type = std::ptrdiff_t;
  using pointer = void;
  using reference = std::string_view;

  const_iterator() = default;
  const_iterator(const TextList& list, std::size_t index) : list_(&list), index_(index) {}

  std::string_view operator*() const { return (*list_)[index_]; }
  std::string_view operator[](std::ptrdiff_t steps) const { return *(*this + steps); }
  const_iterator& operator+=(std::ptrdiff_t steps) {
    index_ += static_cast<std::size_t>(steps);
    return *this;
  }
  const_iterator& operator-=(std::ptrdiff_t steps) { return *this += -steps; }
  const_iterator& operator++() { return *this += 1; }
  const_iterator& operator--() { return *this += -1; }
  const_iterator operator++(int) { return std::exchange(*this, *this + 1); }
  const_iterator operator--(int) { return std::exchange(*this, *this + -1); }
  friend const_iterator operator+(const_iterator place, std::ptrdiff_t steps) {
    return place += steps;
  }
  friend const_iterator operator+(std::ptrdiff_t steps, const_iterator place) {
    return place += steps;
  }
  friend const_iterator operator-(const_iterator place, std::ptrdiff_t steps) {
    return place -= steps;
  }
  friend std::ptrdiff_t operator-(const const_iterator& a, const const_iterator& b) {
    return static_cast<std::ptrdiff_t>(a.index_ - b.index_);
  }
  friend bool operator==(const const_iterator& a, const const_iterator& b) {
    return a.index_ == b.index_;
  }
  friend auto operator<=>(const const_iterator& a, const const_iterator& b) {
    return a.index_ <=> b.index_;
  }

 private:
  const TextList* list_ = nullptr;
  std::size_t index_ = 0;
};

inline TextList::const_iterator TextList::begin() const {
  return {*this, 0};
}
inline TextList::const_iterator TextList::end() const {
  return {*this, size_};
}

}  // namespace quillary
