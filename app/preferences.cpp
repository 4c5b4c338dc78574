#include "app/preferences.h"

#include <cstddef>

#include "platform/numbers.h"

namespace quillary {

void LoadPreferences(Profile& profile, SharedData& shared) {
  const auto read = [&](std::string_view key) {
    return profile.ReadEntry(shared.PrefsFile, shared.PrefsSection, key);
  };

  shared.Version = read("Version");
  if (Val(shared.Version) < 2) {
    shared.Version = "2.0";
    // Nothing hangs on the entry: without it the next start finds the same version.
    static_cast<void>(
        profile.WriteEntry(shared.PrefsFile, shared.PrefsSection, "Version", shared.Version));
  }

  shared.FilterOn = false;
  shared.MsgBoxAnswer = 1;
  shared.FieldValues.fill({});

  shared.NameStyle = ToByte(read("NameField"));
  shared.ViewMode = ToByte(read("Show"));
  shared.UsePrefix = Val(read("UsePrefix")) != 0;
  shared.PrefixSprt = ToByte(read("PrefixSprt"));
  shared.Phone1Prefix = read("Phone1Prefix");
  shared.Phone2Prefix = read("Phone2Prefix");
  shared.FaxPrefix = read("FaxPrefix");
  shared.EMailPrefix = read("EMailPrefix");

  for (std::size_t i = 0; i < shared.CopyCount; ++i) {
    shared.CopyValues[i] = Val(read(shared.CopyKeys[i]));
  }
}

}  // namespace quillary
