#pragma once

#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QSize>
#include <QString>
#include <QWidget>
#include <array>

namespace quillary {

// The program's pictures. They are drawings (the .svg files in pictures/) and get sharp in any
// size.

// The drawing `name` (a file of pictures/ without its ending), stretched to `size` (pixels of the
// widget it is for), on a transparent ground.
QPixmap Picture(const QString& name, QSize size, const QWidget& shownIn);

// The sides in which the program's icon is installed, in pixels.
inline constexpr std::array kIconSides{16, 22, 24, 32, 48, 64, 128, 256};
// The program's icon with sides of `side` pixels; the smallest come from a simpler drawing.
QImage IconImage(int side);
// The same as the icon of the program's windows.
QIcon QuillIcon();

}  // namespace quillary
