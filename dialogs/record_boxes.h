#pragma once

#include <QFrame>
#include <QLineEdit>
#include <QString>
#include <array>
#include <cstddef>
#include <string>

#include "platform/desktop/multi_line_box.h"
#include "store/store_data.h"

namespace quillary {

// The text boxes of a record's fields with their labels: TxtBox(0) to TxtBox(15) in Frame1, in the
// order of the fields. A box that gets the focus selects its whole text.
//
// The boxes but the last are of one line: a line break or a tab in what the user pastes becomes a
// blank. A value of any bytes and length survives being shown: as long as the user does not change
// the text of its box, the value comes back as it went in.
class RecordBoxes : public QFrame {
  Q_OBJECT

 public:
  explicit RecordBoxes(QWidget* parent);

  void SetValue(std::size_t index, const std::string& value);
  std::string Value(std::size_t index) const;
  // The text as the box shows it. Lines end in a line feed.
  QString Text(std::size_t index) const;
  // All boxes show their beginning, and the first one's text is selected, as when it gets the
  // focus.
  void Begin();
  // The box that has the focus, or had it last.
  QWidget& LastBox() const;
  // That box has its selection and cursor as the user left them.
  void GoOn();

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void MakeLabels();
  void PlaceBox(QWidget& box, std::size_t index, int height);
  void TxtBox_GotFocus(std::size_t index);
  bool HasSelection(std::size_t index) const;
  void RememberSelection();

  std::array<QLineEdit*, Field::Notes> TxtBox{};  // those of one line
  MultiLineBox* notesBox_ = nullptr;              // TxtBox(15)
  FieldArray values_;                             // as they were set
  std::array<QString, FieldCount> texts_;         // what the boxes made of them
  bool clickGaveFocus_ = false;                   // and its mouse button is still down
  std::size_t lastBox_ = 0;                       // which had the focus last
  int anchor_ = 0;                                // of its selection
  int cursor_ = 0;
};

}  // namespace quillary
