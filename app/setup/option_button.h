#pragma once

#include <QButtonGroup>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QRadioButton>

namespace quillary {

// An option button that also tells of double clicks. The first click of the two has chosen it. In a
// group the arrow keys choose, also where nothing is chosen yet.
class OptionButton : public QRadioButton {
  Q_OBJECT

 public:
  OptionButton(const QString& name, const QString& caption) : QRadioButton(caption) {
    setObjectName(name);
  }

 Q_SIGNALS:
  void DblClick();

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool isArrow = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down ||
                         event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    const bool isFirstChoice = group() != nullptr && group()->checkedButton() == nullptr;
    QRadioButton::keyPressEvent(event);
    if (!isArrow || !isFirstChoice) return;
    // The key has moved the focus at most.
    auto* const choice = qobject_cast<OptionButton*>(window()->focusWidget());
    if (choice != nullptr && choice->group() == group()) choice->click();
    event->accept();
  }
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton && hitButton(event->position().toPoint())) {
      Q_EMIT DblClick();
    } else {
      QRadioButton::mouseDoubleClickEvent(event);
    }
  }
};

}  // namespace quillary
