#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "platform/desktop/form.h"
#include "platform/desktop/hurried_presses.h"
#include "platform/desktop/multi_line_box.h"
#include "platform/desktop/one_line_text.h"
#include "platform/desktop/placement.h"
#include "platform/desktop/twips.h"
#include "tests/support_qt/while_shown.h"

namespace quillary::test {
namespace {

class TestForm : public Form {
 public:
  TestForm()
      : Form(QStringLiteral("TestForm")),
        Box(new MultiLineBox(this)),
        Line(new QLineEdit(this)),
        Other(new QPushButton(QStringLiteral("Other"), this)),
        OK(new QPushButton(QStringLiteral("OK"), this)),
        Cancel(new QPushButton(QStringLiteral("Cancel"), this)) {
    connect(Other, &QPushButton::clicked, this, [this] { ++Others; });
    connect(OK, &QPushButton::clicked, this, [this] { ++OKs; });
    connect(Cancel, &QPushButton::clicked, this, [this] { ++Cancels; });
    SetSize(3000, 2000);
  }

  // As the user does it, whatever control has the focus.
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    ASSERT_TRUE(WaitUntilActive(*this));
    QTest::keyClick(windowHandle(), key, modifiers);
  }

  MultiLineBox* Box;
  QLineEdit* Line;
  QPushButton* Other;
  QPushButton* OK;
  QPushButton* Cancel;
  int Others = 0;
  int OKs = 0;
  int Cancels = 0;
  int Activations = 0;

 protected:
  void Form_Activate() override { ++Activations; }
};

TEST(Form, EnterPressesTheFocusedButtonElseTheDefaultOneAndEscTheCancelButton) {
  TestForm form;
  form.ShowForm();
  EXPECT_EQ(form.focusWidget(), form.Box);  // the first control in tab order
  form.Press(Qt::Key_Return);
  EXPECT_EQ(form.Box->toPlainText(), QStringLiteral("\n"));
  form.Line->setFocus();
  form.Press(Qt::Key_Return);
  form.Press(Qt::Key_Escape);
  EXPECT_EQ(form.Others + form.OKs + form.Cancels, 0);
  EXPECT_TRUE(form.isVisible());

  form.SetDefaultButton(form.OK);
  form.SetCancelButton(form.Cancel);
  form.Press(Qt::Key_Return);
  form.Press(Qt::Key_Enter, Qt::KeypadModifier);
  form.Box->setFocus();
  form.Press(Qt::Key_Return);
  EXPECT_EQ(form.OKs, 3);
  form.Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(form.Box->toPlainText(), QStringLiteral("\n\n"));
  form.Other->setFocus();
  form.Press(Qt::Key_Return);
  EXPECT_EQ(form.Others, 1);
  form.Line->setFocus();
  form.OK->hide();
  form.Press(Qt::Key_Return);
  EXPECT_EQ(form.OKs, 3);
  form.Press(Qt::Key_Escape);
  EXPECT_EQ(form.Cancels, 1);
}

TEST(Placement, AFormStaysInReachOnTheScreenOfItsOwner) {
  const QSize size(400, 300);
  const QRect screen(1600, -200, 1600, 1200);
  const auto expectAt = [&](QPoint place, QPoint held) {
    EXPECT_EQ(HoldOnScreen(place, size, screen), held);
  };
  expectAt({0, -900}, {1600 + Px(150), -200 + Px(300)});
  expectAt({9000, 9000}, {3200 - 400 - Px(150), 1000 - 300 - Px(300)});
  expectAt({2000, 100}, {2000, 100});
  EXPECT_EQ(PlaceAtCorner({1700, 100, 800, 600}, size, screen),
            QPoint(2500 - 400 - Px(150), 100 + Px(150)));
  // The title bar of one that is larger than the screen.
  EXPECT_EQ(HoldOnScreen({1600, 0}, {2000, 2000}, screen), QPoint(1600 + Px(150), -200 + Px(300)));
  EXPECT_EQ(PlaceCentred({1600, 0, 200, 100}, size), QPoint(1500, -100));
}

TEST(Form, ShiftF10OpensTheMenuOfTheControl) {
  TestForm form;
  form.ShowForm();
  for (QWidget* box : {static_cast<QWidget*>(form.Line), static_cast<QWidget*>(form.Box)}) {
    box->setFocus();
    form.Press(Qt::Key_F10, Qt::ShiftModifier);
    QWidget* menu = QApplication::activePopupWidget();
    ASSERT_NE(menu, nullptr) << box->metaObject()->className();
    menu->close();
  }
}

// A click of a double click may arrive when the first one has hidden the form.
TEST(Form, TakesNoInputWhileItIsHidden) {
  TestForm form;
  form.ShowForm();
  ASSERT_TRUE(WaitUntilActive(form));
  form.OK->raise();
  const QPoint place = form.OK->geometry().center();
  form.OK->setFocus();
  QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {}, place);
  EXPECT_EQ(form.OKs, 1);
  form.HideForm();
  QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {}, place);
  QTest::keyClick(form.windowHandle(), Qt::Key_Space);
  EXPECT_EQ(form.OKs, 1);
}

