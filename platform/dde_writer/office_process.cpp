#include "platform/dde_writer/office_process.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

namespace quillary {
namespace {

// What a file of the process holds, each string ended by `end`.
std::vector<std::string> Strings(const std::filesystem::path& file, char end) {
  std::ifstream stream(file, std::ios::binary);
  std::vector<std::string> strings;
  for (std::string text; std::getline(stream, text, end);) strings.push_back(text);
  return strings;
}

bool IsOffice(const std::filesystem::path& process) {
  struct stat status {};
  return stat(process.c_str(), &status) == 0 && status.st_uid == geteuid() &&
         Strings(process / "comm", '\n') == std::vector<std::string>{"soffice.bin"};
}

// Another desktop of the same user has other windows and another clipboard.
bool IsOnThisDesktop(const std::filesystem::path& process) {
  const std::vector<std::string> environment = Strings(process / "environ", '\0');
  return std::any_of(environment.begin(), environment.end(), [](const std::string& variable) {
    for (const char* name : {"WAYLAND_DISPLAY", "DISPLAY"}) {
      const char* own = std::getenv(name);
      if (own != nullptr && *own != '\0' && variable == std::string(name) + "=" + own) return true;
    }
    return false;
  });
}

std::optional<OfficeProcess> Describe(const std::filesystem::path& process) {
  OfficeProcess office;
  for (const std::string& argument : Strings(process / "cmdline", '\0')) {
    // One that serves programs has no document of the user's.
    if (argument.ends_with("-headless")) return std::nullopt;
    if (argument.starts_with("-env:UserInstallation=")) office.UserInstallation = argument;
  }
  std::error_code error;
  const std::filesystem::path folder =
      std::filesystem::read_symlink(process / "exe", error).parent_path();
  // Out of another root (a container's) its files cannot be reached.
  if (error || !std::filesystem::exists(folder / "soffice", error)) return std::nullopt;
  office.Number = std::stol(process.filename());
  office.Launcher = folder / "soffice";
  if (std::filesystem::exists(folder / "python", error)) office.Python = folder / "python";
  return office;
}

}  // namespace

std::optional<OfficeProcess> FindOffice() {
  std::error_code error;
  for (std::filesystem::directory_iterator entry("/proc", error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    if (!IsOffice(entry->path()) || !IsOnThisDesktop(entry->path())) continue;
    if (std::optional<OfficeProcess> office = Describe(entry->path())) return office;
  }
  return std::nullopt;
}

}  // namespace quillary
