#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "store/store_data.h"

namespace quillary {

inline constexpr int CopyFlagCount = 8;

// The index of each copy flag in CopyKeys and CopyValues.
enum CopyFlag : std::uint8_t {
  CopyName,
  CopyTitle,
  CopyCompany,
  CopyAddress,
  CopyPhone1,
  CopyPhone2,
  CopyFax,
  CopyEMail,
};

// What the user has chosen (see LoadPreferences); the order of the list is StoreData's ViewMode.
struct Preferences {
  std::uint8_t NameStyle = 0;
  bool UsePrefix = false;
  std::uint8_t PrefixSprt = 0;
  std::string Phone1Prefix;
  std::string Phone2Prefix;
  std::string FaxPrefix;
  std::string EMailPrefix;
  std::array<double, CopyFlagCount> CopyValues{};
  std::uint8_t CommPort = 0;  // 1 to 4
  std::string DialSystem;     // "DT" tone, "DP" pulse
};

// A MsgBoxAnswer: Setup was opened by the dialer, which goes on when Setup is confirmed.
inline constexpr std::int16_t SetupForDialer = 2;

// The state that all windows share. Made once, in main/, and handed down by reference.
struct SharedData : StoreData, Preferences {
  // The preferences file, a bare profile name, and the program's section in it.
  std::string PrefsFile = "varek.ini";
  std::string PrefsSection = "QL32";
  std::string Version = "2.0";  // of the program that last wrote the file
  std::uint8_t CopyCount = CopyFlagCount;
  std::array<std::string, CopyFlagCount> CopyKeys{"CopyName",    "CopyTitle",  "CopyCompany",
                                                  "CopyAddress", "CopyPhone1", "CopyPhone2",
                                                  "CopyFax",     "CopyEMail"};

  bool InUse = false;  // another application holds the data; nothing is to be changed

  std::int16_t CurListIndex = 0;  // the selected entry of LstNames
  std::string CurRecordNo;        // its record number

  // What the last message box was answered: -1 left button, 0 right button, Esc or closed.
  // Callers may keep a status of their own in it until the next message box.
  std::int16_t MsgBoxAnswer = 1;
};

}  // namespace quillary
