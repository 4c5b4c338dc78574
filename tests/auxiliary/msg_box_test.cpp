#include "auxiliary/msg_box.h"

#include <gtest/gtest.h>

#include "platform/desktop/placement.h"
#include "tests/support_qt/fake_hub.h"
#include "tests/support_qt/while_shown.h"

namespace quillary::test {
namespace {

constexpr int Yes = -1;
constexpr int No = 0;

class MsgBoxTest : public testing::Test {
 protected:
  // Shows the box with one text and does `action` in it; the answer.
  int Answer(MsgButtons buttons, const std::function<void()>& action, MsgIcon icon = MsgIcon::None,
             const QString& text = QStringLiteral("Text")) {
    shared_.MsgBoxAnswer = 77;
    WhileShown(single_, action);
    single_.ShowMsg(text, buttons, QStringLiteral("Yes"), QStringLiteral("No"), icon,
                    QStringLiteral("Title"));
    EXPECT_FALSE(single_.isVisible());
    return shared_.MsgBoxAnswer;
  }
  int AnswerByKey(MsgButtons buttons, Qt::Key key) {
    return Answer(buttons, [&] { PressKey(single_, key); });
  }
  // The buttons and icons that are to be seen.
  std::string Visible() {
    std::string visible;
    for (const char* name :
         {"BtnOK", "BtnCancel", "Critical", "Question", "Exclamation", "Information"}) {
      const auto* control = single_.findChild<QWidget*>(QString::fromLatin1(name));
      if (control->isVisible()) visible += std::string(name) + " ";
    }
    return visible;
  }

  FakeHub hub_;
  SharedData shared_;
  MsgBoxSnglTxt single_{shared_, hub_};
};

TEST_F(MsgBoxTest, AnswersByButtonEnterEscAndTitleBar) {
  struct Case {
    MsgButtons Buttons;
    MsgIcon Icon;
    const char* Shown;
    int ByEnter;
    int ByTabAndEnter;
  };
  for (const Case& example :
       {Case{MsgButtons::BothLeftDefault, MsgIcon::Critical, "BtnOK BtnCancel Critical ", Yes, No},
        {MsgButtons::BothRightDefault, MsgIcon::Question, "BtnOK BtnCancel Question ", No, Yes},
        {MsgButtons::Left, MsgIcon::None, "BtnOK ", Yes, Yes},
        {MsgButtons::Right, MsgIcon::Information, "BtnCancel Information ", No, No}}) {
    const auto tab = [&] {
      EXPECT_EQ(Visible(), example.Shown);
      PressKey(single_, Qt::Key_Tab);
      PressKey(single_, Qt::Key_Return);
    };
    EXPECT_EQ(Answer(example.Buttons, tab, example.Icon), example.ByTabAndEnter);
    // The focus of the last answer does not move the default.
    EXPECT_EQ(AnswerByKey(example.Buttons, Qt::Key_Return), example.ByEnter);
    EXPECT_EQ(AnswerByKey(example.Buttons, Qt::Key_Escape), No);
    EXPECT_EQ(Answer(example.Buttons, [&] { single_.close(); }), No);
  }
}

TEST_F(MsgBoxTest, ShowsBothTextsAsTheyAreOnTheScreen) {
  hub_.Geometry = QRect(-200, 100'000, 100, 100);
  MsgBoxDblTxt box(shared_, hub_);
  WhileShown(box, [&] {
    const auto* text1 = box.findChild<QLabel*>(QStringLiteral("Text1"));
    const auto* text2 = box.findChild<QLabel*>(QStringLiteral("Text2"));
    EXPECT_EQ(text1->text(), QStringLiteral("<b>A</b>\n\n&B"));
    EXPECT_EQ(text2->text(), QStringLiteral("two"));
    EXPECT_EQ(text1->textFormat(), Qt::PlainText);
    EXPECT_TRUE(ScreenOf(hub_.Geometry).contains(box.frameGeometry()));
    ClickOn(box, QStringLiteral("BtnOK"));
  });
  box.ShowMsg(QStringLiteral("<b>A</b>\r\r&B"), QStringLiteral("two"), MsgButtons::BothLeftDefault,
              QStringLiteral("OK"), QStringLiteral("Cancel"), MsgIcon::Question,
              QStringLiteral("Title"));
  EXPECT_EQ(shared_.MsgBoxAnswer, Yes);
}

TEST_F(MsgBoxTest, OfATextThatDoesNotFitTheMiddleIsLeftOut) {
  const QString ordinary = QStringLiteral("Can't find 'a rather long name'");
  const QString person = QString::fromUtf8("\xF0\x9F\x91\xA4");  // two characters in UTF-16
  for (const QString& piece : {QStringLiteral("x"), person, QStringLiteral("Long name ")}) {
    const QString text =
        QStringLiteral("Can't find '") + piece.repeated(100'000) + QLatin1Char('\'');
    const auto look = [&] {
      auto& label = *single_.findChild<MessageText*>(QStringLiteral("Text1"));
      const QString shown = label.Shown();
      EXPECT_TRUE(shown.startsWith(text.left(30)) && shown.endsWith(text.right(30)));
      EXPECT_LT(shown.size(), 1000);
      EXPECT_TRUE(shown.isValidUtf16());
      label.SetPlainText(shown);
      EXPECT_EQ(label.Shown(), shown);
      label.SetPlainText(ordinary);
      EXPECT_EQ(label.Shown(), ordinary);
      single_.close();
    };
    Answer(MsgButtons::Left, look, MsgIcon::Information, text);
  }
}

// A timer may ask while the user has not answered yet.
TEST_F(MsgBoxTest, SecondQuestionInAnOpenBoxIsDeclined) {
  const auto ask = [&] {
    single_.ShowMsg(QStringLiteral("Other"), MsgButtons::Left, {}, {}, MsgIcon::None,
                    QStringLiteral("Other"));
    EXPECT_EQ(shared_.MsgBoxAnswer, No);
    EXPECT_EQ(single_.windowTitle(), QStringLiteral("Title"));
    ClickOn(single_, QStringLiteral("BtnOK"));
  };
  EXPECT_EQ(Answer(MsgButtons::BothLeftDefault, ask), Yes);
}

}  // namespace
}  // namespace quillary::test
