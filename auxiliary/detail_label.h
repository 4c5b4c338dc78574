#pragma once

#include <QLabel>
#include <QMouseEvent>
#include <QString>
#include <string>

namespace quillary {

// One line of a record's details, or a block of lines that wrap. It takes any text as it is, at the
// same cost however long: its caption is the whole text, of which it paints what fits, with "…"
// where there is more; then the tool tip tells it whole. While the window is disabled, and not the
// line by itself, the text stays as it is.
class DetailLabel : public QLabel {
  Q_OBJECT

 public:
  enum class Shape { OneLine, Block };
  // That of other labels, dark blue, red. A disabled line has that of disabled labels or is red.
  enum class Colour { Normal, Highlighted, Found };

  DetailLabel(const QString& name, const QString& accessibleName, Shape shape);

  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string caption);
  Colour TextColour() const { return colour_; }
  void SetTextColour(Colour colour);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  // Not while the line is disabled.
  void MouseDown(QMouseEvent* event);
  void MouseMove();

 protected:
  bool event(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  int LineHeight() const;
  void PaintBlock(QPainter& painter);

  Shape shape_;
  std::string caption_;
  Colour colour_ = Colour::Normal;
  bool isCut_ = false;  // what was painted last
};

}  // namespace quillary
