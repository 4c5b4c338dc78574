#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_names.h"
#include "platform/text.h"
#include "store/records.h"
#include "tests/support/fault_disk.h"
#include "tests/support/temp_folder.h"

namespace quillary::test {

using Texts = std::vector<std::string>;

// Remembers the stages of long work.
struct RecordedProgress : ProgressHooks {
  void Begin(std::string_view status, std::string_view splash) override;
  void Step(double percent) override { Steps.push_back(percent); }
  void End() override { Stages.back() += '|'; }

  Texts Stages;               // "status|splash", and a second bar once it is over
  std::vector<double> Steps;  // of the last stage
};

// A list box without a window.
struct RecordedLines : ListHooks {
  void SetLines(const TextList& texts, const TextList& recordNumbers) override;
  void InsertLine(std::size_t index, std::string_view text, std::string_view recordNumber) override;
  void RemoveLine(std::size_t index) override;

  // The line that shows the record.
  std::size_t Line(const std::string& recNo) const;

  std::vector<std::string> Texts;
  std::vector<std::string> RecNos;
};

FieldArray Person(const std::string& firstName, const std::string& lastName,
                  const std::string& company = "", const std::string& notes = "");

// The records over the real profile layer, and what the commands of the windows do with them.
struct StoreProgram {
  StoreProgram(Disk& disk, const std::string& ownFolder, const std::string& prefsFolder,
               StoreData& data);

  // Stores and links a new record; its number in `recNo`.
  RunTimeError Add(const FieldArray& fields, std::string* recNo = nullptr);
  // The same, expected to succeed; returns the number.
  std::string Add(const std::string& firstName, const std::string& lastName,
                  const std::string& company = "");
  // Stores the fields in the record and, if its display strings may be others now, moves it to its
  // new place.
  RunTimeError Edit(const std::string& recNo, const FieldArray& fields, bool moves = true);
  RunTimeError Delete(const std::string& recNo) {
    return Store.DeleteRecord(recNo, Lines.Line(recNo));
  }
  RunTimeError Import(const std::vector<FieldArray>& people, bool replace = false);
  // Turns the filter on and fills the list box.
  void Filter(const std::array<std::string, 5>& criteria);

  // An entry of the header, or of a record.
  std::string Header(std::string_view key) { return Store.ReadHeaderEntry(key); }
  void SetHeader(std::string_view key, std::string_view value);
  std::string Value(std::string_view recNo, std::string_view key) {
    return Store.ReadRecordEntry(recNo, key);
  }
  void Set(std::string_view recNo, std::string_view key, std::string_view value);

  const StoreData& Lists() const { return lists_; }
  // All lists in memory and the list box, to be compared.
  std::vector<TextList> Memory() const;

  FileNames Names;
  Profile Access;
  TextComparer Comparer;
  RecordedProgress Progress;
  RecordedLines Lines;
  Records Store;

 private:
  StoreData& lists_;
};

struct StoreFolder {
  TempFolder Folder;
  FaultDisk Machine;
  StoreData Data;
};

// A program over a folder of its own.
struct StoreWorld : StoreFolder, StoreProgram {
  StoreWorld();
  // Over the folder of another one.
  explicit StoreWorld(const StoreData& other);

  // As at a start of the program: reads NoOfRecords and the lists, fills the list box.
  void Open();
};

// Tests over an empty data set.
struct StoreTest : testing::Test, StoreWorld {
  StoreTest() { EXPECT_EQ(Store.WriteNewHeader(), RunTimeError::None); }
};

}  // namespace quillary::test
