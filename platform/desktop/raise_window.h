#pragma once

#include <QWidget>

namespace quillary {

// Whether the window is given the keyboard at all.
bool AcceptsFocus(const QWidget& window);

// Brings a window that is shown to the front, out of its icon if it is minimised. The keyboard goes
// to it, or, while it takes no input, to the window in front of it that does. A hidden window stays
// hidden.
void RaiseWindow(QWidget& window);

}  // namespace quillary
