#pragma once

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QString>
#include <functional>

#include "platform/desktop/twips.h"

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

  // Called when the left mouse button goes down on it; true means that this was all: the button
  // looks pressed as long as the mouse is held, but is not clicked.
  std::function<bool(const QMouseEvent&)> MouseDown;

  QSize sizeHint() const override {
    constexpr int kMargins = 240;  // twips; the style's own do not grow with the font
    const int width = fontMetrics().size(Qt::TextShowMnemonic, text()).width() + Px(kMargins);
    return QPushButton::sizeHint().expandedTo(QSize(width, 0));
  }

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
    taken_ = event->button() == Qt::LeftButton && MouseDown && MouseDown(*event);
    if (!taken_) {
      QPushButton::mousePressEvent(event);
    } else if (isEnabled()) {
      setDown(true);
    }
  }

  void mouseReleaseEvent(QMouseEvent* event) override {
    if (taken_) {
      setDown(false);
    } else {
      QPushButton::mouseReleaseEvent(event);
    }
  }

 private:
  bool taken_ = false;  // the last press, by MouseDown
};

// Which of Shift, Ctrl and Alt are held.
inline Qt::KeyboardModifiers HeldKeys(const QMouseEvent& event) {
  return event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
}
inline bool ShiftAlone(const QMouseEvent& event) {
  return HeldKeys(event) == Qt::ShiftModifier;
}

}  // namespace quillary
