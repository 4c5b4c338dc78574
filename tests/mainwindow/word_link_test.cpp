#include "mainwindow/word_link.h"

#include "tests/support_qt/main_fixture.h"

namespace quillary::test {
namespace {

// A word processor that answers when the test says so.
class FakeDde : public DdeClient {
 public:
  void Open(const std::string& application, const std::string& topic, Answer answer) override {
    Note("Open " + application + "|" + topic, std::move(answer));
  }
  void Request(const std::string& item, Answer answer) override {
    Note("Request " + item, std::move(answer));
  }
  void Execute(const std::string& command, Answer answer) override {
    Note("Execute " + command + " with " + QGuiApplication::clipboard()->text().toStdString(),
         std::move(answer));
  }
  void End() override { Note("End", {}); }

  void Reply(const std::optional<std::string>& text) {
    ASSERT_TRUE(answer_);
    std::exchange(answer_, {})(text);
  }
  Texts Made() { return std::exchange(calls_, {}); }

 private:
  void Note(const std::string& call, Answer answer) {
    calls_.push_back(call);
    answer_ = std::move(answer);
  }
  Texts calls_;
  Answer answer_;
};

class WordLinkTest : public MainFixture {
 protected:
  WordLinkTest() {
    Shared.CopyValues.fill(1);
    Add({{LastName, "Aster"}, {Phone1, "555"}});
    Add({{LastName, "Bell"}});
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    Show();
  }
  // The item after a probe that is answered so.
  bool IsEnabledAfter(const std::optional<std::string>& topics) {
    Dde.Made();
    Word.WinWordRunTimer.start(0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !Dde.Made().empty(); }));
    Word.WinWordRunTimer.stop();
    Dde.Reply("");
    EXPECT_EQ(Dde.Made(), Texts{"Request Topics"});
    Dde.Reply(topics);
    return Item().isEnabled();
  }
  QAction& Item() { return *Main.Menus().MnuCopyArray[2]; }

  FakeDde Dde;
  WordLink Word{Main, Dde, [this]() -> MsgBoxSnglTxt& { return SingleText; }};
};

TEST_F(WordLinkTest, TheItemIsEnabledWhileADocumentIsOpen) {
  EXPECT_FALSE(Item().isEnabled());
  for (const char* topics : {"System\tDefault\tLetter", "\t\t", "a long name\tb\tc\td\te\tf"}) {
    EXPECT_TRUE(IsEnabledAfter(topics)) << topics;
    EXPECT_EQ(Word.IsWordRunning(), -1);
  }
  for (const char* topics : {"System\tDefault", "System", "", "\t"}) {
    EXPECT_FALSE(IsEnabledAfter(topics)) << topics;
  }
  EXPECT_TRUE(IsEnabledAfter("\t\t"));
  EXPECT_FALSE(IsEnabledAfter(std::nullopt));
  EXPECT_EQ(Clipboard(), "before");
}

TEST_F(WordLinkTest, PastesTheRecordThatWasShownThen) {
  IsEnabledAfter("System\tDefault\tLetter");
  Item().trigger();
  EXPECT_EQ(Dde.Made(), (Texts{"End", "Open Winword|System"}));
  EXPECT_FALSE(Item().isEnabled());
  EXPECT_EQ(Panel(1), "Please wait while pasting into WinWord");
  Select(1);
  Main.CopySelected();
  Dde.Reply("");
  EXPECT_EQ(Dde.Made(), Texts{"Execute [EditPaste] with Aster\r555\r"});
  Dde.Reply("");
  EXPECT_EQ(Dde.Made(), Texts{"End"});
  EXPECT_TRUE(Item().isEnabled());
  // Nothing where nothing is ticked.
  Shared.CopyValues.fill(0);
  Main.SetData();
  MsgBoxAnswerer user;
  Item().trigger();
  EXPECT_EQ(user.TitlesAndTexts(),
            Texts{"Can't paste into WinWord|No details are ticked.\nTick the details to copy, and "
                  "try again."});
  EXPECT_EQ(Dde.Made(), Texts{});
  EXPECT_TRUE(Item().isEnabled());
}

TEST_F(WordLinkTest, AWordProcessorThatIsGoneIsToldOnceAndWhereTheDetailsAre) {
  for (const bool isOpened : {false, true}) {
    IsEnabledAfter("System\tDefault\tLetter");
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    MsgBoxAnswerer user;
    Item().trigger();
    if (!isOpened) QGuiApplication::clipboard()->setText(QStringLiteral("after"));
    // It does not get in the way of what the user has begun meanwhile.
    Main.EnableMain(false);
    if (isOpened) Dde.Reply("");
    Dde.Reply(std::nullopt);
    EXPECT_EQ(Clipboard(), isOpened ? "Aster\r555\r" : "after");
    EXPECT_EQ(Panel(1), "");
    QTest::qWait(250);
    EXPECT_TRUE(user.Seen.empty());
    Main.EnableMain(true);
    EXPECT_TRUE(QTest::qWaitFor([&user] { return !user.Seen.empty(); }));
    QTest::qWait(250);
    ASSERT_EQ(user.Seen.size(), 1U);
    EXPECT_EQ(user.Seen[0].first, QStringLiteral("Can't paste into WinWord"));
    EXPECT_EQ(user.Seen[0].second.contains(QStringLiteral("Clipboard")), isOpened);
    EXPECT_TRUE(Main.isEnabled());
    EXPECT_TRUE(Item().isEnabled());  // until the next probe
  }
}

}  // namespace
}  // namespace quillary::test
