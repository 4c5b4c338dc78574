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

// The LibreOffice that this user has running on this desktop; of several, any one. Only looks at
// the system's table of processes.
std::optional<OfficeProcess> FindOffice();

}  // namespace quillary
