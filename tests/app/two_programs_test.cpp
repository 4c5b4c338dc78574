#include <gtest/gtest.h>

#include <QProcess>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "app/sharing_guard.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

constexpr int Rounds = 150;

// The other application, a process of its own.
class Companion {
 public:
  explicit Companion(const std::string& folder) {
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(QStringLiteral("python3"),
                   {QStringLiteral(COMPANION), QString::fromStdString(folder)});
  }
  ~Companion() {
    process_.closeWriteChannel();
    process_.waitForFinished();
  }
  Companion(const Companion&) = delete;
  Companion& operator=(const Companion&) = delete;

  void Tell(const std::string& command) { process_.write((command + '\n').c_str()); }
  bool HasAnswered() { return process_.waitForReadyRead(0) || process_.canReadLine(); }
  std::string Answer() {
    while (!process_.canReadLine()) {
      if (!process_.waitForReadyRead()) return "no answer";
    }
    return process_.readLine().chopped(1).toStdString();
  }
  std::string Ask(const std::string& command) {
    Tell(command);
    return Answer();
  }

 private:
  QProcess process_;
};

class TwoProgramsTest : public StoreTest {
 protected:
  TwoProgramsTest() {
    shared_.DataFile = Data.DataFile;
    Open();
    for (const char* name : {"Ann", "Bob", "Cid"}) Add(name, "Lee");
  }

  bool IsInUse() {
    guard_.CheckInUse();
    return shared_.InUse;
  }
  // A change that goes to the header and to two records; `meanwhile` happens in the middle of it.
  void Change(const std::string& value, const std::function<void()>& meanwhile = {}) {
    ProfileUpdate update(Access);
    ASSERT_EQ(Store.ReadRecord("0"), RunTimeError::None);
    Data.FieldValues[Field::LastName] = value;
    ASSERT_EQ(Store.WriteHeaderEntry("Mine", value), RunTimeError::None);
    if (meanwhile) meanwhile();
    ASSERT_EQ(Edit("0", FieldArray(Data.FieldValues)), RunTimeError::None);
    ASSERT_EQ(update.Commit(), RunTimeError::None);
  }

  SharedData shared_;
  SharingGuard guard_{Access, shared_, [] {}};
  Companion other_{Folder.Path()};
};

// Each sees at its next look what the other one did, be it within a tick of the clock, and keeps
// it.
TEST_F(TwoProgramsTest, ComeAndGoAndLoseNothing) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  const std::string styles[] = {"over", "empty", "rename"};
  std::string mine;
  std::string theirs;
  for (int round = 0; round < Rounds && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    const std::string value = std::to_string(random() % 10);  // often of the same length
    ASSERT_EQ(other_.Ask("style\t" + styles[random() % 3]), "done");
    if (random() % 2 == 0) {
      // This program is there first, and in the middle of a change when the other one comes.
      ASSERT_EQ(guard_.IncrementUses(), RunTimeError::None);
      ASSERT_FALSE(IsInUse());
      Change(value, [&] { ASSERT_EQ(other_.Ask("start"), "1"); });
    } else {
      ASSERT_EQ(other_.Ask("start"), "0");
      theirs = value;
      ASSERT_EQ(other_.Ask("write\tquill0.dat\tRecord1\tNotes\t" + theirs), "done");
      ASSERT_EQ(Value("1", "Notes"), theirs);
      ASSERT_EQ(other_.Ask("write\tquill.dat\tGeneral Info\tTheirs\t" + theirs), "done");
      ASSERT_EQ(Header("Theirs"), theirs);
      ASSERT_EQ(guard_.IncrementUses(), RunTimeError::None);
    }
    ASSERT_TRUE(IsInUse());
    ASSERT_EQ(other_.Ask("write\tquill.dat\tGeneral Info\tTheirs\tx"), "in use");
    ASSERT_EQ(other_.Ask("end"), "2");
    ASSERT_FALSE(IsInUse());
    mine = value;
    Change(mine);
    ASSERT_EQ(guard_.DecrementUses(), RunTimeError::None);
    ASSERT_EQ(other_.Ask("read\tquill.dat\tGeneral Info\tNoOfUses"), "0");
    ASSERT_EQ(other_.Ask("read\tquill.dat\tGeneral Info\tMine"), mine);
    ASSERT_EQ(other_.Ask("read\tquill0.dat\tRecord0\tLastName"), mine);
    ASSERT_EQ(Value("1", "Notes"), theirs);
    ASSERT_EQ(Header("Theirs"), theirs);
  }
}

// The other one does not wait for this one's writes, which are to another file.
TEST_F(TwoProgramsTest, TheCounterIsReadWhileItChanges) {
  ASSERT_EQ(guard_.IncrementUses(), RunTimeError::None);
  for (const char* style : {"over", "rename"}) {
    ASSERT_EQ(other_.Ask(std::string("style\t") + style), "done");
    other_.Tell("come and go\t" + std::to_string(Rounds));
    int writes = 0;
    while (!other_.HasAnswered()) {
      const std::string users = Header("NoOfUses");
      ASSERT_TRUE(users == "1" || users == "2") << users;
      const std::string value = std::to_string(++writes);
      Set("2", "Notes", value);
      ASSERT_EQ(Value("2", "Notes"), value);
    }
    EXPECT_EQ(other_.Answer(), "done");
    EXPECT_EQ(Header("NoOfUses"), "1");
    EXPECT_EQ(other_.Ask("read\tquill0.dat\tRecord2\tNotes"), std::to_string(writes));
  }
}

}  // namespace
}  // namespace quillary::test
