#pragma once

#include <string_view>

#include "store/records.h"

namespace quillary {

struct Records::Chain {
  std::string_view FirstRecord;  // in the header
  std::string_view Prev;         // in the records
  std::string_view Next;
  std::string_view Shown;  // what the chain is sorted by
};

}  // namespace quillary
