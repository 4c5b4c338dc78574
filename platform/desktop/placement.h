#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace quillary {

// Where windows go. All in pixels of the screen, frames included; margins are the twips of the
// rules.

// Inside the main window's top right corner, 150 from its edges, held on the screen.
QPoint PlaceAtCorner(QRect main, QSize dialog, QRect screen);
// Centred over the main window, or on the screen.
QPoint PlaceCentred(QRect over, QSize window);
// Top at most screen height - window height - 300 and then at least 300; left at most screen width
// - window width - 150 and then at least 150.
QPoint HoldOnScreen(QPoint place, QSize window, QRect screen);

// The screen that shows the middle of the window, or the primary one.
QRect ScreenOf(QRect window);

}  // namespace quillary
