#pragma once

#include <QByteArray>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <QTimer>
#include <cstdint>
#include <string>

#include "app/commands.h"
#include "app/hub.h"
#include "app/shared_data.h"
#include "auxiliary/msg_box.h"
#include "auxiliary/plain_label.h"
#include "dialer/dial_list.h"
#include "platform/desktop/form.h"
#include "platform/desktop/serial_port.h"
#include "store/profile.h"

namespace quillary {

// What CheckPortSettings finds.
enum class PortCheck : std::uint8_t {
  Valid = 0,
  WrongDialingSystem = 1,
  WrongPort = 2,
  CannotOpen = 4,
};

// "Dial a Number": dials through a modem on a serial port, so that the user can take the call on
// the telephone that shares the line.
//
// The dialog waits for the modem without waiting itself: events run as ever. A dial attempt ends by
// what the modem answers, by Cancel, by DialTimer, or with the dialog; whichever it is, the modem
// is told to hang up and the port is free again.
class DialDialog : public Form {
  Q_OBJECT

 public:
  DialDialog(SharedData& shared, Profile& profile, Hub& hub, Commands& commands,
             MsgBoxSnglTxt& msgBoxSnglTxt);
  ~DialDialog() override;

  // Reads CommPort and DialSystem from the preferences and opens the port for a moment. The port is
  // the device that the entry "COM" & CommPort of section "Ports" of the preferences file names;
  // without such an entry it is the host's serial port of that number.
  PortCheck CheckPortSettings();

  // Shows the dialog without a number at the main window's corner and disables the main window
  // until the dialog is closed. Where the settings are wrong the user is told and offered Setup;
  // then MsgBoxAnswer is 2 when he accepted and 1 when he did not.
  void OpenDialer();
  // The same with a number, which is dialled at once.
  void Dial(const std::string& number);

  // From the dial command to the prompt to pick up the phone: 10000 ms.
  QTimer DialTimer;

 protected:
  void Form_Activate() override;
  void Form_Unload() override;

 private:
  void LayOut();

  void Open(const QString& number);
  void OfferSetup(PortCheck fault);
  // The device of port CommPort; empty for none.
  QString PortDevice();

  void FillDialList();
  void LstDialList_Click();
  void TxtDialNumber_Change();
  void BtnDial_Click();
  void BtnCancel_Click();
  void DialTimer_Timer();
  void Comm_Received();

  // What is to be done between two attempts: a number is to be given.
  void AskForNumber();
  void TellReply(const QString& status, const QString& text, MsgIcon icon, const QString& title);
  // Ends the attempt: hangs up and releases the port.
  void StopDialing();
  // The modem lets go of the line, whether the port is open or not.
  void ReleasePort();

  SharedData& shared_;
  Profile& profile_;
  Hub& hub_;
  Commands& commands_;
  MsgBoxSnglTxt& msgBoxSnglTxt_;

  SerialPort Comm;
  QString DialNumber;
  QByteArray DialCommand;
  bool Dialing = false;
  bool isWaiting_ = false;  // for the modem; while Dialing, until something else is at hand
  bool isOpening_ = false;  // shown, but not active yet
  QByteArray reply_;        // of the modem, in upper case; as much of it as may yet matter

  QGroupBox* Frame1;
  PlainLabel* Label1;
  QLineEdit* TxtDialNumber;
  DialList* LstDialList;
  QPushButton* BtnDial;
  QPushButton* BtnCancel;
};

}  // namespace quillary
