#pragma once

#include <functional>

#include "main/forms.h"

namespace quillary {

// The start of the program: splash window, preferences, data files, names lists, main window, usage
// counter, tip of the day. False: the program is to end without an event loop, since another
// instance runs, the user declined to create data, or asked it to end meanwhile.
//
// `isFirstInstance`: whether this is the only instance; otherwise the other one was asked to come
// to the front.
bool Main(Forms& forms, Profile& profile, const std::function<bool()>& isFirstInstance);

}  // namespace quillary
