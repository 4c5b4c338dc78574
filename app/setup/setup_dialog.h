#pragma once

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <array>
#include <cstdint>

#include "app/commands.h"
#include "app/hub.h"
#include "app/preferences.h"
#include "app/setup/option_button.h"
#include "app/shared_data.h"
#include "auxiliary/msg_box.h"
#include "platform/desktop/form.h"
#include "store/profile.h"
#include "store/records.h"

namespace quillary {

// "Quillary Setup": the user changes his preferences.
//
// OK stores all of them or none; where that fails the user is told why, and the dialog stays with
// what he chose. Anything else that closes the dialog stores nothing; only CommPort and DialSystem
// keep, in memory, what was clicked. Where MsgBoxAnswer is SetupForDialer, OK leads back to the
// dialer.
//
// A stored number that none of the controls can show is kept until the user chooses another.
class SetupDialog : public Form {
  Q_OBJECT

 public:
  SetupDialog(SharedData& shared, Profile& profile, Records& records, Hub& hub, Commands& commands,
              MsgBoxSnglTxt& msgBoxSnglTxt);

  // Shows the dialog with the stored preferences at the main window's corner and disables the main
  // window until the dialog is closed.
  void ShowSetup();

 protected:
  void Form_Unload() override;

 private:
  // setup_layout.cpp
  QGroupBox* MakeShowFrame();
  QGroupBox* MakeNameStyleFrame();
  QGroupBox* MakeCopyDetailsFrame();
  QGroupBox* MakePrefixFrame();
  QGroupBox* MakeCommPortFrame();
  QGroupBox* MakeDialingSystemFrame();
  void LayOut();

  void Form_Load();
  void ChkUsePrefix_Click();
  void BtnOK_Click();
  void BtnCancel_Click();
  // Everything into the globals and the file.
  RunTimeError Store();
  void TakeChoices();

  SharedData& shared_;
  Profile& profile_;
  Records& records_;
  Hub& hub_;
  Commands& commands_;
  MsgBoxSnglTxt& msgBoxSnglTxt_;

  // As they were when the dialog was opened.
  std::uint8_t viewMode_ = 0;
  std::uint8_t storedNameStyle_ = 0;

  OptionButton* OptShowName = nullptr;
  OptionButton* OptShowCompany = nullptr;
  QComboBox* LstNameStyle = nullptr;
  std::array<QCheckBox*, CopyFlagCount> chkCopy_{};  // in the order of CopyValues
  QCheckBox* ChkUsePrefix = nullptr;
  QComboBox* LstPrefixSeparator = nullptr;
  std::array<QLineEdit*, PrefixKeys.size()> txtPrefix_{};  // in the order of PrefixKeys
  OptionButton* OptToneDial = nullptr;
  OptionButton* OptPulseDial = nullptr;
  QCheckBox* ChkTips = nullptr;
  QPushButton* BtnOK = nullptr;
  QPushButton* BtnCancel = nullptr;

  QButtonGroup show_;
  QButtonGroup commPort_;  // OptCommPort; a button's id is its port
  QButtonGroup dialSystem_;
};

}  // namespace quillary