TEST(Form, IsNotActivatedWithTheWindowBehindIt) {
  QWidget main;
  main.show();
  TestForm form;
  form.SetOwner(main);
  form.ShowForm();
  EXPECT_EQ(form.windowHandle()->transientParent(), main.windowHandle());
  ASSERT_TRUE(WaitUntilActive(form));
  // Not by way of the window manager, which may hand the keyboard on to the form.
  QApplication::setActiveWindow(&main);
  EXPECT_EQ(form.Activations, 1);
  QApplication::setActiveWindow(&form);
  ASSERT_TRUE(WaitUntilActive(form));
  EXPECT_EQ(form.Activations, 2);
}

// With a window manager, the frames of windows that are hidden and moved count.
TEST(Form, ComesBackWhereItsOwnerIs) {
  QWidget main;
  main.setGeometry(50, 60, 500, 400);
  main.show();
  ASSERT_TRUE(WaitUntilActive(main));
  TestForm form;
  form.SetOwner(main);
  for (const QPoint place : {QPoint(50, 60), QPoint(110, 90), QPoint(80, 70)}) {
    main.move(place);
    ASSERT_TRUE(QTest::qWaitFor([&] { return main.frameGeometry().topLeft() == place; }));
    const QRect owner = main.frameGeometry();
    form.MoveToCorner(owner);
    form.ShowForm();
    ASSERT_TRUE(WaitUntilActive(form));
    const QPoint corner = PlaceAtCorner(owner, form.FrameSize(), ScreenOf(owner));
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.frameGeometry().topLeft() == corner; }, 1000))
        << form.frameGeometry().x() << "," << form.frameGeometry().y() << " is not " << corner.x()
        << "," << corner.y();
    form.Unload();
  }
}

// A key as it comes from the window system, at a moment in milliseconds.
void SendKey(QWidget& window, QEvent::Type type, quint64 at, Qt::Key code = Qt::Key_Return,
             Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  ASSERT_TRUE(WaitUntilActive(window));
  const quint32 scanCode = code == Qt::Key_Return ? 36 : 65;
  QKeyEvent key(type, code, modifiers, scanCode, 0, 0, QString());
  key.setTimestamp(at);
  QCoreApplication::sendEvent(window.windowHandle(), &key);
}
// The key was pressed before and is held.
void RepeatKey(QWidget& window, quint64 at, Qt::Key code = Qt::Key_Return,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  SendKey(window, QEvent::KeyRelease, at, code, modifiers);
  SendKey(window, QEvent::KeyPress, at, code, modifiers);
}

