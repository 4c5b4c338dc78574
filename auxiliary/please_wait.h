#pragma once

#include "app/hub.h"
#include "auxiliary/plain_label.h"
#include "platform/desktop/form.h"

namespace quillary {

// The window that says what is being done while the user waits. He cannot close it.
class PleaseWait : public Form {
  Q_OBJECT

 public:
  explicit PleaseWait(Hub& hub);

  // Centres the window over the main window (not held on the screen), empties status panel 1 and
  // both lines, shows the window and disables the main window. To end it: HideForm.
  void ShowPleaseWait();
  // Sets a line and paints it at once.
  void SetLbl1(const QString& text);
  void SetLbl2(const QString& text);

 private:
  Hub& hub_;
  PlainLabel* Lbl1;
  PlainLabel* Lbl2;
};

}  // namespace quillary
