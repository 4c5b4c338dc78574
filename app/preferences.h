#pragma once

#include <array>
#include <string>
#include <string_view>

#include "app/shared_data.h"
#include "store/profile.h"

namespace quillary {

// The keys of PrefsSection, besides CopyKeys and those of PrefixKeys.
namespace PrefsKey {
inline constexpr std::string_view Version = "Version";
inline constexpr std::string_view NameField = "NameField";
inline constexpr std::string_view Show = "Show";
inline constexpr std::string_view UsePrefix = "UsePrefix";
inline constexpr std::string_view PrefixSprt = "PrefixSprt";
inline constexpr std::string_view CommPort = "CommPort";
inline constexpr std::string_view DialSystem = "DialSystem";
inline constexpr std::string_view Tips = "Tips";
}  // namespace PrefsKey

// A prefix: its key and where its text is kept. In the order Phone1, Phone2, fax, e-mail.
struct PrefixKey {
  std::string_view Key;
  std::string Preferences::*Text;
};
inline constexpr std::array<PrefixKey, 4> PrefixKeys{{{"Phone1Prefix", &Preferences::Phone1Prefix},
                                                      {"Phone2Prefix", &Preferences::Phone2Prefix},
                                                      {"FaxPrefix", &Preferences::FaxPrefix},
                                                      {"EMailPrefix", &Preferences::EMailPrefix}}};

// Reads the preferences file into `shared`, except CommPort and DialSystem, and sets FilterOn and
// MsgBoxAnswer for a fresh start. A missing file or key gives the defaults. Writes "Version" where
// it is missing or below 2; a failure to write it is ignored, and the next start writes it again.
// Numbers that do not fit their type are held within its range.
void LoadPreferences(Profile& profile, SharedData& shared);

// Writes every preference but the version as one group, which joins the caller's where one is open.
// `tips`: whether the tip of the day is to be shown at start-up.
RunTimeError StorePreferences(Profile& profile, const SharedData& shared, bool tips);

// Whether the tip of the day is to be shown at start-up: it is unless the user turned it off.
bool TipsAtStart(Profile& profile, const SharedData& shared);

}  // namespace quillary
