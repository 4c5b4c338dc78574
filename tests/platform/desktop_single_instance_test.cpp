#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTimer>
#include <filesystem>
#include <memory>

#include "platform/desktop/single_instance.h"
#include "tests/support/temp_folder.h"

namespace quillary::test {
namespace {

class SingleInstanceTest : public testing::Test {
 protected:
  SingleInstanceTest() {
    qputenv("XDG_RUNTIME_DIR", folder_.Path().c_str());
    qputenv("XDG_DATA_HOME", folder_.File("data").c_str());
  }
  void TearDown() override {
    qputenv("XDG_RUNTIME_DIR", runtime_);
    qunsetenv("XDG_DATA_HOME");
  }

  const QString title_ = QStringLiteral("Quillary");
  const QByteArray runtime_ = qgetenv("XDG_RUNTIME_DIR");
  const TempFolder folder_;
};

TEST_F(SingleInstanceTest, SecondInstanceActivatesTheFirstUntilThatEnds) {
  // A crash has left them.
  folder_.WriteFile("quillary.lock", "");
  folder_.WriteFile("quillary.socket", "");
  auto first = std::make_unique<SingleInstance>(title_);
  QSignalSpy requests(first.get(), &SingleInstance::ActivateRequested);
  ASSERT_TRUE(first->IsFirst());
  for (int starts = 1; starts <= 2; ++starts) {
    EXPECT_FALSE(SingleInstance(title_).IsFirst());
    EXPECT_EQ(requests.count(), starts);
  }
  first.reset();
  EXPECT_TRUE(SingleInstance(title_).IsFirst());
}

// The other instance holds the lock but does not listen yet.
TEST_F(SingleInstanceTest, SecondInstanceWaitsForOneThatIsStartingOrEnding) {
  const std::string path = folder_.File("quillary.lock");
  const int lock = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  SingleInstance impatient(title_);
  impatient.AnswerTimeoutMs = 50;
  EXPECT_FALSE(impatient.IsFirst());

  constexpr int SoonMs = 150;
  QLocalServer starting;
  QObject::connect(&starting, &QLocalServer::newConnection, &starting,
                   [&] { starting.nextPendingConnection()->write("activated\n"); });
  QTimer::singleShot(SoonMs, &starting, [&] {
    starting.listen(QString::fromStdString(folder_.File("quillary.socket")));
  });
  QElapsedTimer time;
  time.start();
  SingleInstance second(title_);
  EXPECT_FALSE(second.IsFirst());
  EXPECT_LT(time.elapsed(), second.AnswerTimeoutMs);

  starting.close();
  QTimer::singleShot(SoonMs, &starting, [&] { close(lock); });
  EXPECT_TRUE(SingleInstance(title_).IsFirst());
}

TEST_F(SingleInstanceTest, FolderThatOthersCanEnterIsNotUsed) {
  ASSERT_EQ(chmod(folder_.Path().c_str(), 0755), 0);
  SingleInstance first(title_);
  ASSERT_TRUE(first.IsFirst());
  EXPECT_FALSE(std::filesystem::exists(folder_.File("quillary.lock")));
  struct stat status {};
  ASSERT_EQ(stat(folder_.File("data/quillary/run").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700U);
  EXPECT_FALSE(SingleInstance(title_).IsFirst());
}

}  // namespace
}  // namespace quillary::test
