#pragma once

#include <QElapsedTimer>
#include <QString>
#include <cstdint>
#include <optional>
#include <string>

#include "app/commands.h"
#include "app/hub.h"
#include "app/opening.h"
#include "app/shared_data.h"
#include "app/sharing_guard.h"
#include "auxiliary/msg_box.h"
#include "auxiliary/percent.h"
#include "auxiliary/please_wait.h"
#include "backup/back_up_folder.h"
#include "store/backup.h"
#include "store/profile.h"
#include "store/records.h"

namespace quillary {

// The commands "Create BackUp" and "Restore from BackUp": the data files are copied to a folder
// that the user chooses, and back. The texts speak of the disk in drive A:, whose place it takes.
//
// A backup is whole, or what was there before it; of damaged data one is made only where there is
// none, if the user agrees. A restore replaces all data files or none; with
// it the data that were there are copied aside, in their own folder, and the user is asked where
// that cannot be done. Copies made in this way can be restored, too. Events run while files are
// copied; if the program is asked to end then, nothing is copied.
class BackUp {
 public:
  BackUp(SharedData& shared, Profile& profile, Records& records, SharingGuard& guard, Hub& hub,
         Opening& opening, Commands& commands, MsgBoxSnglTxt& msgBoxSnglTxt, PleaseWait& pleaseWait,
         Percent& percent, BackUpFolder& backUpFolder);

  // Both return when the command is done with.
  void BackUpToDisk();
  // Ends with the restored data shown. Where they cannot be opened, ends the program.
  void RestoreFromDisk();

 private:
  // What a restore came to: given up before anything was changed, failed without a change, done,
  // done without copying the data aside.
  enum class Outcome : std::uint8_t { GivenUp, Unchanged, Restored, RestoredOver };

  bool Ask(const QString& text, MsgButtons buttons, const QString& okCaption, MsgIcon icon,
           const QString& title);
  bool AskToRetry(const QString& text, const QString& title);
  void Tell(const QString& text, const QString& title);
  RunTimeError CopyTo(const std::string& folder, CopyFault& fault);
  bool AskForOtherDisk(RunTimeError error, CopyFault fault);
  void ShowWait(const QString& text);
  void EndWait();
  bool TellIfInUse();
  // Lets events run now and then; false when the program is to end. With `isDecided` it learns only
  // later that it is to end.
  bool RunEvents(bool isDecided);
  std::optional<RunTimeError> Restore(const std::string& folder, CopyFault& fault,
                                      RestoreChoice& choice);
  bool AskForOther(const std::optional<RunTimeError>& result, CopyFault fault);
  Outcome RestoreFrom(std::optional<std::string> folder);
  QString AdviceAfter(Outcome outcome);
  void Reload(Outcome outcome);

  SharedData& shared_;
  Profile& profile_;
  Records& records_;
  SharingGuard& guard_;
  Hub& hub_;
  Opening& opening_;
  Commands& commands_;
  MsgBoxSnglTxt& msgBoxSnglTxt_;
  PleaseWait& pleaseWait_;
  Percent& percent_;
  BackUpFolder& backUpFolder_;
  QElapsedTimer sinceEvents_;
};

}  // namespace quillary
