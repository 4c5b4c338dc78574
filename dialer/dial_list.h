#pragma once

#include <QListWidget>
#include <QString>

namespace quillary {

// A list of numbers, each an item made of a label, a tab and the number. The numbers stand in a
// column; one that is wider than the list is cut, and shown whole when the mouse rests on it.
class DialList : public QListWidget {
  Q_OBJECT

 public:
  explicit DialList(QWidget* parent);

  void AddNumber(const QString& label, const QString& number);
  // The text of the selected item; empty for none.
  QString Text() const;
  // The height at which so many items can be seen; pixels.
  int HeightOf(int items) const;

 Q_SIGNALS:
  // The user selected an item, or clicked the selected one again.
  void Click();

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
};

}  // namespace quillary
