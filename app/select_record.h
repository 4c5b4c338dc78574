#pragma once

#include <string_view>

#include "app/hub.h"
#include "app/shared_data.h"

namespace quillary {

// Makes the list box's line of that record the selected one, CurListIndex; where the list does not
// show the record, the first line. Whether it does.
bool SelectRecord(SharedData& shared, const Hub& hub, std::string_view RecNo);

}  // namespace quillary
