#include "backup/back_up.h"

#include <utility>

#include "store/backup.h"

namespace quillary {
namespace {

QString BackUpTitle() {
  return QStringLiteral("Back Up");
}

QString RestoreTitle() {
  return QStringLiteral("Restore data from Back Up");
}

QString ErrorText(RunTimeError error) {
  return QString::fromStdString(RunTimeErrorText(error));
}

}  // namespace

BackUp::BackUp(SharedData& shared, Profile& profile, Records& records, SharingGuard& guard,
               Hub& hub, Opening& opening, Commands& commands, MsgBoxSnglTxt& msgBoxSnglTxt,
               PleaseWait& pleaseWait, Percent& percent, BackUpFolder& backUpFolder)
    : shared_(shared),
      profile_(profile),
      records_(records),
      guard_(guard),
      hub_(hub),
      opening_(opening),
      commands_(commands),
      msgBoxSnglTxt_(msgBoxSnglTxt),
      pleaseWait_(pleaseWait),
      percent_(percent),
      backUpFolder_(backUpFolder) {}

void BackUp::BackUpToDisk() {
  if (!Ask(QStringLiteral("\rPlease insert a formated disk into drive A:"),
           MsgButtons::BothLeftDefault, QStringLiteral("OK"), MsgIcon::Information,
           BackUpTitle())) {
    return;
  }
  while (const std::optional<std::string> folder = backUpFolder_.Choose(BackUpTitle())) {
    ShowWait(QStringLiteral("Please wait while backing up the data..."));
    bool isSourceAtFault = false;
    const RunTimeError error = BackUpFiles(profile_, shared_, *folder, &isSourceAtFault);
    EndWait();
    if (error == RunTimeError::None) return;
    if (isSourceAtFault) {
      Tell(QStringLiteral("The data files could not be read: %1.\rThere is no new backup.")
               .arg(ErrorText(error)),
           BackUpTitle());
      return;
    }
    if (!AskToRetry(QStringLiteral("Drive A: is not ready.\r"
                                   "Please insert a formated disk into the drive."),
                    QStringLiteral("Drive not ready"))) {
      return;
    }
  }
}

void BackUp::RestoreFromDisk() {
  if (!Ask(QStringLiteral("You choosed to restore data from old BackUp.\r"
                          "If you continue all existing data will be lost!"),
           MsgButtons::BothRightDefault, QStringLiteral("Continue"), MsgIcon::Exclamation,
           RestoreTitle()) ||
      !Ask(QStringLiteral("Please insert the disk with the data into drive A:"),
           MsgButtons::BothLeftDefault, QStringLiteral("OK"), MsgIcon::Information,
           RestoreTitle())) {
    return;
  }
  std::optional<std::string> folder = backUpFolder_.Choose(RestoreTitle());
  if (!folder || TellIfInUse() || !CopyAside()) return;
  if (RestoreFrom(std::move(*folder))) Reload();
}

bool BackUp::Ask(const QString& text, MsgButtons buttons, const QString& okCaption, MsgIcon icon,
                 const QString& title) {
  msgBoxSnglTxt_.ShowMsg(text, buttons, okCaption, QStringLiteral("Cancel"), icon, title);
  return shared_.MsgBoxAnswer != 0;
}

bool BackUp::AskToRetry(const QString& text, const QString& title) {
  return Ask(text, MsgButtons::BothLeftDefault, QStringLiteral("OK"), MsgIcon::Exclamation, title);
}

void BackUp::Tell(const QString& text, const QString& title) {
  msgBoxSnglTxt_.ShowMsg(text, MsgButtons::Left, QStringLiteral("OK"), QString(), MsgIcon::Critical,
                         title);
}

void BackUp::ShowWait(const QString& text) {
  hub_.BringToFront();
  pleaseWait_.ShowPleaseWait();
  pleaseWait_.SetLbl1(text);
}

void BackUp::EndWait() {
  pleaseWait_.HideForm();
  hub_.EnableMain(true);
  hub_.BringToFront();
}

// The timer may have had no turn since the other application started.
bool BackUp::TellIfInUse() {
  guard_.CheckInUse();
  if (!shared_.InUse) return false;
  opening_.SetReadOnly();
  Tell(QStringLiteral("Another application is using the data file now.\rNothing was changed."),
       RestoreTitle());
  return true;
}

bool BackUp::CopyAside() {
  ShowWait(QStringLiteral("Please wait. Backing up old data"));
  const RunTimeError error = BackUpFiles(profile_, shared_, shared_.DataPath);
  EndWait();
  return error == RunTimeError::None ||
         Ask(QStringLiteral("The existing data could not be copied aside: %1.\r"
                            "If you continue they will be lost!")
                 .arg(ErrorText(error)),
             MsgButtons::BothRightDefault, QStringLiteral("Continue"), MsgIcon::Exclamation,
             RestoreTitle());
}

bool BackUp::RestoreFrom(std::string folder) {
  while (true) {
    ShowWait(QStringLiteral("Please wait while restoring the data..."));
    const std::optional<RunTimeError> result = RestoreFiles(profile_, shared_, folder);
    EndWait();
    bool isOK = false;
    if (!result) {
      isOK = AskToRetry(QStringLiteral("There is no valid Quillary data on the disk in the drive. "
                                       "(Or drive is not ready)\r"
                                       "Please insert the correct disk."),
                        QStringLiteral("No valid data"));
    } else if (*result == RunTimeError::NotReady) {
      isOK = AskToRetry(QStringLiteral("Drive A: is not ready.\r"
                                       "Please insert the disk with the data into the drive."),
                        QStringLiteral("Drive not ready"));
    } else {
      if (*result != RunTimeError::None) {
        Tell(QStringLiteral("The data could not be restored: %1.").arg(ErrorText(*result)),
             RestoreTitle());
      }
      return true;
    }
    if (!isOK) return false;
    std::optional<std::string> other = backUpFolder_.Choose(RestoreTitle());
    if (!other || TellIfInUse()) return false;
    folder = std::move(*other);
  }
}

// Also after a restore that failed: what it left undone is completed when the files are opened.
void BackUp::Reload() {
  guard_.InUseTimer.stop();
  percent_.ShowProgressWindow();
  percent_.SetLblPercnt(QStringLiteral("Loading Names..."));
  shared_.FilterOn = false;
  if (!opening_.OpenDataFile()) {
    percent_.HideForm();
    commands_.ExitApplication();
    return;
  }
  records_.GetNamesList();
  const RunTimeError sortError =
      shared_.NoOfRecords > 0 ? records_.SortNamesList() : RunTimeError::None;
  records_.ShowRecords();
  shared_.CurListIndex = 0;
  percent_.HideForm();

  // The counter came with the copy.
  const RunTimeError countError = guard_.ResetUses();
  guard_.CheckInUse();
  if (shared_.InUse) opening_.WarnInUse();
  opening_.SetReadOnly();
  hub_.BringToFront();
  hub_.SetData();
  opening_.TellFaults(countError, sortError);
  guard_.InUseTimer.start();
}

}  // namespace quillary
