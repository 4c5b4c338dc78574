#include "platform/desktop/dde_calls.h"

#include <QTimerEvent>
#include <algorithm>
#include <utility>

namespace quillary {

int DdeCalls::Add(Answer answer, int deadlineMs) {
  calls_[++lastId_] = {std::move(answer), startTimer(deadlineMs)};
  return lastId_;
}

void DdeCalls::Fail(Answer answer) {
  calls_[++lastId_] = {std::move(answer), startTimer(0), false};
}

void DdeCalls::AnswerCall(int id, const std::optional<std::string>& text) {
  const auto call = calls_.extract(id);
  if (call.empty()) return;
  if (call.mapped().Timer != 0) killTimer(call.mapped().Timer);
  if (call.mapped().ToCaller) call.mapped().ToCaller(text);
}

void DdeCalls::FailAll() {
  // An answer may lead to further calls.
  const int last = lastId_;
  while (!calls_.empty() && calls_.begin()->first <= last) {
    AnswerCall(calls_.begin()->first, std::nullopt);
  }
}

void DdeCalls::Forget() {
  for (auto& [id, call] : calls_) call.ToCaller = {};
}

bool DdeCalls::IsHung() const {
  return std::any_of(calls_.begin(), calls_.end(),
                     [](const auto& call) { return call.second.IsLate; });
}

void DdeCalls::timerEvent(QTimerEvent* event) {
  killTimer(event->timerId());
  const auto call = std::find_if(calls_.begin(), calls_.end(), [event](const auto& entry) {
    return entry.second.Timer == event->timerId();
  });
  if (call == calls_.end()) return;
  call->second.Timer = 0;
  if (!call->second.IsPassedOn) return AnswerCall(call->first, std::nullopt);
  call->second.IsLate = true;
  if (const Answer answer = std::exchange(call->second.ToCaller, {})) answer(std::nullopt);
}

}  // namespace quillary
