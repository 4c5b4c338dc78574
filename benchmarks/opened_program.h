#pragma once

#include <QCoreApplication>
#include <cstdlib>

#include "main/forms.h"
#include "main/main.h"
#include "platform/disk.h"
#include "platform/file_names.h"
#include "platform/text.h"
#include "store/profile.h"

namespace quillary::benchmarks {

// The program with its windows, over the folder of varek.ini and quilldat. An application must be
// there.
class OpenedProgram : private Ending {
 public:
  explicit OpenedProgram(const char* folder) : names_(disk_, folder, folder) {}

  // Until it ends; what `main` returns.
  int Run() {
    return Main(Windows, profile_, [] { return true; }) ? QCoreApplication::exec() : EXIT_FAILURE;
  }

 private:
  void EndProgram() override { QCoreApplication::exit(); }
  void EndNow() override { std::_Exit(EXIT_SUCCESS); }

  HostDisk disk_;
  FileNames names_;
  Profile profile_{disk_, names_};
  TextComparer comparer_;

 public:
  Forms Windows{profile_, comparer_, *this, names_.OwnDirectory()};
};

}  // namespace quillary::benchmarks
