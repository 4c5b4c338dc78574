#pragma once

#include <cstddef>
#include <initializer_list>
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
// elsewhere, so that insertion, removal and sorting move little, and a copy shares the texts. What
// leaves the list keeps its memory until the list is made anew.
//
// The members are named as those of the standard's containers.
class TextList {
 public:
  using value_type = std::string_view;
  using const_iterator = std::vector<std::string_view>::const_iterator;

  TextList() = default;
  TextList(std::initializer_list<std::string_view> texts);
  TextList(const std::vector<std::string>& texts);  // NOLINT(google-explicit-constructor)
  // So many empty texts.
  explicit TextList(std::size_t size) : views_(size) {}
  // `views` are of texts that stand in `store`.
  TextList(std::shared_ptr<TextStore> store, std::vector<std::string_view> views)
      : store_(std::move(store)), views_(std::move(views)) {}

  std::size_t size() const { return views_.size(); }
  bool empty() const { return views_.empty(); }
  std::string_view operator[](std::size_t index) const { return views_[index]; }
  std::string_view back() const { return views_.back(); }
  const_iterator begin() const { return views_.begin(); }
  const_iterator end() const { return views_.end(); }

  void reserve(std::size_t size) { views_.reserve(size); }
  void clear() { *this = TextList(); }
  void push_back(std::string_view text) { views_.push_back(store_->Keep(text)); }
  void insert(std::size_t index, std::string_view text);
  void erase(std::size_t index);
  void set(std::size_t index, std::string_view text) { views_[index] = store_->Keep(text); }

  // The entries at these places, sharing the texts. Behind the end there are empty ones.
  TextList Picked(const std::vector<std::size_t>& places) const;
  template <typename Predicate>
  void RemoveIf(Predicate isOut) {
    std::erase_if(views_, isOut);
  }
  // `order`: for each place, the index of the entry that comes there.
  void Rearrange(const std::vector<std::size_t>& order);

  friend bool operator==(const TextList& a, const TextList& b) { return a.views_ == b.views_; }

 private:
  std::shared_ptr<TextStore> store_ = std::make_shared<TextStore>();
  std::vector<std::string_view> views_;
};

}  // namespace quillary
