#include "mainwindow/select_record.h"

#include <algorithm>

#include "platform/numbers.h"

namespace quillary {

void SelectCurRecordNo(SharedData& shared, const Hub& hub) {
  const int recordNo = ToInt32(shared.CurRecordNo);
  const int known = shared.FilterOn ? shared.FilteredCount : shared.NoOfRecords;
  const int count = std::min(known, hub.ListCount());
  for (int i = 0; i < count; ++i) {
    if (hub.ItemData(i) == recordNo) {
      shared.CurListIndex = static_cast<std::int16_t>(i);
      return;
    }
  }
}

}  // namespace quillary
