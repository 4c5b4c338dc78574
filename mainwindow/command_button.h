#pragma once

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QString>
#include <functional>

namespace quillary {

// A button that can do more with the mouse than be clicked.
class CommandButton : public QPushButton {
  Q_OBJECT

 public:
  CommandButton(const QString& name, const QString& caption) : QPushButton(caption) {
    setObjectName(name);
    // Enter presses the button that has the focus.
    setAutoDefault(true);
  }

  // Called when a mouse button goes down on it; true means that this was all, and the button is
  // not pressed.
  std::function<bool(const QMouseEvent&)> MouseDown;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    // The arrow keys would walk to whatever button lies in their direction.
    const int key = event->key();
    const bool arrow =
        key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
    if (arrow) {
      event->ignore();
    } else {
      QPushButton::keyPressEvent(event);
    }
  }

  void mousePressEvent(QMouseEvent* event) override {
    if (!MouseDown || !MouseDown(*event)) QPushButton::mousePressEvent(event);
  }
};

// Whether Shift is held, and neither Ctrl nor Alt.
inline bool ShiftAlone(const QMouseEvent& event) {
  return (event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier)) ==
         Qt::ShiftModifier;
}

}  // namespace quillary
