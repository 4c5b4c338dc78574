#include "dialer/dial_list.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include "platform/desktop/accessibility.h"

namespace quillary {
namespace {

class NumberDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QString label = item.text.section(QLatin1Char('\t'), 0, 0);
    const QString number = item.text.section(QLatin1Char('\t'), 1);
    const QStyle* style = item.widget->style();
    item.text.clear();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    const QRect text = item.rect.adjusted(kMargin, 0, -kMargin, 0);
    // As wide as the widest label, and a gap.
    const int column = item.fontMetrics.horizontalAdvance(QStringLiteral("Phone2:  "));
    const QRect place = text.adjusted(column, 0, 0, 0);
    const QPalette::ColorRole colour =
        item.state.testFlag(QStyle::State_Selected) ? QPalette::HighlightedText : QPalette::Text;
    const auto draw = [&](const QRect& rect, const QString& line) {
      style->drawItemText(painter, rect, Qt::AlignLeft | Qt::AlignVCenter, item.palette,
                          item.state.testFlag(QStyle::State_Enabled), line, colour);
    };
    draw(text, label);
    draw(place, item.fontMetrics.elidedText(number, Qt::ElideRight, place.width()));
  }

 private:
  static constexpr int kMargin = 3;  // as the view's own painting has it
};

}  // namespace

DialList::DialList(QWidget* parent) : QListWidget(parent) {
  setObjectName(QStringLiteral("LstDialList"));
  setAccessibleName(QStringLiteral("Numbers of the selected name"));
  setItemDelegate(new NumberDelegate(this));
  setUniformItemSizes(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setTabKeyNavigation(false);
}

void DialList::AddNumber(const QString& label, const QString& number) {
  auto* item = new QListWidgetItem(label + QLatin1Char('\t') + number, this);
  item->setToolTip(QStringLiteral("<qt>%1</qt>").arg(number.toHtmlEscaped()));
}

QString DialList::Text() const {
  const QList<QListWidgetItem*> selected = selectedItems();
  return selected.isEmpty() ? QString() : selected.first()->text();
}

int DialList::HeightOf(int items) const {
  return items * fontMetrics().height() + 2 * frameWidth();
}

void DialList::focusInEvent(QFocusEvent* event) {
  QListWidget::focusInEvent(event);
  if (currentRow() >= 0) TellFocus(*this, currentRow());
}

void DialList::keyPressEvent(QKeyEvent* event) {
  // The view would copy the item over what the user has copied.
  if (event->matches(QKeySequence::Copy)) {
    event->ignore();
    return;
  }
  // With the focus the view marks the first item; the arrow keys would leave it behind.
  const bool isArrow = event->key() == Qt::Key_Down || event->key() == Qt::Key_Up;
  if (isArrow && selectedItems().isEmpty() && currentItem() != nullptr) {
    currentItem()->setSelected(true);
    return;
  }
  QListWidget::keyPressEvent(event);
}

void DialList::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QString before = Text();
  QListWidget::mousePressEvent(event);
  if (!before.isEmpty() && before == Text() && itemAt(event->pos()) != nullptr) Q_EMIT Click();
}

void DialList::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QListWidget::selectionChanged(selected, deselected);
  if (!selected.isEmpty()) Q_EMIT Click();
}

}  // namespace quillary
