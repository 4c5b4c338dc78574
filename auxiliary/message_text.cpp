#include "auxiliary/message_text.h"

#include <QImage>
#include <QPainter>
#include <QTextOption>
#include <algorithm>

namespace quillary {
namespace {

QTextOption Wrapped() {
  QTextOption option(Qt::AlignLeft | Qt::AlignTop);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  return option;
}

// About that many characters, one half from the beginning and one from the end.
QString BothEnds(const QString& text, qsizetype count) {
  qsizetype left = (count + 1) / 2;
  qsizetype right = text.size() - count / 2;
  // The two halves of a character stay together.
  if (left > 0 && text.at(left - 1).isHighSurrogate()) --left;
  if (right < text.size() && text.at(right).isLowSurrogate()) ++right;
  return text.first(left) + QChar(0x2026) + text.sliced(right);
}

}  // namespace

QString MessageText::Shown() const {
  QString whole = text();
  const auto fits = [this](const QString& shown) {
    const QRectF room = contentsRect();
    QImage nothing(1, 1, QImage::Format_RGB32);
    QPainter painter(&nothing);
    painter.setFont(font());
    return painter.boundingRect(QRectF(0, 0, room.width(), QWIDGETSIZE_MAX), shown, Wrapped())
               .height() <= room.height();
  };
  constexpr qsizetype kMost = 4000;  // more characters than any box has room for
  if (whole.size() <= kMost && fits(whole)) return whole;
  qsizetype shown = 0;
  qsizetype tooMany = std::min(whole.size(), kMost);
  while (tooMany - shown > 1) {
    const qsizetype middle = (shown + tooMany) / 2;
    (fits(BothEnds(whole, middle)) ? shown : tooMany) = middle;
  }
  return BothEnds(whole, shown);
}

void MessageText::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(QRectF(contentsRect()), Shown(), Wrapped());
}

}  // namespace quillary
