#include "platform/dde_writer/writer_dde.h"

#include <gtest/gtest.h>

#include <QTest>
#include <filesystem>
#include <memory>

#include "tests/support/temp_folder.h"

namespace quillary::test {
namespace {

// In place of the process that talks to LibreOffice: a script that gets the requests' ids.
class WriterDdeTest : public testing::Test {
 protected:
  void UseBridge(const std::string& script) {
    Folder.WriteFile("bridge", "#!/bin/sh\necho x >>" + Folder.File("starts") + "\n" + script);
    std::filesystem::permissions(Folder.File("bridge"), std::filesystem::perms::owner_all);
    office_ = OfficeProcess{7, "soffice", Folder.File("bridge"), {}};
  }
  // A loop that gives this text as the answer to every request.
  std::string Answering(const std::string& text) {
    return "while read -r line; do echo x >>" + Folder.File("requests") + R"(
              id=${line#*'"id":'}; echo "{\"id\":${id%%[,\}]*},\"text\":\")" +
           text + R"(\"}"; done)";
  }
  // "none" where it fails.
  std::string Open(const char* application = "Winword") {
    const auto result = std::make_shared<std::optional<std::string>>();
    Link.Open(application, "System", [result](const std::optional<std::string>& text) {
      EXPECT_FALSE(*result) << "answered twice";
      *result = text.value_or("none");
    });
    EXPECT_FALSE(*result) << "answered at once";
    EXPECT_TRUE(QTest::qWaitFor([&result] { return result->has_value(); }));
    return result->value_or("nothing");
  }
  std::size_t Starts() { return Folder.ReadFile("starts").size() / 2; }
  std::size_t Requests() { return Folder.ReadFile("requests").size() / 2; }

  TempFolder Folder;
  std::optional<OfficeProcess> office_;
  WriterDde Link{[this] { return office_; }};
};

TEST_F(WriterDdeTest, AnswersInTimeWhereTheOtherSideHangs) {
  EXPECT_EQ(Open(), "none");  // there is no other side
  UseBridge("read -r line; while [ ! -e " + Folder.File("go") +
            " ]; do sleep 0.02; done; echo '{\"id\":2,\"text\":\"late\"}'\n" + Answering("well"));
  Link.DeadlineMs = 200;
  EXPECT_EQ(Open(), "none");
  EXPECT_EQ(Open(), "none");
  Folder.WriteFile("go", "");
  Link.DeadlineMs = 5000;
  EXPECT_TRUE(QTest::qWaitFor([this] { return Open() == "well"; }));
  EXPECT_EQ(Open("Excel"), "none");
  // What failed while it hung has never been passed on.
  EXPECT_EQ(Requests(), 1U);
  EXPECT_EQ(Starts(), 1U);
}

TEST_F(WriterDdeTest, ABridgeThatEndsFailsWhatIsOpenAndIsReplacedWhereItEverAnswered) {
  UseBridge(R"(read -r line; echo '{"id":1}'; read -r line)");
  EXPECT_EQ(Open(), "none");
  EXPECT_EQ(Open(), "none");
  EXPECT_EQ(Starts(), 1U);
  UseBridge("exit 1");
  EXPECT_EQ(Open(), "none");
  EXPECT_EQ(Open(), "none");
  EXPECT_EQ(Starts(), 2U);
  office_->Number = 8;
  office_->Python = Folder.File("missing");
  EXPECT_EQ(Open(), "none");
  office_->Python = Folder.File("bridge");
  EXPECT_EQ(Open(), "none");
  EXPECT_EQ(Starts(), 2U);
  UseBridge(Answering("well"));  // another LibreOffice
  EXPECT_EQ(Open(), "well");
}

TEST(FindOffice, TakesTheOneOnThisDesktop) {
  const TempFolder folder;
  folder.WriteFile("soffice", "");
  std::filesystem::copy("/bin/sleep", folder.File("soffice.bin"));
  const QByteArray display = qgetenv("DISPLAY");
  const auto start = [&folder](const char* onDisplay) {
    qputenv("DISPLAY", onDisplay);
    auto office = std::make_unique<QProcess>();
    office->start(QString::fromStdString(folder.File("soffice.bin")), {QStringLiteral("60")});
    EXPECT_TRUE(office->waitForStarted());
    return office;
  };
  const auto other = start(":4712");
  qputenv("DISPLAY", ":4711");
  EXPECT_FALSE(FindOffice());
  const auto own = start(":4711");
  const std::optional<OfficeProcess> found = FindOffice();
  ASSERT_TRUE(found);
  EXPECT_EQ(found->Number, own->processId());
  EXPECT_EQ(found->Launcher, folder.File("soffice"));
  EXPECT_EQ(found->Python + found->UserInstallation, "");
  for (QProcess* office : {other.get(), own.get()}) {
    office->kill();
    office->waitForFinished();
  }
  qputenv("DISPLAY", display);
}

}  // namespace
}  // namespace quillary::test
