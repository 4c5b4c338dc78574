#pragma once

#include <QAbstractListModel>
#include <QElapsedTimer>
#include <QListView>
#include <QString>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "store/text_list.h"

namespace quillary {

// The lines of a list box: texts of any length, each with a number.
class Lines : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  int Count() const { return static_cast<int>(texts_.size()); }
  int ItemData(int index) const { return itemData_.at(static_cast<std::size_t>(index)); }
  void Set(const TextList& texts, const TextList& itemData);
  void Insert(int index, std::string_view text, int itemData);
  void Remove(int index);

  int rowCount(const QModelIndex& parent) const override;
  // What is shown of a line.
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  TextList texts_;
  std::vector<std::int32_t> itemData_;
};

// A list of text lines with item data, of which one is selected. Lines that are out of range are
// ignored. Typing a letter selects the next line that begins with it; letters typed in quick
// succession, less than a second apart, lead to the line that begins with them. While the window is
// disabled, and not the box by itself, the texts stay as they are.
class ListBox : public QListView {
  Q_OBJECT

 public:
  explicit ListBox(const QString& name);

  int ListCount() const { return lines_.Count(); }
  // 0 where there is no such line.
  int ItemData(int index) const;
  // The line that was inserted last; -1 when all lines were replaced since, or it was removed.
  int NewIndex() const { return newIndex_; }

  // The selected line, -1 for none.
  int ListIndex() const;
  // Selects a line and brings it into view, without a Click; one out of range selects none. The
  // line that is selected already stays where it is on the screen.
  void SetListIndex(int index);

  // Replaces all lines; none is selected. The numbers are given as decimal text.
  void SetLines(const TextList& texts, const TextList& itemData);
  // The selected line stays selected.
  void InsertLine(int index, std::string_view text, int itemData);
  void RemoveLine(int index);

  void keyboardSearch(const QString& letters) override;

 Q_SIGNALS:
  // The user selected a line, or clicked the one that is selected.
  void Click();
  // The user clicked a line twice.
  void DblClick();

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void focusInEvent(QFocusEvent* event) override;
  void initViewItemOption(QStyleOptionViewItem* option) const override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
  // Selects the first line from that one on, and from the top again, which begins so. Whether there
  // is one.
  bool SelectNext(const QString& beginning, int from);

  Lines lines_;
  QString typed_;  // in quick succession
  QElapsedTimer sinceTyped_;
  int typedTo_ = -1;  // the line that led to
  int newIndex_ = -1;
  bool quiet_ = false;  // a change of the selection that is not the user's
};

}  // namespace quillary
