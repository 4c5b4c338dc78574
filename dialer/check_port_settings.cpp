#include <cmath>
#include <limits>

#include "app/preferences.h"
#include "dialer/dial_dialog.h"
#include "platform/numbers.h"
#include "platform/text.h"

namespace quillary {
namespace {

constexpr int kLastPort = 4;

// The MsgBoxAnswer of a user who does not want Setup.
constexpr std::int16_t kDeclined = 1;

struct FaultText {
  const char* Title;
  const char* Text;
};

FaultText TextOf(PortCheck fault) {
  switch (fault) {
    case PortCheck::WrongDialingSystem:
      return {"Wrong Dialing System",
              "The Dialing System is incorrect.\r"
              "Click OK to run Setup, and set the Dialing System, and the COM port."};
    case PortCheck::WrongPort:
      return {"Wrong COM Port",
              "The selected COM Port is unavailable.\r"
              "Click OK to run Setup, and set the COM port, and the Dialing System."};
    default:
      return {"Can't open COM port",
              "Can't open the selected COM port.\r"
              "Click OK to run Setup, and set the COM port, and the Dialing System."};
  }
}

}  // namespace

PortCheck DialDialog::CheckPortSettings() {
  const auto read = [this](std::string_view key) {
    return profile_.ReadEntry(shared_.PrefsFile, shared_.PrefsSection, key);
  };
  // A number that is no byte leaves the port as it was.
  const double port = std::nearbyint(Val(read(PrefsKey::CommPort)));
  if (port >= 0 && port <= std::numeric_limits<std::uint8_t>::max()) {
    shared_.CommPort = static_cast<std::uint8_t>(port);
  }
  shared_.DialSystem = UpperCase(Trim(read(PrefsKey::DialSystem)));
  if (shared_.DialSystem != "DT" && shared_.DialSystem != "DP") {
    return PortCheck::WrongDialingSystem;
  }
  if (shared_.CommPort < 1 || shared_.CommPort > kLastPort) return PortCheck::WrongPort;

  Comm.SetDevice(PortDevice());
  const bool isOpen = Comm.Open();
  Comm.Close();
  return isOpen ? PortCheck::Valid : PortCheck::CannotOpen;
}

QString DialDialog::PortDevice() {
  const std::string key = "COM" + NumberText(shared_.CommPort);
  const std::string device = profile_.ReadEntry(shared_.PrefsFile, "Ports", key);
  return device.empty() ? HostPort(shared_.CommPort) : QString::fromStdString(device);
}

void DialDialog::OfferSetup(PortCheck fault) {
  const FaultText text = TextOf(fault);
  msgBoxSnglTxt_.ShowMsg(QString::fromLatin1(text.Text), MsgButtons::BothLeftDefault,
                         QStringLiteral("OK"), QStringLiteral("Cancel"), MsgIcon::Exclamation,
                         QString::fromLatin1(text.Title));
  if (shared_.MsgBoxAnswer == 0) {
    shared_.MsgBoxAnswer = kDeclined;
    return;
  }
  shared_.MsgBoxAnswer = SetupForDialer;
  commands_.ShowSetup();
}

}  // namespace quillary
