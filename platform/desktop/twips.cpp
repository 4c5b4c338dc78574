#include "platform/desktop/twips.h"

#include <QApplication>
#include <QFontMetrics>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionFrame>
#include <algorithm>

namespace quillary {
namespace {

// A length as it was designed and as the font needs it.
struct Measure {
  int Twips;
  int Pixels;
};

// A text box's own size hint, without the cost of making one at each call.
int TextBoxHeight() {
  constexpr int kLeastText = 14;      // what QLineEdit takes for the smallest fonts
  constexpr int kVerticalMargin = 1;  // above and below the text
  const QFontMetrics metrics(QApplication::font("QLineEdit"));
  const QStyle* style = QApplication::style();
  QStyleOptionFrame option;
  option.fontMetrics = metrics;
  option.lineWidth = style->pixelMetric(QStyle::PM_DefaultFrameWidth, &option);
  option.state = QStyle::State_Enabled | QStyle::State_Sunken;
  const int text = std::max(metrics.height(), kLeastText) + 2 * kVerticalMargin;
  return style->sizeFromContents(QStyle::CT_LineEdit, &option, QSize(text, text)).height();
}

// The longest label beside a text box, up to the box less a gap.
int LabelWidth() {
  return QFontMetrics(QApplication::font("QLabel")).horizontalAdvance(QStringLiteral("Company"));
}

// The one that asks for more pixels for a twip: large fonts are wide for their text boxes, whose
// frames do not grow.
Measure Scale() {
  const Measure textBox{285, TextBoxHeight()};
  const Measure label{780, LabelWidth()};
  return textBox.Pixels * label.Twips >= label.Pixels * textBox.Twips ? textBox : label;
}

// To the nearest whole number; halves away from zero.
int Divide(int dividend, int divisor) {
  const int half = dividend < 0 ? -divisor / 2 : divisor / 2;
  return (dividend + half) / divisor;
}

}  // namespace

int Px(int twips) {
  const Measure scale = Scale();
  return Divide(twips * scale.Pixels, scale.Twips);
}

int Twips(int pixels) {
  const Measure scale = Scale();
  return Divide(pixels * scale.Twips, scale.Pixels);
}

void Place(QWidget& control, int left, int top, int width, int height) {
  // Right edges that are the same in twips are the same in pixels. Heights keep their own rounding:
  // all text boxes are equally high.
  control.setGeometry(Px(left), Px(top), Px(left + width) - Px(left), Px(height));
}

}  // namespace quillary
