#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <string>

#include "app/commands.h"
#include "app/opening.h"
#include "app/setup/setup_dialog.h"
#include "app/shared_data.h"
#include "app/sharing_guard.h"
#include "auxiliary/about_dialog.h"
#include "auxiliary/msg_box.h"
#include "auxiliary/percent.h"
#include "auxiliary/please_wait.h"
#include "auxiliary/progress.h"
#include "auxiliary/tip_of_day.h"
#include "auxiliary/welcome.h"
#include "backup/back_up.h"
#include "backup/back_up_folder.h"
#include "dialer/dial_dialog.h"
#include "dialogs/delete_dialog.h"
#include "dialogs/edit_dialog.h"
#include "dialogs/file_in_use.h"
#include "dialogs/new_dialog.h"
#include "dialogs/restore_dialog.h"
#include "import/file_to_import_dialog.h"
#include "mainwindow/filter_dialog.h"
#include "mainwindow/main_dialog.h"
#include "mainwindow/word_link.h"
#include "platform/dde_client.h"
#include "platform/text.h"
#include "store/profile.h"
#include "store/records.h"

namespace quillary {

// How the program ends; given by whoever runs its event loop.
class Ending {
 public:
  virtual ~Ending() = default;
  // Ends the event loop once the current event is done with.
  virtual void EndProgram() = 0;
  // Ends the process at once: the program is asked to end in the middle of long work.
  virtual void EndNow() = 0;
};

// Every window of the program, each made on its first use, and the commands that open them. Its
// members are what the windows share.
class Forms : public Commands, public Opening {
 public:
  // `ownDirectory`: the program's own directory, in which a new data set is made; a program path.
  Forms(Profile& profile, const TextComparer& comparer, Ending& ending, std::string ownDirectory);
  ~Forms() override;
  Forms(const Forms&) = delete;
  Forms& operator=(const Forms&) = delete;

  SharedData Shared;
  MainDialog Main;
  Progress StoreProgress;
  Records Store;
  SharingGuard Guard;
  std::unique_ptr<DdeClient> TxtDDE;
  WordLink Word;

  MsgBoxSnglTxt& SingleText();
  MsgBoxDblTxt& DoubleText();
  PleaseWait& Waiting();
  Percent& Percentage();
  FileInUse& InUseWarning();
  TipOfDay& Tip();
  // The splash window; CloseWelcome ends its life.
  Welcome& Splash();
  void CloseWelcome() { welcome_.reset(); }

  // Commands
  void ShowNewDialog() override;
  void ShowDuplicateDialog() override;
  void ShowEditDialog() override;
  void ShowDeleteDialog() override;
  void DeleteWithoutConfirmation() override;
  void GetDeletedNamesList() override;
  void MnuImport_Click(int index) override;
  void BackUpToDisk() override;
  void RestoreFromDisk() override;
  void OpenDialer() override;
  void Dial(const std::string& number) override;
  void ShowSetup() override;
  void ShowFilterDialog() override;
  void FilterOff() override;
  void ShowAboutDialog() override;
  void ShowTipOfDay() override;
  void ExitApplication() override;

  // Opening
  bool OpenDataFile() override;
  void WarnInUse() override;
  void SetReadOnly() override;
  void TellFaults(RunTimeError countError, RunTimeError sortError, const QString& advice) override;
  bool HasEnded() const override { return hasEnded_; }

 private:
  void FinishChange();
  void TellMissingRecords();
  NewDialog& New();
  EditDialog& Edit();
  DeleteDialog& Delete();
  RestoreDialog& Restore();
  FileToImportDialog& Import();
  BackUp& DiskBackUp();
  SetupDialog& Setup();
  DialDialog& Dialer();
  FilterDialog& Filter();
  AboutDialog& About();

  Profile& profile_;
  Ending& ending_;
  std::string ownDirectory_;
  bool hasEnded_ = false;
  QTimer finishing_;  // of a change that is sure to be kept, with its files still to be written

  std::unique_ptr<MsgBoxSnglTxt> msgBoxSnglTxt_;
  std::unique_ptr<MsgBoxDblTxt> msgBoxDblTxt_;
  std::unique_ptr<PleaseWait> pleaseWait_;
  std::unique_ptr<Percent> percent_;
  std::unique_ptr<Welcome> welcome_;
  std::unique_ptr<FileInUse> fileInUse_;
  std::unique_ptr<TipOfDay> tipOfDay_;
  std::unique_ptr<NewDialog> newDialog_;
  std::unique_ptr<EditDialog> editDialog_;
  std::unique_ptr<DeleteDialog> deleteDialog_;
  std::unique_ptr<RestoreDialog> restoreDialog_;
  std::unique_ptr<FileToImportDialog> fileToImportDialog_;
  std::unique_ptr<BackUpFolder> backUpFolder_;
  std::unique_ptr<BackUp> backUp_;
  std::unique_ptr<SetupDialog> setupDialog_;
  std::unique_ptr<DialDialog> dialDialog_;
  std::unique_ptr<FilterDialog> filterDialog_;
  std::unique_ptr<AboutDialog> aboutDialog_;
};

}  // namespace quillary
