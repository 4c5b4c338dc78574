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
    if (inFront && other->isVisible() && other->isEnabled() && AcceptsFocus(*other)) return *other;
  }
  return window;
}

}  // namespace

bool AcceptsFocus(const QWidget& window) {
  return !window.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus);
}

void RaiseWindow(QWidget& window) {
  if (!window.isVisible()) return;
  if (window.isMinimized()) window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.raise();
  QWidget& input = InputWindow(window);
  input.raise();
  if (AcceptsFocus(input)) input.activateWindow();
}

}  // namespace quillary