TEST(HurriedPresses, AHeldKeyPressesAButtonOnce) {
  QWidget main;
  const HurriedPresses hurried(main);
  TestForm form;
  form.SetDefaultButton(form.OK);
  form.ShowForm();
  for (QWidget* control : {static_cast<QWidget*>(form.OK), static_cast<QWidget*>(form.Line),
                           static_cast<QWidget*>(form.Box)}) {
    form.OKs = 0;
    control->setFocus();
    SendKey(form, QEvent::KeyPress, 10);
    RepeatKey(form, 510);
    EXPECT_EQ(form.OKs, 1) << control->metaObject()->className();
  }
  RepeatKey(form, 520, Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(form.Box->toPlainText(), QStringLiteral("\n"));
  form.OKs = 0;
  form.OK->setFocus();
  SendKey(form, QEvent::KeyPress, 530, Qt::Key_Space);
  for (quint64 at = 540; at < 600; at += 20) RepeatKey(form, at, Qt::Key_Space);
  EXPECT_EQ(form.OKs, 1);

  // Pressed twice, in the way Qt tells it while a screen reader listens.
  form.OKs = 0;
  SendKey(form, QEvent::KeyPress, 0);
  RepeatKey(form, 0);
  EXPECT_EQ(form.OKs, 2);
}

TEST(HurriedPresses, TheSecondHalfOfADoublePressIsNotTheMainWindows) {
  TestForm main;  // any window
  const HurriedPresses hurried(main);
  TestForm dialog;
  const auto enters = [&](quint64 inDialog, quint64 inMain) {
    main.OKs = 0;
    dialog.ShowForm();
    SendKey(dialog, QEvent::KeyPress, inDialog);
    dialog.HideForm();
    main.ShowForm();
    SendKey(main, QEvent::KeyPress, inMain);
    return main.OKs;
  };
  main.SetDefaultButton(main.OK);
  const auto interval = static_cast<quint64>(QApplication::doubleClickInterval());
  EXPECT_EQ(enters(10'000, 10'000 + interval / 2), 0);
  EXPECT_EQ(enters(20'000, 20'000 + interval + 1), 1);

  const auto press = [](QWidget& window, quint64 at, QPoint place) {
    QMouseEvent event(QEvent::MouseButtonPress, window.mapFromGlobal(place), place, Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    event.setTimestamp(at);
    QCoreApplication::sendEvent(window.windowHandle(), &event);
  };
  const auto clicks = [&](QPoint place, QPoint inMain) {
    press(dialog, 30'000, place);
    press(main, 30'000 + interval / 2, inMain);
    return main.Cancel->isDown();
  };
  const QPoint place = main.Cancel->mapToGlobal(main.Cancel->rect().center());  // it is on top
  EXPECT_FALSE(clicks(place, place));
  EXPECT_TRUE(clicks(place + QPoint(100, 0), place));
}

TEST(OneLineText, PastedLinesBecomeOne) {
  QLineEdit box;
  KeepToOneLine(box);
  const auto paste = [&](const QString& text) {
    box.insert(text);
    const QString before = box.text().left(box.cursorPosition());
    return before + QLatin1Char('|') + box.text().mid(box.cursorPosition());
  };
  EXPECT_EQ(paste(QStringLiteral("1 Oak Road\r\n\tSpringfield\n")),
            QStringLiteral("1 Oak Road Springfield|"));
  box.setCursorPosition(0);
  EXPECT_EQ(paste(QStringLiteral("\nAcme\n")), QStringLiteral("Acme |1 Oak Road Springfield"));
}

TEST(Twips, TextBoxesAndLabelsHaveTheRoomThatTheFontNeeds) {
  const QFont ordinary = QApplication::font();
  for (const int points : {9, 14, 22}) {
    QFont font = ordinary;
    font.setPointSize(points);
    QApplication::setFont(font);
    EXPECT_GE(Px(285), QLineEdit().sizeHint().height()) << points;
    EXPECT_GE(Px(780), QLabel().fontMetrics().horizontalAdvance(QStringLiteral("Company")))
        << points;
    EXPECT_EQ(Px(Twips(500)), 500) << points;
    EXPECT_EQ(Px(-600), -Px(600)) << points;
  }
  QApplication::setFont(ordinary);
}

}  // namespace
}  // namespace quillary::test
