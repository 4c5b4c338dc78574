#include "backup/back_up.h"

#include <QCoreApplication>

namespace quillary {
namespace {

QString BackUpTitle() {
  return QStringLiteral("Back Up");
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
  std::optional<std::string> folder =
      backUpFolder_.Choose(BackUpTitle(), BackUpFolder::Use::BackUp);
  while (folder && !opening_.HasEnded()) {
    CopyFault fault = CopyFault::None;
    const RunTimeError error = CopyTo(*folder, fault);
    if (opening_.HasEnded()) return;
    if (fault == CopyFault::None) {
      backUpFolder_.Remember();
      return;
    }
    // The user does not agree.
    if (fault == CopyFault::NotWhole || fault == CopyFault::WouldEmpty ||
        fault == CopyFault::WouldLose) {
      return;
    }
    if (fault == CopyFault::Data) {
      Tell(QStringLiteral("The data files could not be read: %1.\rThere is no new backup.")
               .arg(QString::fromStdString(RunTimeErrorText(error))),
           BackUpTitle());
      return;
    }
    if (!AskForOtherDisk(error, fault)) return;
    folder = backUpFolder_.ChooseAgain();
  }
}

RunTimeError BackUp::CopyTo(const std::string& folder, CopyFault& fault) {
  const auto copy = [&](bool isAgreed) {
    ShowWait(QStringLiteral("Please wait while backing up the data..."));
    const RunTimeError error = BackUpFiles(
        profile_, shared_, folder, &fault, [this](bool isDecided) { return RunEvents(isDecided); },
        isAgreed);
    EndWait();
    return error;
  };
  const RunTimeError error = copy(false);
  QString question;
  if (fault == CopyFault::NotWhole) {
    question = QStringLiteral(
        "The data files are damaged: some names may be missing.\r"
        "Should I back up what is there?");
  } else if (fault == CopyFault::WouldEmpty) {
    question = QStringLiteral(
        "There are no names to back up, but there is a backup with names.\r"
        "Should I replace it?");
  } else if (fault == CopyFault::WouldLose) {
    question = QStringLiteral(
        "Some names are missing here, but there is a backup with them.\r"
        "Should I replace it?");
  } else {
    return error;
  }
  if (opening_.HasEnded()) return error;
  return Ask(question, MsgButtons::BothRightDefault, QStringLiteral("Continue"),
             MsgIcon::Exclamation, BackUpTitle())
             ? copy(true)
             : error;
}

// Nobody has answered where the program ended meanwhile.
bool BackUp::Ask(const QString& text, MsgButtons buttons, const QString& okCaption, MsgIcon icon,
                 const QString& title) {
  msgBoxSnglTxt_.ShowMsg(text, buttons, okCaption, QStringLiteral("Cancel"), icon, title);
  return shared_.MsgBoxAnswer != 0 && !opening_.HasEnded();
}

bool BackUp::AskToRetry(const QString& text, const QString& title) {
  return Ask(text, MsgButtons::BothLeftDefault, QStringLiteral("OK"), MsgIcon::Exclamation, title);
}

void BackUp::Tell(const QString& text, const QString& title) {
  msgBoxSnglTxt_.ShowMsg(text, MsgButtons::Left, QStringLiteral("OK"), QString(), MsgIcon::Critical,
                         title);
}

// Where a backup could not be written; false: the user gave up.
bool BackUp::AskForOtherDisk(RunTimeError error, CopyFault fault) {
  if (fault == CopyFault::WouldReplace) {
    return AskToRetry(QStringLiteral("The data files are damaged and must not replace a backup.\r"
                                     "Please choose a folder that holds none."),
                      BackUpTitle());
  }
  if (error == RunTimeError::DiskFull) {
    return AskToRetry(QStringLiteral("The disk in drive A: is full.\r"
                                     "Please take another one, or remove files from it."),
                      QStringLiteral("Disk full"));
  }
  return AskToRetry(QStringLiteral("Drive A: is not ready.\r"
                                   "Please insert a formated disk into the drive."),
                    QStringLiteral("Drive not ready"));
}

// The timer writes at times, which must not happen to files that are being replaced.
void BackUp::ShowWait(const QString& text) {
  guard_.InUseTimer.stop();
  hub_.BringToFront();
  pleaseWait_.ShowPleaseWait();
  pleaseWait_.SetLbl1(text);
  sinceEvents_.start();
}

void BackUp::EndWait() {
  // Clicks and keys that came meanwhile are for windows that take none.
  QCoreApplication::processEvents();
  pleaseWait_.HideForm();
  if (opening_.HasEnded()) return;
  hub_.EnableMain(true);
  hub_.BringToFront();
  guard_.InUseTimer.start();
}

bool BackUp::RunEvents(bool isDecided) {
  // Often enough for the eye.
  constexpr int IntervalMs = 16;
  if (!opening_.HasEnded() && sinceEvents_.elapsed() >= IntervalMs) {
    // A signal that ends the program arrives by a socket.
    QCoreApplication::processEvents(isDecided ? QEventLoop::ExcludeSocketNotifiers
                                              : QEventLoop::AllEvents);
    // Counted from here, so that slow events do not take all the time from the work.
    sinceEvents_.start();
  }
  return !opening_.HasEnded();
}

}  // namespace quillary
