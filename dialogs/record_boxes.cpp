#include "dialogs/record_boxes.h"

#include <QFocusEvent>
#include <QLabel>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>
#include <limits>

#include "platform/desktop/one_line_text.h"
#include "platform/desktop/twips.h"

namespace quillary {

namespace {

// All in twips, inside the frame.
constexpr int kBoxHeight = 285;
constexpr int kNotesHeight = 495;
constexpr int kLabelTop = 60;  // of a label below the box in whose middle its text is

struct BoxPlace {
  const char* AccessibleName;
  int Left;
  int Top;
  int Width;
};

// In the order of the fields.
constexpr std::array<BoxPlace, FieldCount> kBoxes{{
    {"Salutation", 960, 240, 615},
    {"First name", 1620, 240, 1215},
    {"Last name", 2880, 240, 1215},
    {"Title", 960, 600, 3135},
    {"Company", 960, 960, 3135},
    {"Address line 1", 960, 1320, 3135},
    {"Address line 2", 960, 1680, 3135},
    {"Address line 3", 960, 2040, 3135},
    {"Address line 4", 960, 2400, 1515},
    {"Postal code", 2520, 2400, 1575},
    {"Country", 960, 2760, 3135},
    {"Phone 1", 960, 3120, 3135},
    {"Phone 2", 960, 3480, 3135},
    {"Fax", 960, 3840, 3135},
    {"E-mail", 960, 4200, 3135},
    {"Notes", 960, 4560, 3135},
}};

struct LabelPlace {
  const char* Caption;
  int Top;
};

// Label1 to Label9.
constexpr std::array<LabelPlace, 9> kLabels{{{"Name", 300},
                                             {"Title", 660},
                                             {"Company", 1020},
                                             {"Address", 1380},
                                             {"Phone1", 3180},
                                             {"Phone2", 3540},
                                             {"Fax", 3900},
                                             {"E-Mail", 4260},
                                             {"Notes", 4680}}};

}  // namespace

RecordBoxes::RecordBoxes(QWidget* parent) : QFrame(parent) {
  setObjectName(QStringLiteral("Frame1"));
  setFrameShape(QFrame::StyledPanel);
  MakeLabels();
  // Made in tab order.
  for (std::size_t i = 0; i < TxtBox.size(); ++i) {
    TxtBox.at(i) = new QLineEdit(this);
    TxtBox.at(i)->setMaxLength(std::numeric_limits<int>::max());
    KeepToOneLine(*TxtBox.at(i));
    PlaceBox(*TxtBox.at(i), i, kBoxHeight);
  }
  notesBox_ = new MultiLineBox(this);
  notesBox_->viewport()->installEventFilter(this);
  PlaceBox(*notesBox_, Field::Notes, kNotesHeight);
}

void RecordBoxes::PlaceBox(QWidget& box, std::size_t index, int height) {
  const BoxPlace& place = kBoxes.at(index);
  box.setObjectName(QStringLiteral("TxtBox(%1)").arg(index));
  box.setAccessibleName(QString::fromLatin1(place.AccessibleName));
  box.installEventFilter(this);
  Place(box, place.Left, place.Top, place.Width, height);
}

void RecordBoxes::MakeLabels() {
  int number = 1;
  for (const LabelPlace& place : kLabels) {
    auto* label = new QLabel(QString::fromLatin1(place.Caption), this);
    label->setObjectName(QStringLiteral("Label%1").arg(number++));
    Place(*label, 120, place.Top - kLabelTop, 810, kBoxHeight);
  }
}

void RecordBoxes::SetValue(std::size_t index, const std::string& value) {
  const QString text = QString::fromStdString(value);
  if (index < TxtBox.size()) {
    TxtBox.at(index)->setText(text);
  } else {
    notesBox_->setPlainText(text);
  }
  values_.at(index) = value;
  texts_.at(index) = Text(index);
}

QString RecordBoxes::Text(std::size_t index) const {
  if (index < TxtBox.size()) return TxtBox.at(index)->text();
  // Unlike toPlainText, this keeps no-break blanks.
  return notesBox_->document()->toRawText().replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

std::string RecordBoxes::Value(std::size_t index) const {
  QString text = Text(index);
  if (text == texts_.at(index)) return values_.at(index);
  if (index >= TxtBox.size()) text.replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
  return text.toStdString();
}

void RecordBoxes::Begin() {
  for (QLineEdit* box : TxtBox) box->setCursorPosition(0);
  notesBox_->moveCursor(QTextCursor::Start);
  lastBox_ = 0;
  TxtBox_GotFocus(0);
  RememberSelection();
}

QWidget& RecordBoxes::LastBox() const {
  if (lastBox_ < TxtBox.size()) return *TxtBox.at(lastBox_);
  return *notesBox_;
}

void RecordBoxes::GoOn() {
  if (lastBox_ >= TxtBox.size()) return;  // it keeps them
  QLineEdit& box = *TxtBox.at(lastBox_);
  const int length = static_cast<int>(box.text().size());
  const int anchor = std::min(anchor_, length);
  const int cursor = std::min(cursor_, length);
  if (anchor == cursor) {
    box.setCursorPosition(cursor);
    box.deselect();
  } else {
    box.setSelection(anchor, cursor - anchor);
  }
}

void RecordBoxes::RememberSelection() {
  if (lastBox_ >= TxtBox.size()) return;
  const QLineEdit& box = *TxtBox.at(lastBox_);
  cursor_ = box.cursorPosition();
  anchor_ = cursor_;
  if (!box.hasSelectedText()) return;
  anchor_ = box.selectionStart() == cursor_ ? box.selectionEnd() : box.selectionStart();
}

bool RecordBoxes::eventFilter(QObject* object, QEvent* event) {
  const bool isNotes = object == notesBox_ || object == notesBox_->viewport();
  std::size_t index = Field::Notes;
  for (std::size_t i = 0; !isNotes && i < TxtBox.size(); ++i) {
    if (object == TxtBox.at(i)) index = i;
  }
  if (event->type() == QEvent::FocusIn) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    // The click itself would take the selection away again: it is made when the button comes up.
    clickGaveFocus_ = reason == Qt::MouseFocusReason;
    // Coming back from another window or a menu the user goes on where he was.
    const bool isBack = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
                        reason == Qt::MenuBarFocusReason;
    if (!clickGaveFocus_ && !isBack) TxtBox_GotFocus(index);
    lastBox_ = index;
  } else if (event->type() == QEvent::FocusOut && index == lastBox_) {
    // A box of one line is about to drop its selection.
    RememberSelection();
  } else if (event->type() == QEvent::MouseButtonRelease && clickGaveFocus_) {
    clickGaveFocus_ = false;
    if (!HasSelection(index)) TxtBox_GotFocus(index);
  }
  return QFrame::eventFilter(object, event);
}

void RecordBoxes::TxtBox_GotFocus(std::size_t index) {
  if (index < TxtBox.size()) {
    TxtBox.at(index)->selectAll();
  } else {
    notesBox_->selectAll();
  }
}

bool RecordBoxes::HasSelection(std::size_t index) const {
  return index < TxtBox.size() ? TxtBox.at(index)->hasSelectedText()
                               : notesBox_->textCursor().hasSelection();
}

}  // namespace quillary
