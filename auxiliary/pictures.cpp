#include "auxiliary/pictures.h"

#include <QPainter>
#include <QPainterPath>

namespace quillary {
namespace {

// All pictures are drawn in a square of 100 by 100.
constexpr int kSide = 100;

const QColor kInk(0x25, 0x3a, 0x5e);
const QColor kPaper(0xff, 0xfc, 0xf2);
const QColor kEdge(0x9a, 0x8f, 0x78);
const QColor kRule(0xb9, 0xc4, 0xd6);
const QColor kFeather(0x4a, 0x7f, 0xb5);
const QColor kFeatherLight(0x8f, 0xb8, 0xdd);
const QColor kLight(0xff, 0xd8, 0x5a);
const QColor kMetal(0x8a, 0x8f, 0x98);

void DrawCard(QPainter& painter) {
  painter.setPen(QPen(kEdge, 2));
  painter.setBrush(kPaper);
  painter.drawRoundedRect(QRectF(6, 38, 80, 54), 5, 5);
  painter.setPen(QPen(kInk, 4, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(15, 52), QPointF(38, 52));
  painter.setPen(QPen(kRule, 3, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(15, 64), QPointF(45, 64));
  painter.drawLine(QPointF(15, 73), QPointF(58, 73));
  painter.drawLine(QPointF(15, 82), QPointF(50, 82));
}

void DrawQuill(QPainter& painter) {
  const QPointF nib(50, 78);
  const QPointF tip(94, 6);
  QPainterPath vane(QPointF(58, 64));
  vane.cubicTo(QPointF(52, 40), QPointF(66, 14), tip);
  vane.cubicTo(QPointF(98, 30), QPointF(88, 56), QPointF(58, 64));
  painter.setPen(QPen(kInk, 1.5));
  painter.setBrush(kFeather);
  painter.drawPath(vane);

  QPainterPath lightHalf(QPointF(58, 64));
  lightHalf.cubicTo(QPointF(52, 40), QPointF(66, 14), tip);
  lightHalf.cubicTo(QPointF(82, 26), QPointF(68, 46), QPointF(58, 64));
  painter.setPen(Qt::NoPen);
  painter.setBrush(kFeatherLight);
  painter.drawPath(lightHalf);

  QPainterPath shaft(nib);
  shaft.cubicTo(QPointF(60, 60), QPointF(76, 30), tip);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(kInk, 2.5, Qt::SolidLine, Qt::RoundCap));
  painter.drawPath(shaft);
}

void DrawBulb(QPainter& painter) {
  painter.setPen(QPen(kLight, 4, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(50, 3), QPointF(50, 10));
  painter.drawLine(QPointF(17, 16), QPointF(22, 21));
  painter.drawLine(QPointF(83, 16), QPointF(78, 21));
  painter.drawLine(QPointF(4, 46), QPointF(11, 46));
  painter.drawLine(QPointF(96, 46), QPointF(89, 46));

  QPainterPath glass(QPointF(40, 76));
  glass.cubicTo(QPointF(40, 64), QPointF(22, 60), QPointF(22, 44));
  glass.cubicTo(QPointF(22, 8), QPointF(78, 8), QPointF(78, 44));
  glass.cubicTo(QPointF(78, 60), QPointF(60, 64), QPointF(60, 76));
  glass.closeSubpath();
  painter.setPen(QPen(kEdge, 2));
  painter.setBrush(kLight);
  painter.drawPath(glass);
  painter.setBrush(Qt::NoBrush);
  painter.drawPolyline(QPolygonF{QPointF(45, 75), QPointF(42, 48), QPointF(50, 54), QPointF(58, 48),
                                 QPointF(55, 75)});
  painter.setPen(QPen(kMetal, 5, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(42, 81), QPointF(58, 81));
  painter.drawLine(QPointF(42, 88), QPointF(58, 88));
  painter.drawLine(QPointF(47, 94), QPointF(53, 94));
}

using Drawing = void (*)(QPainter&);

void DrawCardAndQuill(QPainter& painter) {
  DrawCard(painter);
  DrawQuill(painter);
}

QPixmap Picture(QSize size, qreal pixelRatio, Drawing drawing) {
  QPixmap picture(size * pixelRatio);
  picture.setDevicePixelRatio(pixelRatio);
  picture.fill(Qt::transparent);
  const int side = qMin(size.width(), size.height());
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate((size.width() - side) / 2.0, (size.height() - side) / 2.0);
  painter.scale(side / qreal{kSide}, side / qreal{kSide});
  drawing(painter);
  return picture;
}

}  // namespace

QPixmap QuillPicture(QSize size, const QWidget& shownIn) {
  return Picture(size, shownIn.devicePixelRatioF(), DrawCardAndQuill);
}

QPixmap TipPicture(QSize size, const QWidget& shownIn) {
  return Picture(size, shownIn.devicePixelRatioF(), DrawBulb);
}

QPixmap MessageIcon(QStyle::StandardPixmap icon, const QWidget& shownIn) {
  constexpr QSize kSize(48, 48);
  const qreal pixelRatio = shownIn.devicePixelRatioF();
  const QIcon standard = shownIn.style()->standardIcon(icon, nullptr, &shownIn);
  QPixmap pixmap = standard.pixmap(kSize, pixelRatio);
  // A style may have nothing as large.
  const QSize wanted = kSize * pixelRatio;
  if (pixmap.size() != wanted) {
    pixmap = pixmap.scaled(wanted, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  }
  pixmap.setDevicePixelRatio(pixelRatio);
  return pixmap;
}

QIcon QuillIcon() {
  QIcon icon;
  for (const int side : {16, 24, 32, 48, 64, 128}) {
    icon.addPixmap(Picture(QSize(side, side), 1, DrawCardAndQuill));
  }
  return icon;
}

}  // namespace quillary
