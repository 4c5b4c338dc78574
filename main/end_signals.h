#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <memory>

namespace quillary {

// The system's requests to end: SIGTERM, SIGINT and SIGHUP come as a Qt signal, at a moment when
// events run. To be made before any other thread, so before the QApplication: threads made later
// leave these signals to this object.
class EndSignals : public QObject {
  Q_OBJECT

 public:
  EndSignals();
  ~EndSignals() override;

  // Begins to emit EndRequested, also for a request that came before. Needs the QApplication.
  void Listen();

 Q_SIGNALS:
  void EndRequested();

 private:
  void Read();

  int descriptor_ = -1;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace quillary
