#pragma once

#include <QIcon>
#include <QPixmap>
#include <QSize>
#include <QStyle>
#include <QWidget>

namespace quillary {

// The program's pictures, made for the size they are shown in.

// A quill over an address card, on a transparent ground, as large as fits into `size` (pixels of
// the widget it is for).
QPixmap QuillPicture(QSize size, const QWidget& shownIn);
// A light bulb.
QPixmap TipPicture(QSize size, const QWidget& shownIn);
// One of the desktop's message icons (QStyle::SP_MessageBox...), 48 by 48 pixels.
QPixmap MessageIcon(QStyle::StandardPixmap icon, const QWidget& shownIn);
// The quill as the icon of the program's windows.
QIcon QuillIcon();

}  // namespace quillary
