#include "platform/desktop/menu_key.h"

#include <QContextMenuEvent>
#include <QCoreApplication>

namespace quillary {

bool OpenMenuByKey(const QKeyEvent& key, const QWidget& window) {
  QWidget* control = window.focusWidget();
  if (key.key() != Qt::Key_F10 || key.modifiers() != Qt::ShiftModifier || control == nullptr) {
    return false;
  }
  const QPoint place = control->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
  QContextMenuEvent menu(QContextMenuEvent::Keyboard, place, control->mapToGlobal(place));
  QCoreApplication::sendEvent(control, &menu);
  return true;
}

}  // namespace quillary
