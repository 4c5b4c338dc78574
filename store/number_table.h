#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace quillary {

// A value for each record number or file number. As a rule they begin at 0 and leave few out, but
// damaged data may name any: only the usual ones have a place in a vector.
template <class T>
class NumberTable {
 public:
  static constexpr std::int32_t UsualNumbers = 409600;

  // T() for a number that was not asked for yet. Valid until the next call.
  T& operator[](std::int32_t number) {
    if (number < 0 || number >= UsualNumbers) return others_[number];
    const auto index = static_cast<std::size_t>(number);
    if (index >= usual_.size()) usual_.resize(index + 1);
    return usual_[index];
  }

 private:
  std::vector<T> usual_;
  std::unordered_map<std::int32_t, T> others_;
};

}  // namespace quillary
