#include "mainwindow/detail_label.h"

#include <QPainter>
#include <QTextOption>
#include <algorithm>
#include <utility>

#include "mainwindow/one_line.h"
#include "platform/desktop/twips.h"

namespace quillary {

DetailLabel::DetailLabel(const QString& name, const QString& accessibleName, Shape shape)
    : shape_(shape) {
  setObjectName(name);
  setAccessibleName(accessibleName);
  setTextFormat(Qt::PlainText);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding,
                shape == Shape::OneLine ? QSizePolicy::Fixed : QSizePolicy::Expanding);
}

void DetailLabel::SetCaption(std::string caption) {
  caption_ = std::move(caption);
  const QString shown = shape_ == Shape::OneLine ? OneLine(caption_) : ManyLines(caption_);
  setText(shown);
  setAccessibleDescription(shown);
}

void DetailLabel::SetHighlighted(bool highlighted) {
  if (highlighted_ == highlighted) return;
  highlighted_ = highlighted;
  update();
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

void DetailLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QColor normal = highlighted_ ? QColor(0, 0, 192) : QColor(0, 0, 0);
  painter.setPen(isEnabled() ? normal : palette().color(QPalette::Disabled, QPalette::WindowText));
  if (shape_ == Shape::OneLine) {
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, width()));
    return;
  }
  // Whole lines only.
  const int line = fontMetrics().lineSpacing();
  const QRect block(0, 0, width(), std::max(1, height() / line) * line);
  painter.setClipRect(block);
  QTextOption option(Qt::AlignLeft | Qt::AlignTop);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  painter.drawText(QRectF(block), text(), option);
}

}  // namespace quillary
