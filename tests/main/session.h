#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "main/main.h"
#include "platform/file_names.h"
#include "platform/text.h"
#include "store/profile.h"
#include "tests/support/data_set.h"
#include "tests/support/fault_disk.h"
#include "tests/support/temp_folder.h"
#include "tests/support_qt/main_fixture.h"

namespace quillary::test {

class NotedEnding : public Ending {
 public:
  void EndProgram() override { ++Ended; }
  void EndNow() override { ++EndedNow; }
  int Ended = 0;
  int EndedNow = 0;
};

// One run of the program on the files of a folder.
struct Session {
  Session(const TempFolder& folder, Disk& disk)
      : Names(disk, folder.Path(), folder.Path()), Access(disk, Names) {}
  bool Start() { return Main(Windows, Access, IsFirstInstance); }
  QWidget* Shown(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->isVisible() && window->objectName() == QLatin1String(name)) return window;
    }
    return nullptr;
  }

  FileNames Names;
  Profile Access;
  TextComparer Comparer;
  NotedEnding End;
  Forms Windows{Access, Comparer, End, Names.OwnDirectory()};
  std::function<bool()> IsFirstInstance = [] { return true; };
};

// A machine with files of its own.
struct ProgramTest : testing::Test {
  TempFolder Folder;
  FaultDisk Machine;

  // A data set that the preferences name, and no tip.
  void MakeData(const DataSetShape& shape) {
    std::filesystem::create_directory(Folder.File("data"));
    WriteDataSet(Folder.File("data"), shape);
    Folder.WriteFile("varek.ini",
                     "[QL32]\r\nVersion=2.0\r\nTips=0\r\n[Data Files]\r\nQuillDataPath=" +
                         ProgramPath(Folder.File("data")) + "\\\r\n");
  }
  std::string Header(const std::string& key) {
    HostDisk disk;
    Session reader(Folder, disk);
    const std::string path =
        reader.Access.ReadEntry("varek.ini", "Data Files", "QuillDataPath") + "quill.dat";
    return reader.Access.ReadEntry(path, "General Info", key);
  }
};

}  // namespace quillary::test
