#include "platform/dde_writer/writer_dde.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <utility>

#include "platform/desktop/make_dde_client.h"

static void InitResources() {
  Q_INIT_RESOURCE(writer_dde);
}

namespace quillary {
namespace {

constexpr int kEndMs = 500;  // within which the bridge ends by itself

// Not to be guessed: whoever can open the pipe can make LibreOffice do anything.
QString PrivateName() {
  QString name = QStringLiteral("quillary");
  for (int i = 0; i < 2; ++i) {
    name += QStringLiteral("%1").arg(QRandomGenerator::system()->generate64(), 16, 16,
                                     QLatin1Char('0'));
  }
  return name;
}

QString Script() {
  InitResources();
  QFile file(QStringLiteral(":/dde/writer_dde.py"));
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

}  // namespace

std::unique_ptr<DdeClient> MakeDdeClient() {
  return std::make_unique<WriterDde>();
}

WriterDde::WriterDde(std::function<std::optional<OfficeProcess>()> findOffice)
    : findOffice_(std::move(findOffice)), pipe_(PrivateName()) {}

WriterDde::~WriterDde() {
  if (!bridge_) return;
  disconnect(bridge_.get(), nullptr, this, nullptr);
  bridge_->closeWriteChannel();
  bridge_->waitForFinished(kEndMs);
}

bool WriterDde::StartBridge() {
  const std::optional<OfficeProcess> office = findOffice_();
  if (!office || office->Number == unreachableOffice_) return false;
  office_ = office->Number;
  hasAnswered_ = false;
  QStringList arguments{QStringLiteral("-c"), Script(), pipe_, QString::number(office->Number),
                        QFile::decodeName(office->Launcher.c_str())};
  if (!office->UserInstallation.empty()) {
    arguments << QFile::decodeName(office->UserInstallation.c_str());
  }
  bridge_ = std::make_unique<QProcess>();
  connect(bridge_.get(), &QProcess::readyReadStandardOutput, this, &WriterDde::ReadAnswers);
  connect(bridge_.get(), &QProcess::finished, this, &WriterDde::BridgeFinished);
  connect(bridge_.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) BridgeFinished(1, QProcess::NormalExit);
  });
  bridge_->setStandardErrorFile(QProcess::nullDevice());
  // Python looks for its modules in the folder it is started in.
  bridge_->setWorkingDirectory(QStringLiteral("/"));
  bridge_->start(office->Python.empty() ? QStringLiteral("/usr/bin/python3")
                                        : QFile::decodeName(office->Python.c_str()),
                 arguments);
  return bridge_ != nullptr;
}

void WriterDde::BridgeFinished(int exitCode, QProcess::ExitStatus status) {
  // It has found that LibreOffice's part for Python is not installed. Trying that again and again
  // would only cost time.
  if (status == QProcess::NormalExit && exitCode != 0 && !hasAnswered_) {
    unreachableOffice_ = office_;
  }
  isOpen_ = false;
  // The signal is the bridge's own.
  bridge_.release()->deleteLater();
  calls_.FailAll();
}

void WriterDde::ReadAnswers() {
  while (bridge_ && bridge_->canReadLine()) {
    const QJsonObject answer = QJsonDocument::fromJson(bridge_->readLine()).object();
    const QJsonValue text = answer[QLatin1String("text")];
    hasAnswered_ = true;
    calls_.AnswerCall(
        answer[QLatin1String("id")].toInt(),
        text.isString() ? std::optional(text.toString().toStdString()) : std::nullopt);
  }
}

void WriterDde::Send(QJsonObject request, Answer answer) {
  request[QLatin1String("id")] = calls_.Add(std::move(answer), DeadlineMs);
  bridge_->write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
}

void WriterDde::Open(const std::string& application, const std::string& topic, Answer answer) {
  isOpen_ = false;
  const bool isServed = application == "Winword" && topic == "System";
  if (!isServed || calls_.IsHung() || (!bridge_ && !StartBridge())) {
    return calls_.Fail(std::move(answer));
  }
  Send({{QStringLiteral("do"), QStringLiteral("open")}},
       [this, answer = std::move(answer)](const std::optional<std::string>& text) {
         isOpen_ = text.has_value();
         answer(text);
       });
}

void WriterDde::Request(const std::string& item, Answer answer) {
  if (!isOpen_ || calls_.IsHung()) return calls_.Fail(std::move(answer));
  Send({{QStringLiteral("do"), QStringLiteral("request")},
        {QStringLiteral("item"), QString::fromStdString(item)}},
       std::move(answer));
}

void WriterDde::Execute(const std::string& command, Answer answer) {
  if (!isOpen_ || calls_.IsHung()) return calls_.Fail(std::move(answer));
  Send({{QStringLiteral("do"), QStringLiteral("execute")},
        {QStringLiteral("command"), QString::fromStdString(command)},
        {QStringLiteral("clipboard"), QGuiApplication::clipboard()->text()}},
       std::move(answer));
}

void WriterDde::End() {
  isOpen_ = false;
  calls_.Forget();
}

}  // namespace quillary
