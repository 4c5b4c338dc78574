#pragma once

#include <QKeyEvent>
#include <QObject>
#include <QPointF>
#include <QWidget>

namespace quillary {

// As long as this lives, a hand that is too quick or rests on a key does nothing that was not
// meant:
// - Enter and the space bar that the keyboard repeats because they are held press no button of any
//   window; they go on writing text.
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

  // Whether the key was not pressed anew.
  bool IsRepeated(const QKeyEvent& key) const;
  bool KeyPress(const QObject* window, const QKeyEvent& key);
  bool IsSecond(const QObject* window, const QInputEvent& event, QPointF place, Press& inDialog);

  QWidget& main_;
  Press enter_;
  Press click_;
  quint32 releasedKey_ = 0;  // its scan code; 0 for one that has none
  quint64 releasedAt_ = 0;   // 0 if that is not known
};

}  // namespace quillary
