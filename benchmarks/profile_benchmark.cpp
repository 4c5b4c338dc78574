// The profile layer beside what else keeps such files: one key read from, or changed and saved in,
// a file of 100 records. Each opens the file anew for every key, as it must to see what another
// program wrote; the profile layer also as it is used, which sees that without reading the file
// again.

#define SI_CONVERT_ICU  // as Debian builds it
#include <SimpleIni.h>
#include <benchmark/benchmark.h>
#include <glib.h>

#include <QSettings>
#include <QString>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "benchmarks/program.h"

namespace quillary {
namespace {

using benchmarks::Program;

constexpr const char* Section = "Record57";
constexpr const char* Key = "EMail";

// A value of an e-mail address' length, another each time.
std::string Value(int number) {
  return "somebody" + std::to_string(number % 10) + "@example.org";
}

void Need(bool isDone) {
  if (!isDone) std::abort();
}

// The file that all work on.
class RecordFile {
 public:
  RecordFile() { Program::LetFilesSettle(); }

  Program& Owner() { return program_; }
  std::string ProfileName() const { return program_.Data.DataPath + "quill0.dat"; }
  std::string Path() const { return program_.Folder.File("quill0.dat"); }

 private:
  Program program_{{100}};
};

void ReadQuillary(benchmark::State& state) {
  RecordFile file;
  const std::string name = file.ProfileName();
  for (auto _ : state) {
    Need(!file.Owner().Access.ReadEntry(name, Section, Key).empty());
  }
}
BENCHMARK(ReadQuillary);

void LoadAndReadQuillary(benchmark::State& state) {
  RecordFile file;
  const std::string name = file.ProfileName();
  for (auto _ : state) {
    Profile access(file.Owner().Machine, file.Owner().Names);
    Need(!access.ReadEntry(name, Section, Key).empty());
  }
}
BENCHMARK(LoadAndReadQuillary);

void LoadAndReadSimpleIni(benchmark::State& state) {
  RecordFile file;
  const std::string path = file.Path();
  for (auto _ : state) {
    CSimpleIniA ini(true);
    Need(ini.LoadFile(path.c_str()) == SI_OK);
    Need(*ini.GetValue(Section, Key, "") != 0);
  }
}
BENCHMARK(LoadAndReadSimpleIni);

void LoadAndReadGKeyFile(benchmark::State& state) {
  RecordFile file;
  const std::string path = file.Path();
  for (auto _ : state) {
    GKeyFile* keys = g_key_file_new();
    Need(g_key_file_load_from_file(keys, path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr) != 0);
    char* value = g_key_file_get_value(keys, Section, Key, nullptr);
    Need(value != nullptr);
    g_free(value);
    g_key_file_free(keys);
  }
}
BENCHMARK(LoadAndReadGKeyFile);

QString SettingsKey() {
  return QStringLiteral("%1/%2").arg(QLatin1String(Section), QLatin1String(Key));
}

// What was read of the last thirty files is kept as long as their time and size stay; so more files
// than that take turns.
void LoadAndReadQSettings(benchmark::State& state) {
  RecordFile file;
  constexpr int Turns = 40;
  std::vector<QString> paths;
  for (int i = 0; i < Turns; ++i) {
    const std::string copy = file.Path() + std::to_string(i);
    std::filesystem::copy_file(file.Path(), copy);
    paths.push_back(QString::fromStdString(copy));
  }
  const QString key = SettingsKey();
  std::size_t turn = 0;
  for (auto _ : state) {
    const QSettings settings(paths[++turn % paths.size()], QSettings::IniFormat);
    Need(!settings.value(key).toString().isEmpty());
  }
}
BENCHMARK(LoadAndReadQSettings);

void ChangeAndSaveQuillary(benchmark::State& state) {
  RecordFile file;
  const std::string name = file.ProfileName();
  int number = 0;
  for (auto _ : state) {
    Need(file.Owner().Access.WriteEntry(name, Section, Key, Value(++number)) == RunTimeError::None);
  }
}
BENCHMARK(ChangeAndSaveQuillary)->Iterations(200)->UseRealTime();

void ChangeAndSaveSimpleIni(benchmark::State& state) {
  RecordFile file;
  const std::string path = file.Path();
  int number = 0;
  for (auto _ : state) {
    CSimpleIniA ini(true);
    Need(ini.LoadFile(path.c_str()) == SI_OK);
    ini.SetValue(Section, Key, Value(++number).c_str());
    Need(ini.SaveFile(path.c_str(), false) == SI_OK);
  }
}
BENCHMARK(ChangeAndSaveSimpleIni)->Iterations(200)->UseRealTime();

void ChangeAndSaveGKeyFile(benchmark::State& state) {
  RecordFile file;
  const std::string path = file.Path();
  int number = 0;
  for (auto _ : state) {
    GKeyFile* keys = g_key_file_new();
    Need(g_key_file_load_from_file(keys, path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr) != 0);
    g_key_file_set_value(keys, Section, Key, Value(++number).c_str());
    Need(g_key_file_save_to_file(keys, path.c_str(), nullptr) != 0);
    g_key_file_free(keys);
  }
}
BENCHMARK(ChangeAndSaveGKeyFile)->Iterations(200)->UseRealTime();

void ChangeAndSaveQSettings(benchmark::State& state) {
  RecordFile file;
  const QString path = QString::fromStdString(file.Path());
  const QString key = SettingsKey();
  int number = 0;
  for (auto _ : state) {
    QSettings settings(path, QSettings::IniFormat);
    settings.setValue(key, QString::fromStdString(Value(++number)));
    settings.sync();
    Need(settings.status() == QSettings::NoError);
  }
}
BENCHMARK(ChangeAndSaveQSettings)->Iterations(200)->UseRealTime();

}  // namespace
}  // namespace quillary

BENCHMARK_MAIN();
