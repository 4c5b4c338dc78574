#include "auxiliary/list_box.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <algorithm>

#include "auxiliary/one_line.h"
#include "platform/desktop/accessibility.h"
#include "platform/desktop/twips.h"
#include "platform/numbers.h"

namespace quillary {

void Lines::Set(const TextList& texts, const TextList& itemData) {
  beginResetModel();
  texts_ = texts;
  itemData_.clear();
  itemData_.reserve(itemData.size());
  for (const std::string_view number : itemData) itemData_.push_back(ToInt32(number));
  endResetModel();
}

void Lines::Insert(int index, std::string_view text, int itemData) {
  beginInsertRows({}, index, index);
  texts_.insert(static_cast<std::size_t>(index), text);
  itemData_.insert(itemData_.begin() + index, itemData);
  endInsertRows();
}

void Lines::Remove(int index) {
  beginRemoveRows({}, index, index);
  texts_.erase(static_cast<std::size_t>(index));
  itemData_.erase(itemData_.begin() + index);
  endRemoveRows();
}

int Lines::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : Count();
}

QVariant Lines::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !index.isValid()) return {};
  return OneLine(texts_[static_cast<std::size_t>(index.row())]);
}

ListBox::ListBox(const QString& name) {
  setObjectName(name);
  setModel(&lines_);
  setUniformItemSizes(true);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setTabKeyNavigation(false);
  setTextElideMode(Qt::ElideRight);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

int ListBox::ItemData(int index) const {
  return index >= 0 && index < ListCount() ? lines_.ItemData(index) : 0;
}

int ListBox::ListIndex() const {
  // The current line is no answer: the view gives itself one when it gets the focus.
  const QModelIndexList selected = selectionModel()->selectedRows();
  return selected.isEmpty() ? -1 : selected.first().row();
}

void ListBox::SetListIndex(int index) {
  const QScopedValueRollback quiet(quiet_, true);
  if (index < 0 || index >= ListCount()) {
    selectionModel()->clear();
    return;
  }
  const QModelIndex line = lines_.index(index);
  if (index == ListIndex() && line == currentIndex()) return;
  selectionModel()->setCurrentIndex(line, QItemSelectionModel::ClearAndSelect);
  scrollTo(line);
}

void ListBox::SetLines(const TextList& texts, const TextList& itemData) {
  const QScopedValueRollback quiet(quiet_, true);
  lines_.Set(texts, itemData);
  newIndex_ = -1;
}

void ListBox::InsertLine(int index, std::string_view text, int itemData) {
  const QScopedValueRollback quiet(quiet_, true);
  lines_.Insert(std::clamp(index, 0, ListCount()), text, itemData);
  newIndex_ = index;
}

void ListBox::RemoveLine(int index) {
  if (index < 0 || index >= ListCount()) return;
  const QScopedValueRollback quiet(quiet_, true);
  lines_.Remove(index);
  newIndex_ = -1;
}

// Not the view's own search: for two equal letters that one looks for a line that begins with both,
// and whoever presses a letter again and again goes from name to name.
void ListBox::keyboardSearch(const QString& letters) {
  if (ListCount() == 0 || letters.isEmpty() || !letters.front().isPrint()) return;
  constexpr qint64 kQuickMs = 1000;
  const bool goesOn = sinceTyped_.isValid() && !sinceTyped_.hasExpired(kQuickMs);
  if (!goesOn || ListIndex() != typedTo_) typed_.clear();
  sinceTyped_.start();
  typed_ += letters;
  const bool isRepeated =
      typed_.count(letters, Qt::CaseInsensitive) * letters.size() == typed_.size();
  if (isRepeated || !SelectNext(typed_, std::max(ListIndex(), 0))) {
    // A word that no line begins with was not meant as one.
    if (!isRepeated) typed_ = letters;
    static_cast<void>(SelectNext(letters, ListIndex() + 1));
  }
  typedTo_ = ListIndex();
}

bool ListBox::SelectNext(const QString& beginning, int from) {
  const QModelIndexList found = lines_.match(lines_.index(from % ListCount()), Qt::DisplayRole,
                                             beginning, 1, Qt::MatchStartsWith | Qt::MatchWrap);
  if (!found.isEmpty()) setCurrentIndex(found.first());
  return !found.isEmpty();
}

void ListBox::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  if (hasFocus()) {
    QListView::currentChanged(current, previous);
  } else {
    // That one would tell assistive technologies that the line has the focus.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractItemView::currentChanged(current, previous);
  }
}

void ListBox::focusInEvent(QFocusEvent* event) {
  QListView::focusInEvent(event);
  if (ListIndex() >= 0) TellFocus(*this, ListIndex());
}

void ListBox::initViewItemOption(QStyleOptionViewItem* option) const {
  QListView::initViewItemOption(option);
  if (isEnabledTo(window())) option->state |= QStyle::State_Enabled;
}

void ListBox::keyPressEvent(QKeyEvent* event) {
  // The view would copy what it shows of the line, over what the user has copied.
  if (event->matches(QKeySequence::Copy)) {
    event->ignore();
    return;
  }
  QListView::keyPressEvent(event);
}

void ListBox::mousePressEvent(QMouseEvent* event) {
  // The other buttons are for menus and leave the selection alone.
  if (event->button() != Qt::LeftButton) return;
  const int before = ListIndex();
  QListView::mousePressEvent(event);
  if (before >= 0 && before == ListIndex() && indexAt(event->pos()).row() == before) Q_EMIT Click();
}

void ListBox::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() == Qt::NoButton || event->buttons() == Qt::LeftButton) {
    QListView::mouseMoveEvent(event);
  }
}

void ListBox::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  QListView::mouseDoubleClickEvent(event);
  if (indexAt(event->pos()).isValid()) Q_EMIT DblClick();
}

QItemSelectionModel::SelectionFlags ListBox::selectionCommand(const QModelIndex& index,
                                                              const QEvent* /*event*/) const {
  // Whatever keys are held, exactly one line is selected.
  return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

void ListBox::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QListView::selectionChanged(selected, deselected);
  if (!quiet_ && !selected.isEmpty()) Q_EMIT Click();
}

}  // namespace quillary
