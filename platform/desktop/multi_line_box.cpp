#include "platform/desktop/multi_line_box.h"

#include "platform/desktop/form.h"

namespace quillary {

MultiLineBox::MultiLineBox(QWidget* parent) : QPlainTextEdit(parent) {
  setTabChangesFocus(true);
}

bool MultiLineBox::MakesLine(const QKeyEvent& enter) const {
  const auto* form = qobject_cast<const Form*>(window());
  const bool forButton = form != nullptr && form->DefaultButton() != nullptr &&
                         !enter.modifiers().testFlag(Qt::ControlModifier);
  return !forButton && !isReadOnly();
}

void MultiLineBox::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    QPlainTextEdit::keyPressEvent(event);
  } else if (MakesLine(*event)) {
    insertPlainText(QStringLiteral("\n"));
    ensureCursorVisible();
  } else {
    event->ignore();
  }
}

void MultiLineBox::focusInEvent(QFocusEvent* event) {
  QPlainTextEdit::focusInEvent(event);
  Q_EMIT GotFocus();
}

}  // namespace quillary
