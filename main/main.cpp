#include "main/main.h"

#include <algorithm>
#include <cstdint>

#include "app/preferences.h"
#include "platform/desktop/placement.h"
#include "platform/desktop/twips.h"
#include "platform/numbers.h"

namespace quillary {
namespace {

constexpr int MainHeight = 6000;  // twips
constexpr int MainWidth = 9300;

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
  main.resize(Px(MainWidth), Px(MainHeight));
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
              QStringLiteral("Nothing was changed. Please start the program again."));
  }
  return false;
}

void LoadNames(Forms& forms) {
  forms.Splash().SetLbl(QStringLiteral("Loading Names..."));
  if (forms.Shared.NoOfRecords <= 0) return;
  forms.Splash().SetPercnt(0);
  forms.Splash().ShowPercnt(true);
  forms.Store.GetNamesList();
  // Where the sorted order cannot be stored the list is shown sorted all the same.
  static_cast<void>(forms.Store.SortNamesList());
  forms.Store.ShowRecords();
  forms.Shared.CurListIndex = 0;
}

// Tells of what came to light while the data were opened, after the main window is shown.
void TellFaults(Forms& forms, RunTimeError countError) {
  if (countError != RunTimeError::None) {
    TellError(forms, QStringLiteral("The data files cannot be written"), countError,
              QStringLiteral("You can look at the names but not change them."));
  } else if (forms.Shared.ListsIncomplete) {
    Tell(forms, MsgIcon::Exclamation,
         QStringLiteral("The data files are damaged: some names may be missing from the list.\r"
                        "Nothing was changed."));
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
  LoadNames(forms);
  if (forms.HasEnded()) return false;
  forms.Main.SetPanel(1, QString());
  forms.Main.show();
  // The window is activated, once events run; what comes next may keep it disabled then.
  forms.Main.SetData();
  forms.CloseWelcome();

  const RunTimeError countError = forms.Guard.IncrementUses();
  if (countError == RunTimeError::None) forms.NoteCounted();
  forms.Guard.CheckInUse();
  if (shared.InUse) forms.InUseWarning().ShowFileInUse();
  forms.SetReadOnly();
  TellFaults(forms, countError);
  if (forms.HasEnded()) return false;

  const std::string tips = profile.ReadEntry(shared.PrefsFile, shared.PrefsSection, "Tips");
  if (Trim(tips) != "0") forms.Tip().ShowTip(false);
  forms.Guard.InUseTimer.start();
  return true;
}

}  // namespace quillary
