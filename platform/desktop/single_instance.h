#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace quillary {

// One running program for each user. The first instance listens on a local socket in the user's
// runtime folder ($XDG_RUNTIME_DIR; without one, the folder "quillary/run" in the user's data
// folder); a later one asks it to come to the front. Only the user himself can enter that folder,
// and whoever can is believed.
class SingleInstance : public QObject {
  Q_OBJECT

 public:
  // `applicationTitle`: instances of one title exclude each other.
  explicit SingleInstance(const QString& applicationTitle, QObject* parent = nullptr);
  ~SingleInstance() override;

  // True when this is the first instance; from then on `ActivateRequested` is emitted whenever
  // another one starts. False: another instance runs and was asked to come to the front, or did
  // not answer within AnswerTimeoutMs; events run meanwhile. Survives a crash of the earlier
  // instance. Where no such folder can be had, every instance is the first. Touches none of the
  // program's files.
  bool IsFirst();

  int AnswerTimeoutMs = 5000;

 Q_SIGNALS:
  void ActivateRequested();

 private:
  bool Lock();
  void Listen();
  void Answer();

  QString lockFile_;
  QString socketFile_;
  int lock_ = -1;
  QLocalServer server_;
};

}  // namespace quillary
