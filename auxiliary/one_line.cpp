#include "auxiliary/one_line.h"

namespace quillary {

namespace {

// At least the first `limit` characters of the text, when it has them, at a cost that does not
// depend on its length; whole UTF-8 sequences of at most four bytes.
std::string_view Bytes(std::string_view text, std::size_t limit) {
  if (text.size() <= 4 * limit) return text;
  std::size_t end = 4 * limit;
  while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U &&
         end < 4 * limit + 4) {
    ++end;
  }
  return text.substr(0, end);
}

QString Beginning(std::string_view text, std::size_t limit) {
  const std::string_view bytes = Bytes(text, limit);
  QString beginning = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
  auto end = static_cast<qsizetype>(limit);
  if (bytes.size() == text.size() && beginning.size() <= end) return beginning;
  // The two halves of a character stay together.
  if (end < beginning.size() && end > 0 && beginning.at(end).isLowSurrogate()) --end;
  beginning.truncate(end);
  return beginning + QChar(0x2026);
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
