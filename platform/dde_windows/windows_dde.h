#pragma once

#include <QObject>
#include <QString>
#include <QThread>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/dde_client.h"
#include "platform/dde_windows/conversation.h"
#include "platform/desktop/dde_calls.h"

namespace quillary {

// Has the conversation on a thread of its own, since opening one waits for every window of the
// desktop, hung ones too.
class DdeThread : public QObject {
  Q_OBJECT

 public:
  using Step = std::function<std::optional<std::string>(Conversation&)>;
  void Do(int id, const Step& step);
  // On that thread as well, before it ends.
  void Close() { conversation_.reset(); }

 Q_SIGNALS:
  void Done(int id, bool isAnswered, const QString& text);

 private:
  std::unique_ptr<Conversation> conversation_;
};

// The system's own dynamic data exchange.
class WindowsDde : public QObject, public DdeClient {
  Q_OBJECT

 public:
  WindowsDde();
  ~WindowsDde() override;

  void Open(const std::string& application, const std::string& topic, Answer answer) override;
  void Request(const std::string& item, Answer answer) override;
  void Execute(const std::string& command, Answer answer) override;
  void End() override;

 private:
  void Pass(DdeThread::Step step, Answer answer);

  std::unique_ptr<QThread> thread_;
  std::unique_ptr<DdeThread> onThread_;
  DdeCalls calls_;
};

}  // namespace quillary
