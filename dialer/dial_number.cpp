#include "dialer/dial_number.h"

namespace quillary {
namespace {

// Empty for what may not be sent.
QString AsSent(QChar c) {
  constexpr ushort firstPrintable = 0x20;
  constexpr ushort lastPrintable = 0x7E;
  if (c == QLatin1Char(';')) return {};
  if (c.unicode() >= firstPrintable && c.unicode() <= lastPrintable) return c;
  if (c.isDigit()) return QString::number(c.digitValue());
  if (c.category() == QChar::Punctuation_Dash) return QStringLiteral("-");
  if (c.isSpace()) return QStringLiteral(" ");
  return {};
}

QString AsSent(QStringView text) {
  QString sent;
  for (const QChar c : text) sent += AsSent(c);
  return sent;
}

}  // namespace

QString NumberOf(const std::string& field) {
  return AsSent(QString::fromStdString(field.substr(0, field.find_first_of(";\r\n"))));
}

QValidator::State NumberValidator::validate(QString& text, int& cursor) const {
  const QString before = AsSent(QStringView(text).left(cursor));
  text = AsSent(text);
  cursor = static_cast<int>(before.size());
  return Acceptable;
}

}  // namespace quillary
