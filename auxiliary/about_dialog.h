#pragma once

#include "app/hub.h"
#include "app/shared_data.h"
#include "auxiliary/plain_label.h"
#include "platform/desktop/form.h"

namespace quillary {

// "About Quillary".
class AboutDialog : public Form {
  Q_OBJECT

 public:
  AboutDialog(SharedData& shared, Hub& hub);

  // Centred over the main window and held on the screen; the main window is disabled until the box
  // is closed.
  void ShowAbout();

 protected:
  void Form_Activate() override;
  void Form_Unload() override;

 private:
  void Form_Load();

  SharedData& shared_;
  Hub& hub_;
  PlainLabel* LblVersion;
};

}  // namespace quillary
