#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/profile.h"

namespace quillary {

// The files of a folder that are data files, or copies of them.
struct FoundFiles {
  // The names, each by the upper-cased part of it up to its dot.
  std::map<std::string, std::string> Names;
  std::vector<std::string> OutOfUse;  // names that differ from one of these in case alone
};

// The files with the extension. Of names that differ in case alone, the one that a program path of
// `wanted` case leads to: that name itself, else the first in code order.
RunTimeError FindFiles(Profile& profile, std::string_view folder, std::string_view extension,
                       std::string (*wanted)(std::string_view), FoundFiles& files);

// A set of data files or copies, as far as it must be known before it replaces another. What could
// not be read is missing, and in Error. Folder and files must outlive it.
class FileSet {
 public:
  FileSet(Profile& profile, std::string_view folder, const FoundFiles& files)
      : snapshot_(profile), folder_(folder), files_(files) {}

  // Whether there is a header as OpenDataFile would take it.
  bool HasHeader();
  // Whether there is also every record of the three lists, each followed to its end: as many as the
  // header counts, or more. False, too, when it is not to go on.
  bool IsWhole(const Profile::GoesOn& goesOn);
  // Whether the header leads to, or counts, any live record.
  bool HasRecords();

  // Whether it has every file of the other set with the same content, but for the counter of users.
  // False, too, when it is not to go on.
  bool Holds(FileSet& other, const Profile::GoesOn& goesOn);

  // What kept a file from being read.
  RunTimeError Error() const { return snapshot_.Error(); }

 private:
  std::string PathOf(std::string_view name) const { return std::string(folder_).append(name); }
  const ProfileText* Find(std::string_view base);
  const ProfileText* RecordFile(std::int64_t number);
  std::string HeaderEntry(std::string_view key);
  bool IsChainWhole(std::string_view first, std::string_view next, std::string_view count,
                    const Profile::GoesOn& goesOn);

  ProfileSnapshot snapshot_;
  std::string_view folder_;
  const FoundFiles& files_;
  std::unordered_map<std::int64_t, const ProfileText*> recordFiles_;
};

}  // namespace quillary
