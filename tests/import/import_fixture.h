#pragma once

#include <QComboBox>
#include <QListWidget>
#include <QRadioButton>
#include <string>
#include <vector>

#include "import/file_to_import_dialog.h"
#include "tests/support/check_invariants.h"
#include "tests/support_qt/main_fixture.h"

namespace quillary::test {

// The import over the real main window; the files to be imported are in a home folder of their own.
class ImportFixture : public MainFixture {
 public:
  ImportFixture() {
    qputenv("HOME", Home.Path().c_str());
    Volumes = {{QStringLiteral("File System"), QStringLiteral("/"), false},
               {QStringLiteral("Home"), QString::fromStdString(Home.Path()), false}};
    Guard.InUseTimer.start();
  }
  ~ImportFixture() override { qputenv("HOME", homeBefore_); }

  void Open(int index = 0) {
    if (!Main.isVisible()) Show();
    Dialog.MnuImport_Click(index);
    ASSERT_TRUE(WaitUntilActive(Dialog));
    EXPECT_FALSE(Main.isEnabled());
  }
  QLineEdit& Box(const char* name) { return Control<QLineEdit>(Dialog, name); }
  QLineEdit& File() { return Box("TxtFileToImport"); }
  std::string TypedFile() { return File().text().toStdString(); }
  void Confirm(const std::string& file) {
    File().setText(QString::fromStdString(file));
    Click(Dialog, "BtnOK");
  }
  QRadioButton& Option(const std::string& name) {
    return Control<QRadioButton>(Dialog, name.c_str());
  }
  Texts Listed(const char* list) {
    auto& widget = Control<QListWidget>(Dialog, list);
    Texts texts;
    for (int i = 0; i < widget.count(); ++i) {
      texts.push_back(widget.item(i)->text().trimmed().toStdString());
    }
    return texts;
  }

  // The second step, while it is shown.
  QWidget* Second() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() == u"RecordsToImportDialog" && window->isVisible()) return window;
    }
    return nullptr;
  }
  // Opens the second step for a file in the home folder.
  QWidget& GoOn(const std::string& file) {
    Confirm(file);
    QWidget* second = Second();
    if (second == nullptr) throw std::runtime_error("no second step");
    EXPECT_TRUE(WaitUntilActive(*second));
    return *second;
  }
  static QComboBox& Meaning(QWidget& second, int field) {
    return Control<QComboBox>(second, ("CboFieldName(" + std::to_string(field) + ")").c_str());
  }
  static std::string Data(QWidget& second, int field) {
    return Control<QLabel>(second, ("LblFieldData(" + std::to_string(field) + ")").c_str())
        .text()
        .toStdString();
  }
  static void Choose(QWidget& second, std::initializer_list<int> meanings) {
    int field = 0;
    for (const int meaning : meanings) Meaning(second, field++).setCurrentIndex(meaning);
  }

  // Nothing of the import is there any more.
  void ExpectEnded() {
    EXPECT_FALSE(Dialog.isVisible() || Wait.isVisible() || ProgressWindow.isVisible());
    EXPECT_FALSE(Second() != nullptr || Dialog.IsLoaded());
    EXPECT_TRUE(Main.isEnabled() && Guard.InUseTimer.isActive());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(Panel(1), "");
  }
  // The first step is there as the user left it.
  void ExpectFirstStep() {
    EXPECT_TRUE(Dialog.isVisible());
    EXPECT_FALSE(Second() != nullptr || Wait.isVisible() || Main.isEnabled());
  }
  // The data files, without the safety copies.
  auto DataFiles() { return Folder.Files(".dat"); }

  TempFolder Home;
  std::vector<Volume> Volumes;
  SharingGuard Guard{Profile, Shared, [] {}};
  MsgBoxSnglTxt MsgBox{Shared, Main};
  PleaseWait Wait{Main};
  FileToImportDialog Dialog{
      {Shared, Profile, Store, Guard, Main, MsgBox, Wait, ProgressWindow, Hooks},
      [this] { return Volumes; }};

 private:
  QByteArray homeBefore_ = qgetenv("HOME");
};

}  // namespace quillary::test
