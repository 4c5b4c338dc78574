#include "platform/dde_windows/windows_dde.h"

#include <utility>

#include "platform/desktop/make_dde_client.h"

namespace quillary {
namespace {

constexpr unsigned long kEndMs = 500;  // within which the thread ends, unless it waits for others

std::optional<std::string> Success(bool succeeded) {
  return succeeded ? std::optional(std::string()) : std::nullopt;
}

}  // namespace

std::unique_ptr<DdeClient> MakeDdeClient() {
  return std::make_unique<WindowsDde>();
}

void DdeThread::Do(int id, const Step& step) {
  // It belongs to the thread that makes it.
  if (!conversation_) conversation_ = std::make_unique<Conversation>();
  const std::optional<std::string> text = step(*conversation_);
  Q_EMIT Done(id, text.has_value(), QString::fromStdString(text.value_or(std::string())));
}

WindowsDde::WindowsDde()
    : thread_(std::make_unique<QThread>()), onThread_(std::make_unique<DdeThread>()) {
  onThread_->moveToThread(thread_.get());
  connect(onThread_.get(), &DdeThread::Done, this,
          [this](int id, bool isAnswered, const QString& text) {
            calls_.AnswerCall(id, isAnswered ? std::optional(text.toStdString()) : std::nullopt);
          });
  thread_->start();
}

WindowsDde::~WindowsDde() {
  QMetaObject::invokeMethod(onThread_.get(), &DdeThread::Close, Qt::QueuedConnection);
  thread_->quit();
  if (thread_->wait(kEndMs)) return;
  // It hangs with a program that hangs, and ends with this process.
  onThread_->disconnect();
  static_cast<void>(onThread_.release());
  static_cast<void>(thread_.release());
}

void WindowsDde::Pass(DdeThread::Step step, Answer answer) {
  if (calls_.IsHung()) return calls_.Fail(std::move(answer));
  const int id = calls_.Add(std::move(answer), DeadlineMs);
  QMetaObject::invokeMethod(onThread_.get(), [thread = onThread_.get(), id,
                                              step = std::move(step)] { thread->Do(id, step); });
}

void WindowsDde::Open(const std::string& application, const std::string& topic, Answer answer) {
  Pass([=](Conversation& link) { return Success(link.Open(application, topic)); },
       std::move(answer));
}

void WindowsDde::Request(const std::string& item, Answer answer) {
  const auto timeout = static_cast<unsigned>(DeadlineMs);
  Pass([=](Conversation& link) { return link.Request(item, timeout); }, std::move(answer));
}

void WindowsDde::Execute(const std::string& command, Answer answer) {
  const auto timeout = static_cast<unsigned>(DeadlineMs);
  Pass([=](Conversation& link) { return Success(link.Execute(command, timeout)); },
       std::move(answer));
}

void WindowsDde::End() {
  calls_.Forget();
  Pass(
      [](Conversation& link) {
        link.End();
        return Success(true);
      },
      [](const std::optional<std::string>& /*text*/) {});
}

}  // namespace quillary
