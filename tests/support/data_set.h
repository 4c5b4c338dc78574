#pragma once

#include <string>

namespace quillary::test {

struct DataSetShape {
  int Live = 0;
  int Deleted = 0;         // spread among the live ones
  bool Scrambled = false;  // both chains of the live records in the order of their numbers
};

// Writes quill.dat and the record files of an invented data set into the folder (a path of the
// host, which exists): names, addresses and numbers in several scripts, about 450 bytes a record,
// always the same for the same shape. The live records are linked in order, unless scrambled.
void WriteDataSet(const std::string& folder, const DataSetShape& shape);

}  // namespace quillary::test
