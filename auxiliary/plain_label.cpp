#include "auxiliary/plain_label.h"

namespace quillary {

PlainLabel::PlainLabel(QWidget* parent, const QString& name, const QString& text) : QLabel(parent) {
  setObjectName(name);
  setTextFormat(Qt::PlainText);
  SetPlainText(text);
}

void PlainLabel::SetPlainText(const QString& text) {
  QString lines = text;
  lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  lines.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  setText(lines);
}

}  // namespace quillary
