#include "main/main.h"

#include <algorithm>
#include <cstdint>

#include "app/preferences.h"
#include "platform/desktop/placement.h"
#include "platform/numbers.h"

namespace quillary {
namespace {

// The question of OpenDataFile, in a message box.
class MissingDataFile : public OpenDataFileHooks {
 public:
  explicit MissingDataFile(Forms& forms) : forms_(forms) {}

  bool AskToCreate(std::string_view text) override {
    forms_.SingleText().ShowMsg(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())),
                                MsgButtons::BothLeftDefault, QStringLiteral("Yes"),
                                QStringLiteral("No"), MsgIcon::Critical,
                                QStringLiteral("Missing data file"));
    const bool isYes = forms_.Shared.MsgBoxAnswer != 0;
    if (!isYes) forms_.Shared.MsgBoxAnswer = 1;
    return isYes;
  }

 private:
  Forms& forms_;
};

// A fault in the data files that the user should know of; lines separated by carriage returns.
void Tell(Forms& forms, MsgIcon icon, const QString& text) {
  forms.SingleText().ShowMsg(text, MsgButtons::Left, QStringLiteral("OK"), QString(), icon,
                             QStringLiteral("Quillary Data Files"));
}

void TellError(Forms& forms, const QString& what, RunTimeError error, const QString& advice) {
  Tell(forms, MsgIcon::Critical,
       QStringLiteral("%1: %2.\r%3")
           .arg(what, QString::fromStdString(RunTimeErrorText(error)), advice));
}

void PlaceMain(Forms& forms) {
  MainDialog& main = forms.Main;
  const QRect screen = ScreenOf(main.frameGeometry());
  main.move(PlaceCentred(screen, main.size()));
}

bool OpenDataFile(Forms& forms, const Surroundings& surroundings) {
  MissingDataFile question(forms);
  RunTimeError error = RunTimeError::None;
  if (forms.Store.OpenDataFile(forms.Shared.PrefsFile, surroundings.OwnDirectory, question,
                               error)) {
    return true;
  }
  if (error != RunTimeError::None) {
    TellError(forms, QStringLiteral("The data files cannot be opened"), error,
              QStringLiteral("Nothing was changed."));
  }
  return false;
}

// The error, if any, that kept the sorted order from being stored; the list is shown in it all the
// same.
RunTimeError LoadNames(Forms& forms) {
  forms.Splash().SetLbl(QStringLiteral("Loading Names..."));
  if (forms.Shared.NoOfRecords <= 0) return RunTimeError::None;
  forms.Splash().SetPercnt(0);
  forms.Splash().ShowPercnt(true);
  forms.Store.GetNamesList();
  const RunTimeError error = forms.Store.SortNamesList();
  forms.Store.ShowRecords();
  forms.Shared.CurListIndex = 0;
  return error;
}

// Tells of what came to light while the data were opened, after the main window is shown.
void TellFaults(Forms& forms, RunTimeError countError, RunTimeError sortError) {
  if (countError != RunTimeError::None) {
    TellError(forms, QStringLiteral("The data files cannot be written"), countError,
              QStringLiteral("You can look at the names but not change them."));
  } else if (forms.Shared.ListsIncomplete) {
    Tell(forms, MsgIcon::Exclamation,
         QStringLiteral("The data files are damaged or cannot be read: some names may be missing "
                        "from the list.\rNothing was changed."));
  } else if (sortError != RunTimeError::None) {
    TellError(forms, QStringLiteral("The sorted list cannot be stored"), sortError,
              QStringLiteral("It will be stored with your next change."));
  }
}

}  // namespace

bool Main(Forms& forms, Profile& profile, const Surroundings& surroundings) {
  SharedData& shared = forms.Shared;
  forms.Splash().SetLbl(QStringLiteral("Loading preferences..."));
  forms.Splash().ShowPercnt(false);
  forms.Splash().ShowWelcome();
  PlaceMain(forms);
  if (!surroundings.IsFirstInstance()) return false;

  LoadPreferences(profile, shared);
  if (!OpenDataFile(forms, surroundings)) return false;
  const std::string version(Trim(shared.Version));
  forms.Main.setWindowTitle(QStringLiteral("Quillary, Version ") + QString::fromStdString(version));
  const RunTimeError sortError = LoadNames(forms);
  if (forms.HasEnded()) return false;
  forms.Main.SetPanel(1, QString());
  forms.Main.show();
  // The window is activated, once events run; what comes next may keep it disabled then.
  forms.Main.SetData();
  forms.CloseWelcome();

  const RunTimeError countError = forms.Guard.IncrementUses();
  forms.Guard.CheckInUse();
  if (shared.InUse && countError == RunTimeError::None) forms.InUseWarning().ShowFileInUse();
  forms.SetReadOnly();
  TellFaults(forms, countError, sortError);
  if (forms.HasEnded()) return false;

  const std::string tips = profile.ReadEntry(shared.PrefsFile, shared.PrefsSection, "Tips");
  if (Trim(tips) != "0") forms.Tip().ShowTip(false);
  forms.Guard.InUseTimer.start();
  return true;
}

}  // namespace quillary
