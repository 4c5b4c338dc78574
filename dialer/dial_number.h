#pragma once

#include <QString>
#include <QValidator>
#include <string>

namespace quillary {

// What may be sent to a modem as a number is printable ASCII: a modem that reads seven bits of a
// character would take others for control characters. Digits of all scripts become these digits,
// dashes and blanks of all kinds the plain ones; what cannot be seen is left out, and so is
// everything else.
//
// The letters and signs that steer a call (W, T, a comma, ...) belong to the number. The semicolon
// does not: it ends the number, and what follows it would be commands to the modem.

// The number in a field of a record: the text before a semicolon or a line end.
QString NumberOf(const std::string& field);

// Keeps a text box to what may be sent, whether it is typed or pasted, so that the box shows the
// number exactly as it is sent.
class NumberValidator : public QValidator {
  Q_OBJECT

 public:
  using QValidator::QValidator;
  State validate(QString& text, int& cursor) const override;
};

}  // namespace quillary
