#pragma once

#include <functional>
#include <memory>

#include "app/commands.h"
#include "app/shared_data.h"
#include "app/sharing_guard.h"
#include "auxiliary/about_dialog.h"
#include "auxiliary/msg_box.h"
#include "auxiliary/percent.h"
#include "auxiliary/please_wait.h"
#include "auxiliary/progress.h"
#include "auxiliary/tip_of_day.h"
#include "auxiliary/welcome.h"
#include "dialogs/file_in_use.h"
#include "dialogs/new_dialog.h"
#include "mainwindow/filter_dialog.h"
#include "mainwindow/main_dialog.h"
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
class Forms : public Commands {
 public:
  Forms(Profile& profile, const TextComparer& comparer, Ending& ending);

  SharedData Shared;
  MainDialog Main;
  Progress StoreProgress;
  Records Store;
  SharingGuard Guard;

  MsgBoxSnglTxt& SingleText();
  MsgBoxDblTxt& DoubleText();
  PleaseWait& Waiting();
  Percent& Percentage();
  FileInUse& InUseWarning();
  TipOfDay& Tip();
  // The splash window; CloseWelcome ends its life.
  Welcome& Splash();
  void CloseWelcome() { welcome_.reset(); }

  // Applies InUse to every command that changes data.
  void SetReadOnly();
  bool HasEnded() const { return hasEnded_; }

  // Commands
  void ShowNewDialog() override;
  void ShowDuplicateDialog() override;
  void ShowFilterDialog() override;
  void FilterOff() override;
  void ShowAboutDialog() override;
  void ShowTipOfDay() override;
  void ExitApplication() override;

 private:
  NewDialog& New();
  FilterDialog& Filter();
  AboutDialog& About();

  Profile& profile_;
  Ending& ending_;
  bool hasEnded_ = false;

  std::unique_ptr<MsgBoxSnglTxt> msgBoxSnglTxt_;
  std::unique_ptr<MsgBoxDblTxt> msgBoxDblTxt_;
  std::unique_ptr<PleaseWait> pleaseWait_;
  std::unique_ptr<Percent> percent_;
  std::unique_ptr<Welcome> welcome_;
  std::unique_ptr<FileInUse> fileInUse_;
  std::unique_ptr<TipOfDay> tipOfDay_;
  std::unique_ptr<NewDialog> newDialog_;
  std::unique_ptr<FilterDialog> filterDialog_;
  std::unique_ptr<AboutDialog> aboutDialog_;
};

}  // namespace quillary
