#pragma once

#include <QString>

#include "auxiliary/plain_label.h"

namespace quillary {

// A text of any length in a place of a fixed size. It wraps, in the middle of a word if need be;
// of a text that does not fit, the beginning and the end are painted with "…" between them.
class MessageText : public PlainLabel {
  Q_OBJECT

 public:
  using PlainLabel::PlainLabel;

  // What is painted of the text.
  QString Shown() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillary
