#include "platform/desktop/placement.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

#include "platform/desktop/twips.h"

namespace quillary {

QPoint PlaceAtCorner(QRect main, QSize dialog, QRect screen) {
  const QPoint corner(main.left() + main.width() - dialog.width() - Px(150), main.top() + Px(150));
  return HoldOnScreen(corner, dialog, screen);
}

QPoint PlaceCentred(QRect over, QSize window) {
  return {over.left() + (over.width() - window.width()) / 2,
          over.top() + (over.height() - window.height()) / 2};
}

QPoint HoldOnScreen(QPoint place, QSize window, QRect screen) {
  const int lowest = screen.top() + screen.height() - window.height() - Px(300);
  const int rightmost = screen.left() + screen.width() - window.width() - Px(150);
  return {std::max(std::min(place.x(), rightmost), screen.left() + Px(150)),
          std::max(std::min(place.y(), lowest), screen.top() + Px(300))};
}

QRect ScreenOf(QRect window) {
  const QScreen* screen = QGuiApplication::screenAt(window.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? QRect() : screen->geometry();
}

}  // namespace quillary
