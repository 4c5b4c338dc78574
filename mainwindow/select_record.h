#pragma once

#include "app/hub.h"
#include "app/shared_data.h"

namespace quillary {

// Makes the list box's line of record CurRecordNo the selected one, CurListIndex; where there is no
// such line, CurListIndex stays as it is.
void SelectCurRecordNo(SharedData& shared, const Hub& hub);

}  // namespace quillary
