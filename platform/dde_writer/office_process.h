#pragma once

#include <optional>
#include <string>

namespace quillary {

// A running LibreOffice.
struct OfficeProcess {
  long Number = 0;
  std::string Launcher;  // the program that reaches it when it is started once more
  std::string Python;    // its own interpreter; empty where it uses the system's
  std::string
      UserInstallation;  // the argument that names its user profile; empty for the usual one
};

// The LibreOffice that this user has running on this desktop; of several (with a user profile each)
// the first in the system's table of processes, whether it has a document open or not. Only looks
// at that table.
std::optional<OfficeProcess> FindOffice();

}  // namespace quillary
