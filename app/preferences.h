#pragma once

#include "app/shared_data.h"
#include "store/profile.h"

namespace quillary {

// Reads the preferences file into `shared` and sets FilterOn and MsgBoxAnswer for a fresh start.
// A missing file or key gives the defaults. Writes "Version" where it is missing or below 2;
// a failure to write it is ignored, and the next start writes it again. Numbers that do not fit
// their type are held within its range.
void LoadPreferences(Profile& profile, SharedData& shared);

}  // namespace quillary
