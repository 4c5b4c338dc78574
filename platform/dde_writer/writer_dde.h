#pragma once

#include <QJsonObject>
#include <QObject>
#include <QProcess>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "platform/dde_client.h"
#include "platform/dde_writer/office_process.h"
#include "platform/desktop/dde_calls.h"

namespace quillary {

// Serves "Winword|System" from the LibreOffice Writer that the user has running, and no other
// conversation:
// - item "Topics": "System", the default template and the open text documents, separated by tabs;
// - command "[EditPaste]": puts the text that this program has put on the clipboard where the
//   cursor is in the document that the user was in last. Carriage returns, line feeds or both end
//   a line, which becomes a paragraph. Fails where the cursor is in a place that is protected,
//   while LibreOffice has a modal dialog open, and for an empty text.
//
// It talks to LibreOffice through a process of its own, which is started when it is needed and a
// LibreOffice runs, and ends with LibreOffice or with this program, however these end. A
// LibreOffice that hangs makes every call fail until it goes on; nothing is done late.
class WriterDde : public QObject, public DdeClient {
  Q_OBJECT

 public:
  explicit WriterDde(std::function<std::optional<OfficeProcess>()> findOffice = FindOffice);
  ~WriterDde() override;

  void Open(const std::string& application, const std::string& topic, Answer answer) override;
  void Request(const std::string& item, Answer answer) override;
  void Execute(const std::string& command, Answer answer) override;
  void End() override;

 private:
  bool StartBridge();
  void BridgeFinished(int exitCode, QProcess::ExitStatus status);
  void ReadAnswers();
  void Send(QJsonObject request, Answer answer);

  std::function<std::optional<OfficeProcess>()> findOffice_;
  QString pipe_;
  std::unique_ptr<QProcess> bridge_;
  long office_ = 0;             // process number of the LibreOffice that the bridge is for
  long unreachableOffice_ = 0;  // that of one that no bridge can be had for
  bool hasAnswered_ = false;    // the bridge, once
  bool isOpen_ = false;
  DdeCalls calls_;
};

}  // namespace quillary
