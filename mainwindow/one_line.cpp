#include "mainwindow/one_line.h"

namespace quillary {

namespace {

QString Beginning(std::string_view text, std::size_t limit) {
  if (text.size() <= limit) return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
  // A character is not cut in two: its later bytes go with the first one.
  std::size_t end = limit;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return QString::fromUtf8(text.data(), static_cast<int>(end)) + QChar(0x2026);
}

bool IsControl(QChar c) {
  return c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
         c == QChar::ParagraphSeparator;
}

}  // namespace

QString OneLine(std::string_view text, std::size_t limit) {
  QString line = Beginning(text, limit);
  line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
  for (QChar& c : line) {
    if (IsControl(c)) c = QLatin1Char(' ');
  }
  return line;
}

QString ManyLines(std::string_view text, std::size_t limit) {
  QString lines = Beginning(text, limit);
  lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  for (QChar& c : lines) {
    if (c == QLatin1Char('\r') || c == QChar::LineSeparator || c == QChar::ParagraphSeparator) {
      c = QLatin1Char('\n');
    } else if (IsControl(c) && c != QLatin1Char('\n')) {
      c = QLatin1Char(' ');
    }
  }
  return lines;
}

}  // namespace quillary
