#pragma once

#include <cstdint>
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
//
// A set of files is whole if it has a header as OpenDataFile would take it, and every record of its
// lists. What is not whole replaces no backup, and takes the data's place only if the user wants
// it; so do copies whose lists were stored without the records of files that were missing.

// The copies beside the data are the safety copy. The one before it is kept, too (NAME.OL2): a new
// one takes its place only where the data differ from it, apart from the counter of users.

// What an error of a backup or a restore has to do with.
enum class CopyFault : std::uint8_t {
  None,
  Data,          // the data files could not be read for a backup, or not be written by a restore
  NotWhole,      // what is to be copied is not whole; the user may agree to it
  WouldReplace,  // it is not whole, and there are copies already
  WouldEmpty,    // data without a record would replace a backup with some; the user may agree to it
  WouldLose,     // data that lack records would replace a backup with them; the user may agree
  Medium,        // the copies could not be written by a backup, or not be read for a restore
  Unfinished,    // with the copies is a backup that was stopped, which cannot be completed
  Decided,       // the data files could not all be replaced yet; the next opening goes on with it
  SafetyCopy,    // the data could not be copied aside
};

// Copies every "*.dat" of DataPath to `Destination`, or to DataPath itself: all of them, durably,
// or (on an error) none. Without a header they are not made (FileNotFound); copies beside the data
// may else lack what the data do. `isAgreed`: the user has agreed to the fault that was returned
// for this folder. `goesOn`: see Profile::CopyFiles.
RunTimeError BackUpFiles(Profile& profile, const StoreData& data, std::string_view Destination,
                         CopyFault* fault = nullptr, const Profile::GoesOn& goesOn = {},
                         bool isAgreed = false);

// What the user wants of a restore.
struct RestoreChoice {
  bool EvenNotWhole = false;
  bool CopiesAside = true;
};

// Copies every "*.old" of `Source` back, in place of the data files, which are copied aside
// (NAME.OLD in DataPath) unless that is not wanted: all of that, durably, or nothing of it. Where
// the data are what is restored anyway, the safety copy stays as it is. With DataPath as the source
// the safety copy becomes the data, the older one the safety copy, and the data the older one;
// where there is no older one, safety copy and data change places.
//
// No result: there are no copies with a header in `Source`, or there is no such folder. NotReady
// with the fault Medium: the copies were there and are there no more. Where DataPath failed while
// the files were given their names already, the next opening (Profile::Recover) goes on with it.
// Nothing in memory changes: the data files are to be opened anew, whatever the result.
//
// A data file takes the name that the data file in use has; where there was none it is NAME.DAT. A
// file whose name differs from one in use by case alone is out of use: it becomes name.spare, or
// name.spare2 ...
std::optional<RunTimeError> RestoreFiles(Profile& profile, const StoreData& data,
                                         std::string_view Source, CopyFault* fault = nullptr,
                                         const Profile::GoesOn& goesOn = {},
                                         const RestoreChoice& choice = {});

// Whether there is a header among the copies beside the data files.
bool HasSafetyCopy(Profile& profile, const StoreData& data);

// Whether a folder is the one of the data files, by whatever name.
bool IsDataFolder(Profile& profile, const StoreData& data, std::string_view Folder);

}  // namespace quillary
