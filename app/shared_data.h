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

// The state that all windows share. Made once, in main/, and handed down by reference.
struct SharedData : StoreData {
  // The preferences file, a bare profile name, and the program's section in it.
  std::string PrefsFile = "varek.ini";
  std::string PrefsSection = "QL32";

  // Preferences (see LoadPreferences).
  std::string Version = "2.0";
  std::uint8_t NameStyle = 0;
  bool UsePrefix = false;
  std::uint8_t PrefixSprt = 0;
  std::string Phone1Prefix;
  std::string Phone2Prefix;
  std::string FaxPrefix;
  std::string EMailPrefix;
  std::uint8_t CopyCount = CopyFlagCount;
  std::array<std::string, CopyFlagCount> CopyKeys{"CopyName",    "CopyTitle",  "CopyCompany",
                                                  "CopyAddress", "CopyPhone1", "CopyPhone2",
                                                  "CopyFax",     "CopyEMail"};
  std::array<double, CopyFlagCount> CopyValues{};

  bool InUse = false;  // another application holds the data; nothing is to be changed

  std::int16_t CurListIndex = 0;  // the selected entry of LstNames
  std::string CurRecordNo;        // its record number

  // What the last message box was answered: -1 left button, 0 right button, Esc or closed.
  // Callers may keep a status of their own in it until the next message box.
  std::int16_t MsgBoxAnswer = 1;
};

}  // namespace quillary
