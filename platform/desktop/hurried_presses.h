#pragma once

#include <QInputEvent>
#include <QObject>
#include <QPointF>
#include <QWidget>

namespace quillary {

// As long as this lives, a hand that is too quick or rests on a key does nothing that was not
// meant:
// - An Enter that the keyboard repeats because the key is held presses no button of any window. It
//   only makes lines in a MultiLineBox.
// - The second half of a double press that has closed a dialog is not taken for the main window's:
//   an Enter, or a click at the same place, within the double-click interval.
class HurriedPresses : public QObject {
  Q_OBJECT

 public:
  explicit HurriedPresses(QWidget& main);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  // The last press in a dialog.
  struct Press {
    quint64 At = 0;  // milliseconds, 0 for none
    QPointF Place;
  };

  bool IsSecond(const QObject* window, const QInputEvent& event, QPointF place, Press& inDialog);

  QWidget& main_;
  Press enter_;
  Press click_;
};

}  // namespace quillary
