#pragma once

#include <functional>
#include <string>

#include "main/forms.h"

namespace quillary {

// What Main needs to know of the place where the program runs.
struct Surroundings {
  // The program's own directory, in which a new data set is made; a program path.
  std::string OwnDirectory;
  // Whether this is the only instance; otherwise the other one was asked to come to the front.
  std::function<bool()> IsFirstInstance;
};

// The start of the program: splash window, preferences, data files, names lists, main window, usage
// counter, tip of the day. False: the program is to end without an event loop, since another
// instance runs, the user declined to create data, or asked it to end meanwhile.
bool Main(Forms& forms, Profile& profile, const Surroundings& surroundings);

}  // namespace quillary
