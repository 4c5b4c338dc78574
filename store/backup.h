#pragma once

#include <optional>
#include <string_view>

#include "platform/run_time_error.h"
#include "store/profile.h"
#include "store/store_data.h"

namespace quillary {

// Copies of the data files in another folder, or beside them: of name.dat the file NAME.OLD. Names
// are found without regard to case, and what has the name already is replaced. Other files stay,
// older copies of files that are no more among them. Folders are program paths that end in a
// separator. Not to be called inside a group.

// Copies every "*.dat" of DataPath to `Destination`, or to DataPath itself: all of them, durably,
// or (on an error) none. `isSourceAtFault` tells whether it was the data files that could not be
// read; no header, or one that OpenDataFile would not take, is such a fault (FileNotFound).
RunTimeError BackUpFiles(Profile& profile, const StoreData& data, std::string_view Destination,
                         bool* isSourceAtFault = nullptr);

// Copies every "*.old" of `Source` back, in place of the data files: all of them, durably, or none.
// Nothing: there is no such copy of a header as OpenDataFile would take, or the file of a record in
// its list is missing or empty. NotReady: the copies could not be read. With any other error
// DataPath could not be written. Where that happened while the files were given their names
// already, the next opening (Profile::Recover) goes on with it. Nothing in memory changes: the data
// files are to be opened anew, whatever the result.
std::optional<RunTimeError> RestoreFiles(Profile& profile, const StoreData& data,
                                         std::string_view Source);

// Whether a folder is the one of the data files, by whatever name.
bool IsDataFolder(Profile& profile, const StoreData& data, std::string_view Folder);

}  // namespace quillary
