#pragma once

#include <QKeyEvent>
#include <QPlainTextEdit>

namespace quillary {

// A text box of several lines. In a form with a default button Enter is that button's, and
// Ctrl+Enter begins a new line. Tab moves to the next control.
class MultiLineBox : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit MultiLineBox(QWidget* parent = nullptr);

  // Whether that Enter begins a new line.
  bool MakesLine(const QKeyEvent& enter) const;

 Q_SIGNALS:
  void GotFocus();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
};

}  // namespace quillary
