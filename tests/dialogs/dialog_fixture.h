#pragma once

#include <QLineEdit>
#include <functional>
#include <string>

#include "auxiliary/message_text.h"
#include "dialogs/delete_dialog.h"
#include "dialogs/edit_dialog.h"
#include "dialogs/new_dialog.h"
#include "dialogs/restore_dialog.h"
#include "tests/support/check_invariants.h"
#include "tests/support_qt/main_fixture.h"

namespace quillary::test {

// The dialogs that change the data over the real main window.
class DialogFixture : public MainFixture {
 protected:
  DialogFixture() { Guard.InUseTimer.start(); }

  // Does what opens the dialog; the helpers below are about this one.
  void Open(Form& dialog, const std::function<void()>& open) {
    Dialog = &dialog;
    open();
    ASSERT_TRUE(WaitUntilActive(dialog));
    EXPECT_FALSE(Main.isEnabled());
  }
  void OpenNew() {
    Open(New, [this] { New.ShowNewDialog(); });
  }
  void OpenEdit(int index) {
    Select(index);
    Open(Edit, [this] { Edit.ShowEditDialog(); });
  }
  void OpenDelete(int index) {
    Select(index);
    Open(Delete, [this] { Delete.ShowDeleteDialog(); });
  }
  void OpenRestore() {
    Open(Restore, [this] { Restore.GetDeletedNamesList(); });
  }
  // Records with these last names, and the main window.
  void ShowNames(std::initializer_list<const char*> names) {
    for (const char* name : names) Add({{LastName, name}});
    Show();
  }
  // Deletes an entry of the list at once.
  void DeleteEntry(int index) {
    Select(index);
    Delete.DeleteWithoutConfirmation();
  }
  QWidget& Box(int index) {
    return Control<QWidget>(*Dialog, ("TxtBox(" + std::to_string(index) + ")").c_str());
  }
  QLineEdit& LineBox(int index) { return dynamic_cast<QLineEdit&>(Box(index)); }
  std::string BoxText(int index) { return LineBox(index).text().toStdString(); }
  // Goes to a box, whose text is then selected, and types.
  void Type(int index, const std::string& text) {
    Box(index).setFocus(Qt::TabFocusReason);
    if (text.empty()) {
      QTest::keyClick(&Box(index), Qt::Key_Delete);
    } else {
      QTest::keyClicks(&Box(index), QString::fromStdString(text));
    }
  }
  // With a button or a key, which ends it.
  void Close(const char* button = "BtnOK") {
    Click(*Dialog, button);
    ExpectClosed();
  }
  void Close(Qt::Key key) {
    PressKey(*Dialog, key);
    ExpectClosed();
  }

  std::string Stored(const std::string& RecNo, const char* key) {
    return Store.ReadRecordEntry(RecNo, key);
  }
  // The header's entries on the deleted list.
  std::string DeletedList() {
    return Store.ReadHeaderEntry("DelNoOfRecords") + " from " +
           Store.ReadHeaderEntry("DelFirstRecord");
  }
  auto Files() { return Folder.Files(); }

  // Nothing is going on any more.
  void ExpectClosed() {
    EXPECT_FALSE((Dialog != nullptr && Dialog->isVisible()) || Wait.isVisible());
    EXPECT_TRUE(Main.isEnabled() && Guard.InUseTimer.isActive());
    EXPECT_EQ(Panel(1), "");
    EXPECT_TRUE(CheckFiles(Folder.Path()));
  }
  // The dialog waits for another try.
  void ExpectOpen() {
    EXPECT_TRUE(Dialog->isVisible() && Guard.InUseTimer.isActive());
    EXPECT_FALSE(Wait.isVisible() || Main.isEnabled());
  }
  // Presses a button; gives "title|text" of each message that comes. They fit their box.
  QStringList Press(const char* button = "BtnOK") {
    MsgBoxAnswerer answerer;
    answerer.Before = [] {
      const auto& text = Control<MessageText>(*QApplication::activeModalWidget(), "Text1");
      EXPECT_EQ(text.Shown().toStdString(), text.text().toStdString());
    };
    Click(*Dialog, button);
    QStringList told;
    for (const auto& [title, text] : answerer.Seen) told << title + u'|' + text;
    return told;
  }
  // Presses a button, which is refused with a message of that title and changes nothing.
  void ExpectRefusal(const char* button, const char* title) {
    const auto lines = ListTexts();
    const auto files = Files();
    const QStringList told = Press(button);
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told[0].startsWith(QLatin1String(title) + u'|')) << qPrintable(told[0]);
    ExpectOpen();
    EXPECT_EQ(ListTexts(), lines);
    EXPECT_EQ(Files(), files);
  }

  Form* Dialog = nullptr;
  SharingGuard Guard{Profile, Shared, [this] {
                       New.EnableOK(!Shared.InUse);
                       Edit.EnableOK(!Shared.InUse);
                       Delete.EnableOK(!Shared.InUse);
                       Restore.EnableRestore(!Shared.InUse);
                     }};
  MsgBoxSnglTxt MsgBox{Shared, Main};
  PleaseWait Wait{Main};
  NewDialog New{Shared, Profile, Store, Guard, Main, MsgBox, Wait};
  EditDialog Edit{Shared, Profile, Store, Guard, Main, MsgBox, Wait};
  DeleteDialog Delete{Shared, Store, Guard, Main, MsgBox, Wait};
  RestoreDialog Restore{Shared, Store, Guard, Main, MsgBox, Wait, ProgressWindow};
};

}  // namespace quillary::test
