#pragma once

#include <QLineEdit>

namespace quillary {

// The box takes no line breaks, tabs and other control characters, which a user can only bring in
// by pasting or dropping a text: each run of them becomes a blank, or nothing at the ends of the
// text. That goes for a text set by the program, too.
void KeepToOneLine(QLineEdit& box);

}  // namespace quillary
