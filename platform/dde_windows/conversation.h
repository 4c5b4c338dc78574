#pragma once

// The second one needs the first.
// clang-format off
#include <windows.h>
#include <ddeml.h>
// clang-format on

#include <optional>
#include <string>

namespace quillary {

// A conversation of the system's dynamic data exchange, as its client. Every call waits for the
// other program; all calls and the end must come from one thread. Texts are of the system's code
// page: names of applications, topics, items and commands are ASCII.
class Conversation {
 public:
  Conversation() = default;
  ~Conversation();
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  // Ends the one that is open. False when nobody takes it up.
  bool Open(const std::string& application, const std::string& topic);
  // The item as UTF-8; nothing when it is refused or does not come in time.
  std::optional<std::string> Request(const std::string& item, unsigned timeoutMs);
  bool Execute(const std::string& command, unsigned timeoutMs);
  void End();

 private:
  DWORD instance_ = 0;
  HCONV conversation_ = nullptr;
};

}  // namespace quillary
