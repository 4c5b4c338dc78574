#pragma once

#include <QKeyEvent>
#include <QWidget>

namespace quillary {

// Shift+F10 does what the menu key does, which alone is known to Qt: asks the control that has the
// focus in `window` for its menu. False for any other key.
bool OpenMenuByKey(const QKeyEvent& key, const QWidget& window);

}  // namespace quillary
