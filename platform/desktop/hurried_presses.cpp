#include "platform/desktop/hurried_presses.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWindow>

#include "platform/desktop/multi_line_box.h"

namespace quillary {

HurriedPresses::HurriedPresses(QWidget& main) : main_(main) {
  qApp->installEventFilter(this);
}

// What the window system sends comes to the window first.
bool HurriedPresses::eventFilter(QObject* object, QEvent* event) {
  if (!object->isWindowType()) return false;
  if (event->type() == QEvent::KeyPress) return KeyPress(object, *static_cast<QKeyEvent*>(event));
  if (event->type() == QEvent::KeyRelease) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    releasedKey_ = key.nativeScanCode();
    releasedAt_ = key.timestamp();
    return false;
  }
  if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick) {
    const auto& mouse = *static_cast<QMouseEvent*>(event);
    return IsSecond(object, mouse, mouse.globalPosition(), click_);
  }
  return false;
}

// Of a key that is held, X11 tells releases and presses in pairs of the same time. Qt sees that
// they belong together only if both have arrived, which right after a change of windows they have
// not. While a screen reader listens, Qt tells keys without their time: those are no pairs.
bool HurriedPresses::IsRepeated(const QKeyEvent& key) const {
  const bool isPair = key.nativeScanCode() == releasedKey_ && key.timestamp() == releasedAt_;
  return key.isAutoRepeat() || (releasedKey_ != 0 && releasedAt_ != 0 && isPair);
}

bool HurriedPresses::KeyPress(const QObject* window, const QKeyEvent& key) {
  QWidget* control = QApplication::focusWidget();
  if (key.key() == Qt::Key_Space) {
    return IsRepeated(key) && qobject_cast<QAbstractButton*>(control) != nullptr;
  }
  if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return false;
  if (!IsRepeated(key)) return IsSecond(window, key, QPointF(), enter_);
  const auto* text = qobject_cast<MultiLineBox*>(control);
  return text == nullptr || !text->MakesLine(key);
}

bool HurriedPresses::IsSecond(const QObject* window, const QInputEvent& event, QPointF place,
                              Press& inDialog) {
  if (window != main_.windowHandle()) {
    // Menus are closed by a press as well, but nobody presses them twice.
    const bool isDialog = static_cast<const QWindow*>(window)->type() == Qt::Dialog;
    inDialog = isDialog ? Press{event.timestamp(), place} : Press{};
    return false;
  }
  const QStyleHints& hints = *QGuiApplication::styleHints();
  return inDialog.At != 0 &&
         event.timestamp() - inDialog.At < static_cast<quint64>(hints.mouseDoubleClickInterval()) &&
         (place - inDialog.Place).manhattanLength() <= hints.startDragDistance();
}

}  // namespace quillary
