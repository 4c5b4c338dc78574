#include "main/end_signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

namespace quillary {
namespace {

// Whoever started the program may have it ignore a signal (nohup does); blocked, it would come all
// the same.
bool IsIgnored(int signal) {
  struct sigaction action = {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

EndSignals::EndSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    if (!IsIgnored(signal)) sigaddset(&signals, signal);
  }
  if (pthread_sigmask(SIG_BLOCK, &signals, nullptr) != 0) return;
  descriptor_ = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
  if (descriptor_ < 0) {
    // Without this the signals end the program in their own way.
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  }
}

void EndSignals::Listen() {
  if (descriptor_ < 0) return;
  notifier_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
  connect(notifier_.get(), &QSocketNotifier::activated, this, &EndSignals::Read);
}

EndSignals::~EndSignals() {
  notifier_.reset();
  if (descriptor_ >= 0) close(descriptor_);
}

void EndSignals::Read() {
  signalfd_siginfo info{};
  while (read(descriptor_, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) {
    Q_EMIT EndRequested();
  }
}

}  // namespace quillary
