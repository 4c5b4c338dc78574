#pragma once

#include <QRect>
#include <QWidget>

namespace quillary {

// Pixels for a length in twips (1/1440 inch at design time): twips times one factor, which makes a
// text box of 285 twips at least as high, and a label of 780 twips as wide, as the desktop's font
// needs. Rounded to a whole pixel.
int Px(int twips);
// The reverse.
int Twips(int pixels);

// Moves and sizes a control inside its parent; twips.
void Place(QWidget& control, int left, int top, int width, int height);

}  // namespace quillary
