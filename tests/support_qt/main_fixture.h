#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "app/commands.h"
#include "app/shared_data.h"
#include "app/sharing_guard.h"
#include "auxiliary/msg_box.h"
#include "auxiliary/percent.h"
#include "auxiliary/progress.h"
#include "mainwindow/main_dialog.h"
#include "platform/file_names.h"
#include "platform/numbers.h"
#include "store/profile.h"
#include "store/records.h"
#include "tests/support/fault_disk.h"
#include "tests/support/temp_folder.h"
#include "tests/support_qt/while_shown.h"

namespace quillary::test {

using Texts = std::vector<std::string>;

// Notes what was started; `On` may do it.
class FakeCommands : public Commands {
 public:
  void ShowNewDialog() override { Start("ShowNewDialog"); }
  void ShowDuplicateDialog() override { Start("ShowDuplicateDialog"); }
  void ShowEditDialog() override { Start("ShowEditDialog"); }
  void ShowDeleteDialog() override { Start("ShowDeleteDialog"); }
  void DeleteWithoutConfirmation() override { Start("DeleteWithoutConfirmation"); }
  void GetDeletedNamesList() override { Start("GetDeletedNamesList"); }
  void MnuImport_Click(int index) override { Start("MnuImport_Click " + std::to_string(index)); }
  void BackUpToDisk() override { Start("BackUpToDisk"); }
  void RestoreFromDisk() override { Start("RestoreFromDisk"); }
  void OpenDialer() override { Start("OpenDialer"); }
  void Dial(const std::string& number) override { Start("Dial " + number); }
  void ShowSetup() override { Start("ShowSetup"); }
  void ShowFilterDialog() override { Start("ShowFilterDialog"); }
  void FilterOff() override { Start("FilterOff"); }
  void ShowAboutDialog() override { Start("ShowAboutDialog"); }
  void ShowTipOfDay() override { Start("ShowTipOfDay"); }
  void ExitApplication() override { Start("ExitApplication"); }

  Texts Started;
  std::function<void(const std::string& command)> On;

 private:
  void Start(const std::string& command) {
    Started.push_back(command);
    if (On) On(command);
  }
};

// The control of that name in a window.
template <class T>
T& Control(QWidget& window, const char* name) {
  T* control = window.findChild<T*>(QString::fromLatin1(name));
  if (control == nullptr) throw std::runtime_error(std::string("no control ") + name);
  return *control;
}

inline void Click(QWidget& window, const char* name,
                  Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                  Qt::MouseButton button = Qt::LeftButton) {
  QTest::mouseClick(&Control<QWidget>(window, name), button, modifiers);
}

// Answers the modal windows that come up as long as this lives: with `BtnCancel` those of the
// titles given, with `BtnOK` the others. Notes the title and text of each.
class MsgBoxAnswerer : public QObject {
 public:
  explicit MsgBoxAnswerer(std::vector<QString> refused = {}) : refused_(std::move(refused)) {
    QObject::connect(&timer_, &QTimer::timeout, this, [this] { Answer(); });
    timer_.start(2);
  }
  // "title|text" of each.
  Texts TitlesAndTexts() const {
    Texts texts;
    for (const auto& [title, text] : Seen) texts.push_back((title + u'|' + text).toStdString());
    return texts;
  }

  std::vector<std::pair<QString, QString>> Seen;
  std::function<void()> Before;  // runs before the press

 private:
  void Answer() {
    QWidget* box = QApplication::activeModalWidget();
    if (box == nullptr || !box->isVisible()) return;
    const QString title = box->windowTitle();
    auto* standard = qobject_cast<QMessageBox*>(box);
    const auto* label = box->findChild<QLabel*>(QStringLiteral("Text1"));
    Seen.emplace_back(title, standard != nullptr ? standard->text()
                             : label != nullptr  ? label->text()
                                                 : QString());
    if (Before) Before();
    if (standard != nullptr) return standard->accept();
    const bool refuses = std::find(refused_.begin(), refused_.end(), title) != refused_.end();
    Click(*box, refuses ? "BtnCancel" : "BtnOK");
  }

  std::vector<QString> refused_;
  QTimer timer_;
};

// The main window over data files of its own, with everything that stands below it.
class MainFixture : public testing::Test {
 public:
  using Values = std::initializer_list<std::pair<Field, std::string>>;

  MainFixture() {
    Shared.DataPath = ProgramPath(Folder.Path()) + "\\";
    Shared.DataFile = Shared.DataPath + "quill.dat";
    Main.Connect(
        Store, Started, Guard, [this]() -> Percent& { return ProgressWindow; },
        [this]() -> MsgBoxSnglTxt& { return SingleText; });
    EXPECT_EQ(Store.WriteNewHeader(), RunTimeError::None);
  }
  ~MainFixture() override {
    if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
  }

  // Stores a record and links it; gives its number.
  std::string Add(Values values) {
    FieldArray& fields = Shared.FieldValues;
    fields = {};
    for (const auto& [field, value] : values) fields.at(field) = value;
    std::string RecNo;
    EXPECT_EQ(Store.NextRecordNumber(RecNo), RunTimeError::None);
    EXPECT_EQ(Store.WriteRecord(RecNo), RunTimeError::None);
    const std::string ShowName =
        BuildShowName(fields[FirstName], fields[LastName], fields[Field::Company]);
    const std::string ShowCompany =
        BuildShowCompany(fields[FirstName], fields[LastName], fields[Field::Company]);
    EXPECT_EQ(Store.InsertRecord(RecNo, ShowName, ShowCompany), RunTimeError::None);
    return RecNo;
  }

  // Shows the main window and lets it become the active one.
  void Show() {
    Main.show();
    Main.activateWindow();
    ASSERT_TRUE(WaitUntilActive(Main));
    Main.SetData();
  }

  void Select(int index) {
    Shared.CurListIndex = static_cast<std::int16_t>(index);
    Main.SetData();
  }
  // Turns the filter on, by last names that hold the text, and selects the first one.
  void FilterLastNames(const std::string& text) {
    Shared.FilterCriteria[1] = text;
    Shared.FilterOn = true;
    Store.BuildFilteredList();
    Store.GetFilteredNamesList();
    Store.SortFilteredList();
    Store.ShowRecords();
    Select(0);
  }

  Texts ListTexts() {
    const QAbstractItemModel* lines = Control<ListBox>(Main, "LstNames").model();
    Texts texts;
    for (int i = 0; i < lines->rowCount(); ++i) {
      texts.push_back(lines->index(i, 0).data().toString().toStdString());
    }
    return texts;
  }
  DetailLabel& Label(int index) {
    return Control<DetailLabel>(Main, ("Label(" + std::to_string(index) + ")").c_str());
  }
  QWidget& Widget(const char* name) { return Control<QWidget>(Main, name); }
  static std::string Clipboard() { return QGuiApplication::clipboard()->text().toStdString(); }
  std::string Panel(int panel) { return Main.Panel(panel).toStdString(); }

  TempFolder Folder;
  FaultDisk Disk;
  FileNames Names{Disk, Folder.Path(), Folder.Path()};
  quillary::Profile Profile{Disk, Names};
  TextComparer Comparer;
  SharedData Shared;
  MainDialog Main{Shared};
  Percent ProgressWindow{Main};
  Progress Hooks{Main, [this] { return &ProgressWindow; }, [] { return nullptr; }, {}};
  Records Store{Shared, Profile, Comparer, Hooks, Main};
  FakeCommands Started;
  SharingGuard Guard{Profile, Shared, [] {}};
  MsgBoxSnglTxt SingleText{Shared, Main};
};

}  // namespace quillary::test
