#pragma once

#include <functional>
#include <optional>
#include <string>

namespace quillary {

// Dynamic data exchange, the client's side: a conversation with another running program about one
// of its topics.
//
// No call waits. Each is answered once, later, while events run: with a text, or with nothing when
// it failed, which includes no answer within DeadlineMs.
class DdeClient {
 public:
  using Answer = std::function<void(const std::optional<std::string>& text)>;

  virtual ~DdeClient() = default;

  // Opens the conversation, in place of one that is open. The answer's text is empty; it comes from
  // the other program, which therefore is there and not hung.
  virtual void Open(const std::string& application, const std::string& topic, Answer answer) = 0;
  // Asks for an item. Fails where no conversation is open.
  virtual void Request(const std::string& item, Answer answer) = 0;
  // Has the other program execute a command. The answer's text is empty. Fails where no
  // conversation is open. Without an answer in time it is not known whether the command was
  // executed.
  virtual void Execute(const std::string& command, Answer answer) = 0;
  // Ends the conversation. What has not been answered yet will not be.
  virtual void End() = 0;

  int DeadlineMs = 5000;
};

}  // namespace quillary
