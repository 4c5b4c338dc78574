// How long an import takes, from the user's last answer to the list on the screen, beside the least
// that the machine needs for the same files. The folder for the data is the one that TMPDIR names;
// it should be on a real disk. Needs no display.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QLineEdit>
#include <QTimer>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "auxiliary/list_box.h"
#include "auxiliary/progress.h"
#include "import/file_to_import_dialog.h"
#include "platform/disk.h"
#include "tests/support/temp_folder.h"
#include "tests/support_qt/fake_hub.h"

namespace quillary {
namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

QWidget& Find(QWidget& window, const QString& name) {
  auto* control = window.findChild<QWidget*>(name);
  if (control == nullptr) std::abort();
  return *control;
}

void Press(QWidget& window, const char* name) {
  dynamic_cast<QPushButton&>(Find(window, QLatin1String(name))).click();
}

class ShownList : public ListHooks {
 public:
  void SetLines(const TextList& texts, const TextList& recordNumbers) override {
    Box.SetLines(texts, recordNumbers);
    Box.repaint();
  }
  void InsertLine(std::size_t, std::string_view, std::string_view) override {}
  void RemoveLine(std::size_t) override {}

  ListBox Box{QStringLiteral("LstNames")};
};

// The import over an empty data set of its own, with a file to be imported.
struct Program {
  explicit Program(int count) {
    std::string lines;
    for (int i = 0; i < count; ++i) {
      const std::string number = std::to_string(i * 7919 % 10007);
      lines += "Mr.,Ann " + number + ",Lee" + number + ",Clerk,Acme " + number + ",Long Street " +
               number + ",Town,12345,+49 30 " + number + ",ann@example.com\n";
    }
    Source.WriteFile("people.csv", lines);
    Shared.DataPath = ProgramPath(Data.Path()) + "\\";
    Shared.DataFile = Shared.DataPath + "quill.dat";
    if (Store.WriteNewHeader() != RunTimeError::None) std::abort();
    List.Box.show();
  }

  // The seconds from "Continue" to the list.
  double Import() {
    FileToImportDialog dialog(
        {Shared, Access, Store, Guard, Hub, MsgBox, Waiting, Percentage, Hooks});
    dialog.MnuImport_Click(0);
    auto& file = dynamic_cast<QLineEdit&>(Find(dialog, QStringLiteral("TxtFileToImport")));
    file.setText(QString::fromStdString(Source.File("people.csv")));
    Press(dialog, "BtnOK");  // goes there
    Clock::time_point start;
    QTimer answers;
    QObject::connect(&answers, &QTimer::timeout, &answers, [&] {
      QWidget* box = QApplication::activeModalWidget();
      if (box == nullptr) return;
      start = Clock::now();
      Press(*box, "BtnOK");
    });
    answers.start(1);
    Press(dialog, "BtnOK");
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() != u"RecordsToImportDialog") continue;
      const std::vector<int> meanings{0, 1, 2, 5, 6, 7, 8, 11, 13, 16};
      for (std::size_t i = 0; i < meanings.size(); ++i) {
        auto& list = Find(*window, QStringLiteral("CboFieldName(%1)").arg(i));
        dynamic_cast<QComboBox&>(list).setCurrentIndex(meanings[i]);
      }
      Press(*window, "BtnOK");
    }
    return SecondsSince(start);
  }

  // The seconds for the same files.
  double WriteDurably() {
    std::vector<std::pair<std::string, std::string>> files;
    for (const auto& entry : std::filesystem::directory_iterator(Data.Path())) {
      if (entry.path().extension() != ".dat") continue;
      files.emplace_back(entry.path(), Data.ReadFile(entry.path().filename()));
    }
    const Clock::time_point start = Clock::now();
    bool isDone = true;
    for (const auto& [path, bytes] : files) {
      int handle = -1;
      const std::string beside = path + ".new";
      isDone = isDone && Machine.Create(beside, 0600, handle) == RunTimeError::None &&
               Machine.Write(handle, bytes) == RunTimeError::None &&
               Machine.Sync(handle) == RunTimeError::None &&
               Machine.Close(handle) == RunTimeError::None &&
               Machine.Rename(beside, path) == RunTimeError::None;
    }
    if (!isDone || Machine.SyncFolder(Data.Path()) != RunTimeError::None) std::abort();
    return SecondsSince(start);
  }

  test::TempFolder Data;
  test::TempFolder Source;
  HostDisk Machine;
  FileNames Names{Machine, Data.Path(), Data.Path()};
  Profile Access{Machine, Names};
  TextComparer Comparer;
  SharedData Shared;
  test::FakeHub Hub;
  ShownList List;
  Percent Percentage{Hub};
  Progress Hooks{Hub, [this] { return &Percentage; }, [] { return nullptr; }, {}};
  Records Store{Shared, Access, Comparer, Hooks, List};
  SharingGuard Guard{Access, Shared, [] {}};
  MsgBoxSnglTxt MsgBox{Shared, Hub};
  PleaseWait Waiting{Hub};
};

void Import(benchmark::State& state) {
  const auto count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    Program program(count);
    state.SetIterationTime(program.Import());
    if (program.Shared.NoOfRecords != count) std::abort();
  }
}
BENCHMARK(Import)->Arg(1)->Arg(500)->Arg(8000)->Iterations(9)->UseManualTime()->Unit(
    benchmark::kMillisecond);

void WriteImportedFilesDurably(benchmark::State& state) {
  Program program(static_cast<int>(state.range(0)));
  program.Import();
  for (auto _ : state) state.SetIterationTime(program.WriteDurably());
}
BENCHMARK(WriteImportedFilesDurably)
    ->Arg(8000)
    ->Iterations(9)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillary

int main(int argc, char* argv[]) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
