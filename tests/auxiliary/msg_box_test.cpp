#include "auxiliary/msg_box.h"

#include <gtest/gtest.h>

#include <QFontMetrics>
#include <QLabel>
#include <vector>

#include "platform/desktop/placement.h"
#include "platform/desktop/twips.h"
#include "tests/support_qt/fake_hub.h"
#include "tests/support_qt/while_shown.h"

namespace quillary::test {
namespace {

const QString kOK = QStringLiteral("BtnOK");
const QString kCancel = QStringLiteral("BtnCancel");

class MsgBoxTest : public testing::Test {
 protected:
  // Shows the box with one text and does `action` in it; the answer.
  int Answer(MsgButtons buttons, const std::function<void()>& action,
             MsgIcon icon = MsgIcon::None) {
    shared_.MsgBoxAnswer = 77;
    WhileShown(single_, action);
    single_.ShowMsg(QStringLiteral("Text"), buttons, QStringLiteral("Yes"), QStringLiteral("No"),
                    icon, QStringLiteral("Title"));
    EXPECT_FALSE(single_.isVisible());
    return shared_.MsgBoxAnswer;
  }
  int AnswerByKey(MsgButtons buttons, Qt::Key key) {
    return Answer(buttons, [&] { PressKey(single_, key); });
  }
  template <typename Control = QWidget>
  Control& Find(const QString& name) {
    return *single_.findChild<Control*>(name);
  }

