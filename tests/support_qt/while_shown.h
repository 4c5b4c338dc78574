#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>
#include <functional>
#include <string>
#include <utility>

namespace quillary::test {

// QTest's own wait takes a dialog for active as soon as the window behind it is.
inline testing::AssertionResult WaitUntilActive(const QWidget& window) {
  if (QTest::qWaitFor([&window] { return QApplication::activeWindow() == &window; })) {
    return testing::AssertionSuccess();
  }
  const auto name = [](const QObject* object) {
    return object != nullptr ? object->objectName().toStdString() : std::string("none");
  };
  auto result = testing::AssertionFailure()
                << name(&window) << " is not active, but " << name(QApplication::activeWindow())
                << "; modal: " << name(QApplication::activeModalWidget())
                << "; with the keyboard: " << name(QGuiApplication::focusWindow()) << "; visible:";
  for (const QWidget* shown : QApplication::topLevelWidgets()) {
    if (shown->isVisible()) result << ' ' << name(shown);
  }
  return result;
}

// Does what the user does in `window` once it is open and has the keyboard. To be called before a
// call that shows the window and waits for him.
inline void WhileShown(QWidget& window, std::function<void()> action) {
  const auto act = [&window, action = std::move(action)] {
    if (const auto isActive = WaitUntilActive(window)) {
      action();
    } else {
      ADD_FAILURE() << isActive.message();
    }
  };
  QMetaObject::invokeMethod(&window, act, Qt::QueuedConnection);
}

// A key as the user presses it, whatever control of the window has the focus.
inline void PressKey(QWidget& window, Qt::Key key,
                     Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QTest::keyClick(window.windowHandle(), key, modifiers);
}

// A click on the control of that objectName.
inline void ClickOn(QWidget& window, const QString& name) {
  auto* control = window.findChild<QWidget*>(name);
  ASSERT_NE(control, nullptr) << qPrintable(name);
  ASSERT_TRUE(control->isVisible()) << qPrintable(name);
  // Beside the middle, which in a wide check box is not part of what takes clicks.
  QTest::mouseClick(control, Qt::LeftButton, Qt::NoModifier,
                    QPoint(qMin(10, control->width() / 2), control->height() / 2));
}

}  // namespace quillary::test
