#pragma once

#include <QColor>
#include <QLabel>
#include <QMouseEvent>
#include <QString>
#include <string>

namespace quillary {

// One line of a record's details, or a block of lines that wrap. It takes any text as it is, at the
// same cost however long: its caption is the whole text, of which it paints what fits, with "…"
// where there is more; then the tool tip tells it whole. While the window is disabled, and not the
// line by itself, the text stays as it is.
//
// It cannot have the focus, but a panel of lines that has it may lead the keyboard from line to
// line: to assistive technologies, which get the line's heading with its text, the focus is then on
// that line.
class DetailLabel : public QLabel {
  Q_OBJECT

 public:
  enum class Shape { OneLine, Block };
  // That of other labels, dark blue, red; on a dark ground the two are light ones. A disabled line
  // has that of disabled labels or is red.
  enum class Colour { Normal, Highlighted, Found };

  DetailLabel(const QString& name, QString heading, Shape shape);

  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string caption);
  Colour TextColour() const { return colour_; }
  void SetTextColour(Colour colour);
  // Whether the keyboard has gone to this line.
  bool HasKeyboard() const { return hasKeyboard_; }
  void SetHasKeyboard(bool hasKeyboard);

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
  QColor Pen() const;
  void PaintBlock(QPainter& painter);

  QString heading_;
  Shape shape_;
  std::string caption_;
  Colour colour_ = Colour::Normal;
  bool hasKeyboard_ = false;
  bool isCut_ = false;  // what was painted last
};

}  // namespace quillary
