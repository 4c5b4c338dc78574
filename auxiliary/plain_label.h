#pragma once

#include <QLabel>
#include <QString>

namespace quillary {

// A label that shows its text as it is: no markup, no access keys, and lines separated by a
// carriage return, a line feed or both.
class PlainLabel : public QLabel {
  Q_OBJECT

 public:
  // `name` becomes the objectName.
  PlainLabel(QWidget* parent, const QString& name, const QString& text = {});

  void SetPlainText(const QString& text);
};

}  // namespace quillary
