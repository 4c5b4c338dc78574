#pragma once

#include <QProgressBar>

#include "auxiliary/plain_label.h"
#include "platform/desktop/form.h"

namespace quillary {

// The splash window of the start-up. The user cannot close it.
class Welcome : public Form {
  Q_OBJECT

 public:
  Welcome();

  // Centred on the screen; painted when it returns.
  void ShowWelcome();
  // Sets the status line and paints it at once.
  void SetLbl(const QString& text);
  void ShowPercnt(bool show);
  void SetPercnt(int percent);

 private:
  PlainLabel* Lbl;
  QProgressBar* Percnt;
};

}  // namespace quillary
