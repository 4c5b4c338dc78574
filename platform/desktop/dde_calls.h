#pragma once

#include <QObject>
#include <map>
#include <optional>
#include <string>

#include "platform/dde_client.h"

namespace quillary {

// The calls of a DdeClient that somebody else, a process or a thread, answers: each caller is
// answered once and in time, whenever the answer comes.
class DdeCalls : public QObject {
 public:
  using Answer = DdeClient::Answer;

  // Notes a call that is about to be passed on; gives the number by which it will be answered.
  // Without that it fails after `deadlineMs`.
  int Add(Answer answer, int deadlineMs);
  // Answers a call that is not passed on: it fails as soon as events run.
  void Fail(Answer answer);
  void AnswerCall(int id, const std::optional<std::string>& text);
  // Nobody will answer the calls that are open.
  void FailAll();
  // Nobody waits for the calls that are open. They still will be answered.
  void Forget();
  // A call has had no answer in time and has none yet.
  bool IsHung() const;

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  struct Call {
    Answer ToCaller;  // empty when the caller has got it, or does not want it any more
    int Timer = 0;    // until it must be answered; 0 when that time is over
    bool IsPassedOn = true;
    bool IsLate = false;
  };

  int lastId_ = 0;
  std::map<int, Call> calls_;
};

}  // namespace quillary
