#include "platform/desktop/single_instance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTimer>

namespace quillary {
namespace {

constexpr int kRetryMs = 100;
constexpr qint64 kLongestMessage = 64;

QByteArray Request() {
  return QByteArrayLiteral("activate\n");
}
QByteArray Reply() {
  return QByteArrayLiteral("activated\n");
}

bool IsPrivateFolder(const QString& folder) {
  struct stat status {};
  if (!QDir::isAbsolutePath(folder)) return false;
  if (lstat(QFile::encodeName(folder).constData(), &status) != 0) return false;
  return S_ISDIR(status.st_mode) && status.st_uid == geteuid() && (status.st_mode & 077) == 0;
}

// Empty if there is no folder that is the user's own.
QString RuntimeFolder() {
  QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
  if (IsPrivateFolder(runtime)) return runtime;
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                       QStringLiteral("/quillary");
  QDir().mkpath(QFileInfo(data).path());
  mkdir(QFile::encodeName(data).constData(), 0700);
  // Another folder than the program's own one, which may be older and open to others.
  const QString own = data + QStringLiteral("/run");
  mkdir(QFile::encodeName(own).constData(), 0700);
  return IsPrivateFolder(own) ? own : QString();
}

}  // namespace

SingleInstance::SingleInstance(const QString& applicationTitle, QObject* parent) : QObject(parent) {
  const QString folder = RuntimeFolder();
  if (folder.isEmpty()) return;
  const QString name = applicationTitle.toLower().replace(QLatin1Char('/'), QLatin1Char('-'));
  lockFile_ = folder + QLatin1Char('/') + name + QStringLiteral(".lock");
  socketFile_ = folder + QLatin1Char('/') + name + QStringLiteral(".socket");
  connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::Answer);
}

// The socket goes before the lock, so that it is never the next instance's socket that is removed.
SingleInstance::~SingleInstance() {
  server_.close();
  if (lock_ >= 0) close(lock_);
}

bool SingleInstance::IsFirst() {
  if (lockFile_.isEmpty() || Lock()) return true;

  // The other instance may be about to listen, or to end: both are tried until one comes true.
  QEventLoop loop;
  QLocalSocket socket;
  QTimer retry;
  QTimer longestWait;
  bool first = false;
  const auto attempt = [&] {
    first = Lock();
    if (first) {
      loop.quit();
    } else if (socket.state() == QLocalSocket::UnconnectedState) {
      socket.connectToServer(socketFile_);
    }
  };
  connect(&socket, &QLocalSocket::connected, &loop, [&] { socket.write(Request()); });
  connect(&socket, &QLocalSocket::readyRead, &loop, &QEventLoop::quit);
  connect(&retry, &QTimer::timeout, &loop, attempt);
  connect(&longestWait, &QTimer::timeout, &loop, &QEventLoop::quit);
  retry.start(kRetryMs);
  longestWait.start(AnswerTimeoutMs);
  socket.connectToServer(socketFile_);
  loop.exec(QEventLoop::ExcludeUserInputEvents);
  return first;
}

// The lock is the system's and ends with the process, however that ends.
bool SingleInstance::Lock() {
  if (lock_ >= 0) return true;
  const int file = open(QFile::encodeName(lockFile_).constData(),
                        O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (file < 0) return true;  // nothing to tell instances apart by
  if (flock(file, LOCK_EX | LOCK_NB) != 0) {
    close(file);
    return false;
  }
  lock_ = file;
  Listen();
  return true;
}

// Without a socket (its path may be too long for one) the program runs all the same; a second
// instance then only ends.
void SingleInstance::Listen() {
  QLocalServer::removeServer(socketFile_);
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  server_.listen(socketFile_);
}

void SingleInstance::Answer() {
  while (QLocalSocket* socket = server_.nextPendingConnection()) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    const auto read = [this, socket] {
      if (socket->canReadLine() && socket->readLine() == Request()) {
        socket->write(Reply());
        socket->flush();
        Q_EMIT ActivateRequested();
      } else if (socket->bytesAvailable() > kLongestMessage) {
        socket->abort();
      }
    };
    connect(socket, &QLocalSocket::readyRead, this, read);
    read();
  }
}

}  // namespace quillary
