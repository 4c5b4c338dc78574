#include "backup/back_up.h"

namespace quillary {
namespace {

QString RestoreTitle() {
  return QStringLiteral("Restore data from Back Up");
}

QString Unchanged() {
  return QStringLiteral("Nothing was changed.");
}

QString ErrorText(RunTimeError error) {
  return QString::fromStdString(RunTimeErrorText(error));
}

}  // namespace

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
  const Outcome outcome =
      RestoreFrom(backUpFolder_.Choose(RestoreTitle(), BackUpFolder::Use::Restore));
  if (outcome != Outcome::GivenUp) Reload(outcome);
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

std::optional<RunTimeError> BackUp::Restore(const std::string& folder, CopyFault& fault,
                                            RestoreChoice& choice) {
  while (true) {
    ShowWait(QStringLiteral("Please wait while restoring the data..."));
    const std::optional<RunTimeError> result = RestoreFiles(
        profile_, shared_, folder, &fault, [this](bool isDecided) { return RunEvents(isDecided); },
        choice);
    EndWait();
    if (opening_.HasEnded()) return result;
    QString question;
    if (fault == CopyFault::NotWhole) {
      question = QStringLiteral(
          "The data on the disk are damaged: some names may be missing.\r"
          "Should I restore them all the same?");
      choice.EvenNotWhole = true;
    } else if (fault == CopyFault::SafetyCopy) {
      question = QStringLiteral(
                     "The existing data could not be copied aside: %1.\r"
                     "If you continue they will be lost!")
                     .arg(ErrorText(*result));
      choice.CopiesAside = false;
    } else {
      return result;
    }
    const bool goesOn = Ask(question, MsgButtons::BothRightDefault, QStringLiteral("Continue"),
                            MsgIcon::Exclamation, RestoreTitle());
    if (!goesOn || TellIfInUse()) return result;
  }
}

// Where nothing was restored because of the disk; false: the user gave up.
bool BackUp::AskForOther(const std::optional<RunTimeError>& result, CopyFault fault) {
  if (!result) {
    return AskToRetry(QStringLiteral("There is no valid Quillary data on the disk in the drive. "
                                     "(Or drive is not ready)\r"
                                     "Please insert the correct disk."),
                      QStringLiteral("No valid data"));
  }
  if (*result == RunTimeError::NotReady) {
    return AskToRetry(QStringLiteral("Drive A: is not ready.\r"
                                     "Please insert the disk with the data into the drive."),
                      QStringLiteral("Drive not ready"));
  }
  const QString what =
      fault == CopyFault::Unfinished
          ? QStringLiteral(
                "A backup was stopped and cannot be completed now: %1.\r"
                "Please make the disk writable.")
          : QStringLiteral("The disk could not be read: %1.\rPlease insert the correct disk.");
  return AskToRetry(what.arg(ErrorText(*result)), RestoreTitle());
}

BackUp::Outcome BackUp::RestoreFrom(std::optional<std::string> folder) {
  while (folder && !opening_.HasEnded()) {
    if (TellIfInUse()) return Outcome::GivenUp;
    CopyFault fault = CopyFault::None;
    RestoreChoice choice;
    const std::optional<RunTimeError> result = Restore(*folder, fault, choice);
    // The user does not agree.
    const bool isRefused = fault == CopyFault::NotWhole || fault == CopyFault::SafetyCopy;
    if (opening_.HasEnded() || isRefused) return Outcome::GivenUp;
    const Outcome restored = choice.CopiesAside ? Outcome::Restored : Outcome::RestoredOver;
    if (fault == CopyFault::None) {
      backUpFolder_.Remember();
      return restored;
    }
    if (fault == CopyFault::Data || fault == CopyFault::Decided) {
      const bool isDecided = fault == CopyFault::Decided;
      Tell(QStringLiteral("The data could not be restored: %1.\r%2")
               .arg(ErrorText(*result),
                    isDecided ? QStringLiteral("It is tried once more now.") : Unchanged()),
           RestoreTitle());
      return isDecided ? restored : Outcome::Unchanged;
    }
    if (!AskForOther(result, fault)) return Outcome::GivenUp;
    folder = backUpFolder_.ChooseAgain();
  }
  return Outcome::GivenUp;
}

// For whoever finds something else than he expected. A safety copy may be that of an earlier
// restore where this one brought back what was there.
QString BackUp::AdviceAfter(Outcome outcome) {
  if (outcome == Outcome::Unchanged) return Unchanged();
  return outcome == Outcome::Restored && HasSafetyCopy(profile_, shared_)
             ? QStringLiteral("The earlier data can be restored from the data folder.")
             : QStringLiteral("Please restore another backup.");
}

// Also after a restore that failed: what it left undone is completed when the files are opened.
void BackUp::Reload(Outcome outcome) {
  if (opening_.HasEnded()) return;
  guard_.InUseTimer.stop();
  percent_.ShowProgressWindow();
  percent_.SetLblPercnt(QStringLiteral("Loading Names..."));
  shared_.FilterOn = false;
  const bool isOpen = opening_.OpenDataFile();
  if (!isOpen || opening_.HasEnded()) {
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
  if (opening_.HasEnded()) return;

  // The counter came with the copy; where there is none it still counts this program.
  const RunTimeError countError =
      outcome == Outcome::Unchanged ? RunTimeError::None : guard_.TakeOver();
  guard_.CheckInUse();
  if (shared_.InUse && countError == RunTimeError::None) opening_.WarnInUse();
  if (opening_.HasEnded()) return;
  opening_.SetReadOnly();
  hub_.BringToFront();
  hub_.SetData();
  opening_.TellFaults(countError, sortError, AdviceAfter(outcome));
  if (!opening_.HasEnded()) guard_.InUseTimer.start();
}

}  // namespace quillary
