#include "platform/process.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <limits>

namespace quillary::test {
namespace {

TEST(ProcessTest, KnowsWhatRuns) {
  EXPECT_TRUE(ProcessIsAlive(getpid()));
  EXPECT_TRUE(ProcessIsAlive(1));  // another user's, mostly

  const pid_t child = fork();
  if (child == 0) _exit(0);
  ASSERT_GT(child, 0);
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  EXPECT_FALSE(ProcessIsAlive(child));

  EXPECT_FALSE(ProcessIsAlive(0));
  EXPECT_FALSE(ProcessIsAlive(-1));
  EXPECT_FALSE(ProcessIsAlive(std::numeric_limits<long>::max()));
}

}  // namespace
}  // namespace quillary::test