  FakeHub hub_;
  SharedData shared_;
  MsgBoxSnglTxt single_{shared_, hub_};
  MsgBoxDblTxt double_{shared_, hub_};
};

TEST_F(MsgBoxTest, ButtonsAnswer) {
  EXPECT_EQ(Answer(MsgButtons::BothLeftDefault, [&] { ClickOn(single_, kOK); }), -1);
  EXPECT_EQ(Answer(MsgButtons::BothLeftDefault, [&] { ClickOn(single_, kCancel); }), 0);
  EXPECT_EQ(Answer(MsgButtons::Left, [&] { ClickOn(single_, kOK); }), -1);
  EXPECT_EQ(Answer(MsgButtons::Right, [&] { ClickOn(single_, kCancel); }), 0);
}

TEST_F(MsgBoxTest, EnterPressesTheDefaultButtonAndEscAndTitleBarDecline) {
  EXPECT_EQ(AnswerByKey(MsgButtons::BothLeftDefault, Qt::Key_Return), -1);
  EXPECT_EQ(AnswerByKey(MsgButtons::BothRightDefault, Qt::Key_Return), 0);
  EXPECT_EQ(AnswerByKey(MsgButtons::Left, Qt::Key_Return), -1);
  EXPECT_EQ(AnswerByKey(MsgButtons::Right, Qt::Key_Return), 0);
  // The focus of the last answer does not move the default.
  EXPECT_EQ(Answer(MsgButtons::BothLeftDefault,
                   [&] {
                     PressKey(single_, Qt::Key_Tab);
                     PressKey(single_, Qt::Key_Return);
                   }),
            0);
  EXPECT_EQ(AnswerByKey(MsgButtons::BothLeftDefault, Qt::Key_Return), -1);
  for (const MsgButtons buttons : {MsgButtons::Left, MsgButtons::Right, MsgButtons::BothLeftDefault,
                                   MsgButtons::BothRightDefault}) {
    EXPECT_EQ(AnswerByKey(buttons, Qt::Key_Escape), 0);
    EXPECT_EQ(Answer(buttons, [&] { single_.close(); }), 0);
  }
}

TEST_F(MsgBoxTest, NothingIsLeftOfTheBoxBefore) {
  const auto shown = [&] {
    QStringList names;
    for (const char* name : {"Critical", "Question", "Exclamation", "Information"}) {
      const QString icon = QString::fromLatin1(name);
      if (Find(icon).isVisible()) names << icon;
    }
    single_.close();
    return names.join(QLatin1Char(' '));
  };
  const std::vector<std::pair<MsgIcon, const char*>> icons{{MsgIcon::Critical, "Critical"},
                                                           {MsgIcon::Question, "Question"},
                                                           {MsgIcon::None, ""},
                                                           {MsgIcon::Exclamation, "Exclamation"},
                                                           {MsgIcon::Information, "Information"},
                                                           {static_cast<MsgIcon>(5), ""}};
  for (const auto& icon : icons) {
    const QString name = QString::fromLatin1(icon.second);
    Answer(
        MsgButtons::Left, [&] { EXPECT_EQ(shown(), name); }, icon.first);
  }

  Answer(MsgButtons::Left, [&] {
    EXPECT_FALSE(Find(kCancel).isVisible());
    EXPECT_NEAR(Find(kOK).geometry().center().x(), single_.rect().center().x(), 1);
    single_.close();
  });
  Answer(MsgButtons::BothRightDefault, [&] {
    EXPECT_EQ(Find(kOK).x(), Px(1020));
    EXPECT_EQ(Find(kCancel).x(), Px(2520));
    single_.close();
  });
}

TEST_F(MsgBoxTest, StandsOverTheMainWindowButOnTheScreen) {
  const QRect screen = ScreenOf(hub_.Geometry);
  const auto place = [&](QRect main) {
    QPoint position;
    hub_.Geometry = main;
    Answer(MsgButtons::Left, [&] {
      position = single_.pos();
      single_.close();
    });
    return position;
  };
  const QRect middle(150, 150, 500, 400);
  place(middle);  // from here on the frame is known
  const QSize size = single_.FrameSize();
  EXPECT_EQ(place(middle), PlaceCentred(middle, size));
  EXPECT_EQ(place(QRect(150, screen.height() - 100, 500, 100)).y(),
            screen.height() - size.height() - Px(300));
  EXPECT_EQ(place(QRect(0, 150, 100, 300)).x(), Px(150));
}

TEST_F(MsgBoxTest, ShowsBothTextsAsTheyAre) {
  WhileShown(double_, [&] {
    const auto* text1 = double_.findChild<QLabel*>(QStringLiteral("Text1"));
    const auto* text2 = double_.findChild<QLabel*>(QStringLiteral("Text2"));
    EXPECT_EQ(text1->text(), QStringLiteral("<b>A</b>\n\n&B"));
    EXPECT_EQ(text2->text(), QStringLiteral("two"));
    EXPECT_EQ(text1->textFormat(), Qt::PlainText);
    ClickOn(double_, kOK);
  });
  double_.ShowMsg(QStringLiteral("<b>A</b>\r\r&B"), QStringLiteral("two"),
                  MsgButtons::BothLeftDefault, QStringLiteral("OK"), QStringLiteral("Cancel"),
                  MsgIcon::Question, QStringLiteral("Title"));
  EXPECT_EQ(shared_.MsgBoxAnswer, -1);
}

// The longest texts of the program, in the ordinary font.
TEST_F(MsgBoxTest, LongTextsFit) {
  const auto expectFit = [](Form& box) {
    for (const QLabel* label : box.findChildren<QLabel*>()) {
      EXPECT_LE(label->heightForWidth(label->width()), label->height());
    }
    box.close();
  };
  WhileShown(single_, [&] { expectFit(single_); });
  single_.ShowMsg(QStringLiteral("There is no Dial Tone,\r\rPlease check the line, and try again."),
                  MsgButtons::Left, kOK, kCancel, MsgIcon::Critical, kOK);
  WhileShown(double_, [&] { expectFit(double_); });
  double_.ShowMsg(
      QStringLiteral(
          "Are you absolutely sure that no other application is currently using the data file?"),
      QStringLiteral(
          "Improper use of the 'Previous crash recover' option may cause you lost of data!"),
      MsgButtons::BothRightDefault, kOK, kCancel, MsgIcon::Exclamation, kOK);
}

TEST_F(MsgBoxTest, OfATextThatDoesNotFitTheMiddleIsLeftOut) {
  const QString ordinary = QStringLiteral("Can't find 'a rather long name'");
  const QString person = QString::fromUtf8("\xF0\x9F\x91\xA4");  // two characters in UTF-16
  for (const QString& piece : {QStringLiteral("x"), person, QStringLiteral("Long name ")}) {
    const QString text =
        QStringLiteral("Can't find '") + piece.repeated(100'000) + QLatin1Char('\'');
    WhileShown(single_, [&] {
      auto& label = Find<MessageText>(QStringLiteral("Text1"));
      const QString shown = label.Shown();
      EXPECT_TRUE(shown.startsWith(text.left(30)) && shown.endsWith(text.right(30)));
      EXPECT_LT(shown.size(), 1000);
      EXPECT_TRUE(shown.isValidUtf16());
      label.SetPlainText(shown);
      EXPECT_EQ(label.Shown(), shown);
      label.SetPlainText(ordinary);
      EXPECT_EQ(label.Shown(), ordinary);
      single_.close();
    });
    single_.ShowMsg(text, MsgButtons::Left, kOK, kCancel, MsgIcon::Information, kOK);
  }
}

// A timer may ask while the user has not answered yet.
TEST_F(MsgBoxTest, SecondQuestionInAnOpenBoxIsDeclined) {
  const int answer = Answer(MsgButtons::BothLeftDefault, [&] {
    single_.ShowMsg(QStringLiteral("Other"), MsgButtons::Left, kOK, kCancel, MsgIcon::None,
                    QStringLiteral("Other"));
    EXPECT_EQ(shared_.MsgBoxAnswer, 0);
    EXPECT_EQ(single_.windowTitle(), QStringLiteral("Title"));
    ClickOn(single_, kOK);
  });
  EXPECT_EQ(answer, -1);
}

}  // namespace
}  // namespace quillary::test
