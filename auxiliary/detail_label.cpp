#include "auxiliary/detail_label.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QPainter>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextOption>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "auxiliary/one_line.h"
#include "platform/desktop/accessibility.h"
#include "platform/desktop/twips.h"

namespace quillary {
namespace {

// A tool tip wraps only between words, and an address may be one word of any length.
QString WithBreaks(const QString& text) {
  constexpr int kLongest = 60;
  QString broken;
  int length = 0;
  for (const QChar c : text) {
    length = c.isSpace() ? 0 : length + 1;
    if (length > kLongest && !c.isLowSurrogate()) {
      broken += QChar(0x200B);  // takes no room
      length = 1;
    }
    broken += c;
  }
  return broken;
}

class AccessibleLine : public QAccessibleWidget {
 public:
  explicit AccessibleLine(DetailLabel& line)
      : QAccessibleWidget(&line, QAccessible::StaticText), line_(line) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.focusable = line_.HasKeyboard();
    state.focused = line_.HasKeyboard();
    return state;
  }

 private:
  const DetailLabel& line_;
};

QAccessibleInterface* MakeInterface(const QString& /*type*/, QObject* object) {
  auto* line = qobject_cast<DetailLabel*>(object);
  return line != nullptr ? new AccessibleLine(*line) : nullptr;
}

}  // namespace

DetailLabel::DetailLabel(const QString& name, QString heading, Shape shape)
    : heading_(std::move(heading)), shape_(shape) {
  QAccessible::installFactory(MakeInterface);  // one time is as good as many
  setObjectName(name);
  SetAccessibleText(*this, heading_, {});
  setTextFormat(Qt::PlainText);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding,
                shape == Shape::OneLine ? QSizePolicy::Fixed : QSizePolicy::Expanding);
}

void DetailLabel::SetCaption(std::string caption) {
  caption_ = std::move(caption);
  const QString shown = shape_ == Shape::OneLine ? OneLine(caption_) : ManyLines(caption_);
  setText(shown);
  SetAccessibleText(*this, heading_, shown);
}

void DetailLabel::SetTextColour(Colour colour) {
  if (colour_ == colour) return;
  colour_ = colour;
  update();
}

void DetailLabel::SetHasKeyboard(bool hasKeyboard) {
  hasKeyboard_ = hasKeyboard;
  if (hasKeyboard_) TellFocus(*this);
}

int DetailLabel::LineHeight() const {
  // Two pixels more than the font asks for: characters of other scripts come from other fonts.
  return fontMetrics().height() + 2;
}

QSize DetailLabel::sizeHint() const {
  return {Px(2400), LineHeight() * (shape_ == Shape::OneLine ? 1 : 4)};
}

QSize DetailLabel::minimumSizeHint() const {
  return {Px(900), LineHeight() * (shape_ == Shape::OneLine ? 1 : 2)};
}

void DetailLabel::mousePressEvent(QMouseEvent* event) {
  Q_EMIT MouseDown(event);
}

void DetailLabel::mouseMoveEvent(QMouseEvent* /*event*/) {
  Q_EMIT MouseMove();
}

bool DetailLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QLabel::event(event);
  // Far more than the screen has room for is of no use.
  constexpr std::size_t kMost = 4000;
  const QString tip = isCut_ ? Qt::convertFromPlainText(WithBreaks(ManyLines(caption_, kMost)),
                                                        Qt::WhiteSpaceNormal)
                             : QString();
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tip, this);
  return true;
}

QColor DetailLabel::Pen() const {
  const bool isDark = palette().color(backgroundRole()).lightness() < 128;
  if (colour_ == Colour::Found) return isDark ? QColor(255, 150, 150) : QColor(255, 0, 0);
  if (colour_ == Colour::Highlighted && isEnabled()) {
    return isDark ? QColor(160, 190, 255) : QColor(0, 0, 192);
  }
  const bool isGrey = !isEnabledTo(window());
  return palette().color(isGrey ? QPalette::Disabled : QPalette::Active, foregroundRole());
}

void DetailLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(Pen());
  if (shape_ == Shape::Block) {
    PaintBlock(painter);
    return;
  }
  const QString line = OneLine(caption_, static_cast<std::size_t>(width()));
  const QString shown = fontMetrics().elidedText(line, Qt::ElideRight, width());
  isCut_ = shown != line;
  painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

// Whole lines only; the last one tells whether there is more.
void DetailLabel::PaintBlock(QPainter& painter) {
  isCut_ = false;
  const int pitch = fontMetrics().lineSpacing();
  const int lines = std::max(1, height() / pitch);
  // No text of so many characters fits.
  const int narrow = std::max(1, fontMetrics().horizontalAdvance(QLatin1Char('i')) / 2);
  const int limit = lines * std::max(1, width() / narrow);
  const QString text = ManyLines(caption_, static_cast<std::size_t>(limit))
                           .replace(QLatin1Char('\n'), QChar::LineSeparator);
  QTextLayout layout(text, font(), this);
  QTextOption option(Qt::AlignLeft | Qt::AlignTop);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  layout.beginLayout();
  for (int i = 0; i < lines; ++i) {
    QTextLine line = layout.createLine();
    if (!line.isValid()) break;
    line.setLineWidth(width());
    line.setPosition(QPointF(0, i * pitch));
    const qsizetype start = line.textStart();
    if (i < lines - 1 || start + line.textLength() >= text.size()) continue;
    isCut_ = true;
    // The line as far as it goes, and its mark.
    const QString rest = text.mid(start).section(QChar::LineSeparator, 0, 0) + QChar(0x2026);
    painter.drawText(QRect(0, i * pitch, width(), pitch), Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(rest, Qt::ElideRight, width()));
    line.setPosition(QPointF(0, lines * pitch));
  }
  layout.endLayout();
  painter.setClipRect(0, 0, width(), lines * pitch);
  layout.draw(&painter, QPointF(0, 0));
}

}  // namespace quillary
