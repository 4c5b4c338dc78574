#include "platform/desktop/multi_line_box.h"

#include <QKeyEvent>

#include "platform/desktop/form.h"

namespace quillary {

MultiLineBox::MultiLineBox(QWidget* parent) : QPlainTextEdit(parent) {
  setTabChangesFocus(true);
}

void MultiLineBox::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    QPlainTextEdit::keyPressEvent(event);
    return;
  }
  const auto* form = qobject_cast<const Form*>(window());
  const bool forButton = form != nullptr && form->DefaultButton() != nullptr &&
                         !event->modifiers().testFlag(Qt::ControlModifier);
  if (forButton || isReadOnly()) {
    // A key that is held presses the button once.
    event->setAccepted(event->isAutoRepeat());
  } else {
    insertPlainText(QStringLiteral("\n"));
    ensureCursorVisible();
  }
}

void MultiLineBox::focusInEvent(QFocusEvent* event) {
  QPlainTextEdit::focusInEvent(event);
  Q_EMIT GotFocus();
}

}  // namespace quillary
