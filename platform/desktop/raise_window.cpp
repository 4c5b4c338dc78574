#include "platform/desktop/raise_window.h"

#include <QApplication>
#include <QWindow>

namespace quillary {
namespace {

QWidget& InputWindow(QWidget& window) {
  if (QWidget* modal = QApplication::activeModalWidget()) return *modal;
  if (window.isEnabled()) return window;
  for (QWidget* other : QApplication::topLevelWidgets()) {
    const QWindow* handle = other->windowHandle();
    const bool inFront = handle != nullptr && handle->transientParent() == window.windowHandle();
    if (inFront && other->isVisible() && other->isEnabled()) return *other;
  }
  return window;
}

}  // namespace

void RaiseWindow(QWidget& window) {
  if (!window.isVisible()) return;
  if (window.isMinimized()) window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.raise();
  QWidget& input = InputWindow(window);
  input.raise();
  input.activateWindow();
}

}  // namespace quillary
