#include "app/preferences.h"

#include <cstddef>

#include "platform/numbers.h"
#include "platform/text.h"

namespace quillary {

void LoadPreferences(Profile& profile, SharedData& shared) {
  const auto read = [&](std::string_view key) {
    return profile.ReadEntry(shared.PrefsFile, shared.PrefsSection, key);
  };

  // What a program left there that was stopped while it stored them. Should it stay, no harm.
  static_cast<void>(profile.Recover(shared.PrefsFile));

  shared.Version = read(PrefsKey::Version);
  if (Val(shared.Version) < 2) {
    shared.Version = "2.0";
    // Nothing hangs on the entry: without it the next start finds the same version.
    static_cast<void>(profile.WriteEntry(shared.PrefsFile, shared.PrefsSection, PrefsKey::Version,
                                         shared.Version));
  }

  shared.FilterOn = false;
  shared.MsgBoxAnswer = 1;
  shared.FieldValues.fill({});

  shared.NameStyle = ToByte(read(PrefsKey::NameField));
  shared.ViewMode = ToByte(read(PrefsKey::Show));
  shared.UsePrefix = Val(read(PrefsKey::UsePrefix)) != 0;
  shared.PrefixSprt = ToByte(read(PrefsKey::PrefixSprt));
  for (const PrefixKey& prefix : PrefixKeys) shared.*prefix.Text = read(prefix.Key);

  for (std::size_t i = 0; i < shared.CopyCount; ++i) {
    shared.CopyValues[i] = Val(read(shared.CopyKeys[i]));
  }
}

RunTimeError StorePreferences(Profile& profile, const SharedData& shared, bool tips) {
  ProfileUpdate update(profile);
  RunTimeError error = RunTimeError::None;
  const auto write = [&](std::string_view key, std::string_view value) {
    if (error != RunTimeError::None) return;
    error = profile.WriteEntry(shared.PrefsFile, shared.PrefsSection, key, value);
  };

  write(PrefsKey::Show, NumberText(shared.ViewMode));
  write(PrefsKey::NameField, NumberText(shared.NameStyle));
  write(PrefsKey::UsePrefix, shared.UsePrefix ? "1" : "0");
  write(PrefsKey::PrefixSprt, SignedNumberText(shared.PrefixSprt));
  for (const PrefixKey& prefix : PrefixKeys) write(prefix.Key, shared.*prefix.Text);
  for (std::size_t i = 0; i < shared.CopyCount; ++i) {
    write(shared.CopyKeys[i], SignedNumberText(shared.CopyValues[i] != 0 ? 1 : 0));
  }
  write(PrefsKey::CommPort, NumberText(shared.CommPort));
  write(PrefsKey::DialSystem, shared.DialSystem);
  write(PrefsKey::Tips, tips ? "1" : "0");
  return error == RunTimeError::None ? update.Commit() : error;
}

bool TipsAtStart(Profile& profile, const SharedData& shared) {
  const std::string tips = profile.ReadEntry(shared.PrefsFile, shared.PrefsSection, PrefsKey::Tips);
  return Trim(tips) != "0";
}

}  // namespace quillary
