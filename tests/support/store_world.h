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
  void Step(double percent) override;
  void End() override;

  std::vector<std::string> Stages;  // "status|splash"
  std::vector<double> Steps;        // of the last stage
  bool IsOpen = false;
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

// All lists in memory and the list box, to be compared.
std::vector<TextList> ListsInMemory(const StoreData& data, const RecordedLines& lines);

// The records over the real profile layer in a folder of their own.
struct StoreWorld {
  StoreWorld();

  // As at a start of the program: reads NoOfRecords and the lists, fills the list box.
  void Open();
  // Stores and links a new record; its number in `RecNo`.
  RunTimeError Add(const std::string& firstName, const std::string& lastName,
                   const std::string& company, std::string& RecNo);
  // The same, expected to succeed; returns the number.
  std::string Add(const std::string& firstName, const std::string& lastName,
                  const std::string& company = "");
  // Turns the filter on and fills the list box.
  void Filter(const std::array<std::string, 5>& criteria);
  RunTimeError Delete(const std::string& recNo) {
    return Store.DeleteRecord(recNo, Lines.Line(recNo));
  }
  // Stores FieldValues in the record and moves it to its new place.
  RunTimeError Edit(const std::string& recNo);
  std::vector<TextList> Memory() const { return ListsInMemory(Data, Lines); }

  TempFolder Folder;
  FaultDisk Machine;
  FileNames Names{Machine, Folder.Path(), Folder.Path()};
  Profile Access{Machine, Names};
  TextComparer Comparer;
  RecordedProgress Progress;
  RecordedLines Lines;
  StoreData Data;
  Records Store{Data, Access, Comparer, Progress, Lines};
};

// Tests over an empty data set.
struct StoreTest : testing::Test {
  StoreTest() { EXPECT_EQ(World.Store.WriteNewHeader(), RunTimeError::None); }

  std::string Header(std::string_view key) { return World.Store.ReadHeaderEntry(key); }
  void SetHeader(std::string_view key, std::string_view value) {
    ASSERT_EQ(World.Store.WriteHeaderEntry(key, value), RunTimeError::None);
  }
  std::string Value(std::string_view recNo, std::string_view key) {
    return World.Store.ReadRecordEntry(recNo, key);
  }
  void Set(std::string_view recNo, std::string_view key, std::string_view value) {
    ASSERT_EQ(World.Store.WriteRecordEntry(recNo, key, value), RunTimeError::None);
  }

  StoreWorld World;
  StoreData& Data = World.Data;
};

}  // namespace quillary::test
