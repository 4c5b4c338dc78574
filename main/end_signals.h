#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <memory>

namespace quillary {

// The system's requests to end: SIGTERM, SIGINT and SIGHUP come as a Qt signal, at a moment when
// events run. To be made before any other thread: it blocks these signals for the process.
class EndSignals : public QObject {
  Q_OBJECT

 public:
  EndSignals();
  ~EndSignals() override;

 Q_SIGNALS:
  void EndRequested();

 private:
  void Read();

  int descriptor_ = -1;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace quillary
