#pragma once

#include <QProgressBar>

#include "app/hub.h"
#include "auxiliary/plain_label.h"
#include "platform/desktop/form.h"

namespace quillary {

// The progress window: a text and a bar. The user cannot close it.
class Percent : public Form {
  Q_OBJECT

 public:
  explicit Percent(Hub& hub);

  // Centres the window over the main window, clears status panels 1 and 2, the text and the bar,
  // shows the main window, disables it and shows this window in front. To end it: HideForm.
  void ShowProgressWindow();
  // Both paint at once.
  void SetLblPercnt(const QString& text);
  void SetPercnt(int percent);

 private:
  Hub& hub_;
  PlainLabel* LblPercnt;
  QProgressBar* Percnt;
};

}  // namespace quillary
