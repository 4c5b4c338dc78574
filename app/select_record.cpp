#include "app/select_record.h"

#include "platform/numbers.h"

namespace quillary {

bool SelectRecord(SharedData& shared, const Hub& hub, std::string_view RecNo) {
  const int recordNo = ToInt32(RecNo);
  shared.CurListIndex = 0;
  for (int i = 0; i < hub.ListCount(); ++i) {
    if (hub.ItemData(i) != recordNo) continue;
    shared.CurListIndex = static_cast<std::int16_t>(i);
    return true;
  }
  return false;
}

}  // namespace quillary
