#include "platform/desktop/hurried_presses.h"

#include <QApplication>
#include <QKeyEvent>
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
  if (event->type() == QEvent::KeyPress) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return false;
    if (!key.isAutoRepeat()) return IsSecond(object, key, QPointF(), enter_);
    return qobject_cast<MultiLineBox*>(QApplication::focusWidget()) == nullptr;
  }
  if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick) {
    const auto& mouse = *static_cast<QMouseEvent*>(event);
    return IsSecond(object, mouse, mouse.globalPosition(), click_);
  }
  return false;
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
