#pragma once

#include <QMouseEvent>
#include <QRadioButton>

namespace quillary {

// An option button that also tells of double clicks. The first click of the two has chosen it.
class OptionButton : public QRadioButton {
  Q_OBJECT

 public:
  OptionButton(const QString& name, const QString& caption) : QRadioButton(caption) {
    setObjectName(name);
  }

 Q_SIGNALS:
  void DblClick();

 protected:
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton && hitButton(event->position().toPoint())) {
      Q_EMIT DblClick();
    } else {
      QRadioButton::mouseDoubleClickEvent(event);
    }
  }
};

}  // namespace quillary
