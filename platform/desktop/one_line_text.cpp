#include "platform/desktop/one_line_text.h"

#include <QValidator>
#include <algorithm>

namespace quillary {
namespace {

bool IsBreak(QChar c) {
  return c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
         c == QChar::ParagraphSeparator;
}

QString OnOneLine(const QString& text) {
  QString line;
  line.reserve(text.size());
  bool afterBreak = false;
  for (const QChar c : text) {
    if (!IsBreak(c)) {
      if (afterBreak && !line.isEmpty()) line += QLatin1Char(' ');
      line += c;
    }
    afterBreak = IsBreak(c);
  }
  return line;
}

// A box asks its validator about every change, whatever made it.
class OneLineText : public QValidator {
 public:
  using QValidator::QValidator;

  State validate(QString& text, int& cursor) const override {
    if (std::none_of(text.cbegin(), text.cend(), IsBreak)) return Acceptable;
    const QString line = OnOneLine(text);
    // The cursor stays before what it stood before.
    cursor = static_cast<int>(line.size() - OnOneLine(text.mid(cursor)).size());
    text = line;
    return Acceptable;
  }
};

}  // namespace

void KeepToOneLine(QLineEdit& box) {
  box.setValidator(new OneLineText(&box));
}

}  // namespace quillary
