#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTimer>
#include <memory>

#include "platform/desktop/single_instance.h"
#include "tests/support/temp_folder.h"

namespace quillary::test {
namespace {

class SingleInstanceTest : public testing::Test {
 protected:
  SingleInstanceTest() { qputenv("XDG_RUNTIME_DIR", folder_.Path().c_str()); }
  void TearDown() override {
    qunsetenv("XDG_DATA_HOME");
    if (runtime_.isNull()) {
      qunsetenv("XDG_RUNTIME_DIR");
    } else {
      qputenv("XDG_RUNTIME_DIR", runtime_);
    }
  }

  QString Path(const char* name) const { return QString::fromStdString(folder_.File(name)); }

  const QString title_ = QStringLiteral("Quillary");
  const QByteArray runtime_ = qgetenv("XDG_RUNTIME_DIR");
  const TempFolder folder_;
};

TEST_F(SingleInstanceTest, SecondInstanceActivatesTheFirstUntilThatEnds) {
  auto first = std::make_unique<SingleInstance>(title_);
  QSignalSpy requests(first.get(), &SingleInstance::ActivateRequested);
  ASSERT_TRUE(first->IsFirst());
  EXPECT_TRUE(first->IsFirst());
  for (int starts = 1; starts <= 2; ++starts) {
    SingleInstance later(title_);
    EXPECT_FALSE(later.IsFirst());
    EXPECT_EQ(requests.count(), starts);
  }
  first.reset();
  SingleInstance next(title_);
  EXPECT_TRUE(next.IsFirst());
}

TEST_F(SingleInstanceTest, WhatACrashLeftBehindIsNotInTheWay) {
  QFile lock(Path("quillary.lock"));
  ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
  QFile socket(Path("quillary.socket"));
  ASSERT_TRUE(socket.open(QIODevice::WriteOnly));

  SingleInstance first(title_);
  ASSERT_TRUE(first.IsFirst());
  QSignalSpy requests(&first, &SingleInstance::ActivateRequested);
  SingleInstance second(title_);
  EXPECT_FALSE(second.IsFirst());
  EXPECT_EQ(requests.count(), 1);
}

// The other instance holds the lock but does not listen yet.
TEST_F(SingleInstanceTest, SecondInstanceWaitsForOneThatIsStartingOrEnding) {
  const int lock = open(qPrintable(Path("quillary.lock")), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);

  SingleInstance impatient(title_);
  impatient.AnswerTimeoutMs = 50;
  EXPECT_FALSE(impatient.IsFirst());

  QLocalServer starting;
  QObject::connect(&starting, &QLocalServer::newConnection, &starting,
                   [&] { starting.nextPendingConnection()->write("activated\n"); });
  QTimer soon;
  soon.setSingleShot(true);
  auto happens = QObject::connect(&soon, &QTimer::timeout, &starting,
                                  [&] { starting.listen(Path("quillary.socket")); });
  soon.start(150);
  QElapsedTimer time;
  time.start();
  SingleInstance second(title_);
  EXPECT_FALSE(second.IsFirst());
  EXPECT_LT(time.elapsed(), second.AnswerTimeoutMs);

  starting.close();
  QObject::disconnect(happens);
  QObject::connect(&soon, &QTimer::timeout, &starting, [&] { close(lock); });
  soon.start(150);
  SingleInstance heir(title_);
  EXPECT_TRUE(heir.IsFirst());
}

TEST_F(SingleInstanceTest, FolderThatOthersCanEnterIsNotUsed) {
  ASSERT_EQ(chmod(folder_.Path().c_str(), 0755), 0);
  qputenv("XDG_DATA_HOME", folder_.File("data").c_str());
  SingleInstance first(title_);
  ASSERT_TRUE(first.IsFirst());
  EXPECT_FALSE(QFile::exists(Path("quillary.lock")));
  struct stat status {};
  ASSERT_EQ(stat(folder_.File("data/quillary/run").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700U);
  SingleInstance second(title_);
  EXPECT_FALSE(second.IsFirst());
}

}  // namespace
}  // namespace quillary::test
