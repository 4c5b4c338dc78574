#pragma once

#include <QCheckBox>
#include <QPushButton>
#include <cstdint>

#include "app/hub.h"
#include "app/shared_data.h"
#include "auxiliary/msg_box.h"
#include "auxiliary/plain_label.h"
#include "platform/desktop/form.h"
#include "store/profile.h"

namespace quillary {

// "Tip of The Day": one of eleven tips, and whether to show one at start-up. The check box is
// saved by "Close" alone; if that fails the user is told and the window stays.
class TipOfDay : public Form {
  Q_OBJECT

 public:
  TipOfDay(SharedData& shared, Profile& profile, Hub& hub, MsgBoxSnglTxt& msgBoxSnglTxt);

  // Draws a tip, reads the check box from the preferences, shows the window centred over the main
  // window (`holdOnScreen`: and held on the screen) and disables the main window.
  void ShowTip(bool holdOnScreen);

 protected:
  void Form_Activate() override;
  void Form_Unload() override;
  QWidget* FirstControl() const override { return DefaultButton(); }
  // Esc closes the window like its title bar.
  void reject() override { Unload(); }

 private:
  void Form_Load();
  void BtnNext_Click();
  void BtnOK_Click();
  void DrawTip();

  SharedData& shared_;
  Profile& profile_;
  Hub& hub_;
  MsgBoxSnglTxt& msgBoxSnglTxt_;
  PlainLabel* TxtTipTxt;
  QCheckBox* ChkTips;
  QPushButton* BtnNext;
  QPushButton* BtnOK;
  std::int16_t TipIndex = 0;
};

}  // namespace quillary
