#include "auxiliary/pictures.h"

#include <QPainter>
#include <QSvgRenderer>

static void InitResources() {
  Q_INIT_RESOURCE(pictures);
}

namespace quillary {
namespace {

constexpr int kLargestOfSmallDrawing = 24;  // pixels
constexpr int kLargestOfWindows = 128;

QImage Draw(const QString& name, QSize pixels) {
  InitResources();
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QSvgRenderer drawing(QStringLiteral(":/pictures/%1.svg").arg(name));
  QPainter painter(&image);
  drawing.render(&painter);
  return image;
}

}  // namespace

QPixmap Picture(const QString& name, QSize size, const QWidget& shownIn) {
  const qreal pixelRatio = shownIn.devicePixelRatioF();
  QPixmap picture = QPixmap::fromImage(Draw(name, size * pixelRatio));
  picture.setDevicePixelRatio(pixelRatio);
  return picture;
}

QImage IconImage(int side) {
  const QString drawing =
      side > kLargestOfSmallDrawing ? QStringLiteral("quillary") : QStringLiteral("quillary_small");
  return Draw(drawing, QSize(side, side));
}

QIcon QuillIcon() {
  QIcon icon;
  for (const int side : kIconSides) {
    if (side <= kLargestOfWindows) icon.addPixmap(QPixmap::fromImage(IconImage(side)));
  }
  return icon;
}

}  // namespace quillary
