#pragma once

#include <QString>

#include "auxiliary/msg_box.h"
#include "platform/run_time_error.h"

namespace quillary {

// Tells why a search or a list had to pass over some of the records; returns when the user has
// answered.
void TellUnreadRecords(MsgBoxSnglTxt& box, RunTimeError error, const QString& title);

}  // namespace quillary
