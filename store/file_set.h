#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "store/listed_records.h"
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
  FileSet(Profile& profile, std::string_view folder, const FoundFiles& files,
          Profile::GoesOn goesOn = {});
  FileSet(const FileSet&) = delete;
  FileSet& operator=(const FileSet&) = delete;
  ~FileSet() = default;

  // Whether there is a file that has a header's or a record file's name, whatever is in it.
  bool HasFiles() const;
  // Whether there is a header as OpenDataFile would take it.
  bool HasHeader();
  // Whether there is also every record of the three lists, each followed to its end: as many as the
  // header counts, or more. False, too, when it is not to go on. To be called once.
  bool IsWhole();
  // Whether the header leads to, or counts, any live record.
  bool HasRecords();

  // Whether the lists were stored without records that were missing, and still are.
  bool LacksRecords() { return !LackingRecords().empty(); }
  // Whether the other set has such a record, and lists that were not stored without it.
  bool LacksRecordsOf(FileSet& other);

  // Whether it has every file of the other set with the same content, but for the counter of users.
  // False, too, when it is not to go on.
  bool Holds(FileSet& other);

  // What kept a file from being read.
  RunTimeError Error() const;

 private:
  std::string PathOf(std::string_view name) const { return std::string(folder_).append(name); }
  bool GoesOn() { return !goesOn_ || goesOn_(false); }
  const ProfileText* Header();
  std::string HeaderEntry(std::string_view key);
  std::string PathOfRecordFile(std::int32_t number);
  std::vector<std::int32_t> AwaitedNumbers();
  std::vector<std::int32_t> LackingRecords();
  bool HasRecord(std::int32_t number);
  struct Chain;
  bool IsChainWhole(const Chain& chain);

  ProfileSnapshot snapshot_;
  std::string_view folder_;
  const FoundFiles& files_;
  Profile::GoesOn goesOn_;
  bool isGivenUp_ = false;
  ListedRecords records_;
};

}  // namespace quillary
