#pragma once

#include <QCheckBox>

#include "app/hub.h"
#include "app/shared_data.h"
#include "app/sharing_guard.h"
#include "auxiliary/msg_box.h"
#include "platform/desktop/form.h"

namespace quillary {

// "Data File In Use": told at start-up when another application holds the data. The user may say
// that it does not and that an earlier crash left the counter of users too high.
class FileInUse : public Form {
  Q_OBJECT

 public:
  FileInUse(SharedData& shared, SharingGuard& guard, Hub& hub, MsgBoxSnglTxt& msgBoxSnglTxt,
            MsgBoxDblTxt& msgBoxDblTxt);

  // Centred over the main window; returns when it is closed. Where the user chose so, and closed
  // it by OK, the counter is reset. If that fails he is told and the window stays.
  void ShowFileInUse();

 protected:
  // Not the check box, which must not be ticked by a stray key.
  QWidget* FirstControl() const override { return DefaultButton(); }

 private:
  void Form_Load();
  void ChkCrashRecover_Click();
  void BtnOK_Click();

  SharedData& shared_;
  SharingGuard& guard_;
  Hub& hub_;
  MsgBoxSnglTxt& msgBoxSnglTxt_;
  MsgBoxDblTxt& msgBoxDblTxt_;
  QCheckBox* ChkCrashRecover;
};

}  // namespace quillary
