#include "main/main.h"

#include "app/preferences.h"
#include "platform/desktop/placement.h"
#include "platform/numbers.h"

namespace quillary {
namespace {

void PlaceMain(Forms& forms) {
  MainDialog& main = forms.Main;
  const QRect screen = ScreenOf(main.frameGeometry());
  main.move(PlaceCentred(screen, main.size()));
}

// While another application holds the data nothing is written. The error, if any, that kept the
// sorted order from being stored; the list is shown in it all the same.
RunTimeError LoadNames(Forms& forms) {
  forms.Splash().SetLbl(QStringLiteral("Loading Names..."));
  // A file that comes back may hold names, whatever the count says.
  const bool mayReturn = !forms.Store.ReadHeaderEntry(Records::MissingRecords).empty();
  if (forms.Shared.NoOfRecords <= 0 && !mayReturn) return RunTimeError::None;
  forms.Splash().SetPercnt(0);
  forms.Splash().ShowPercnt(true);
  forms.Store.GetNamesList();
  const RunTimeError error = forms.Store.SortNamesList(!forms.Guard.HasUsers());
  forms.Store.ShowRecords();
  forms.Shared.CurListIndex = 0;
  return error;
}

}  // namespace

bool Main(Forms& forms, Profile& profile, const std::function<bool()>& isFirstInstance) {
  SharedData& shared = forms.Shared;
  forms.Splash().SetLbl(QStringLiteral("Loading preferences..."));
  forms.Splash().ShowPercnt(false);
  forms.Splash().ShowWelcome();
  PlaceMain(forms);
  if (!isFirstInstance()) return false;
  forms.Word.WinWordRunTimer.start();

  LoadPreferences(profile, shared);
  if (!forms.OpenDataFile()) return false;
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
  if (shared.InUse && countError == RunTimeError::None) forms.WarnInUse();
  forms.SetReadOnly();
  forms.TellFaults(countError, sortError, QStringLiteral("Nothing was changed."));
  if (forms.HasEnded()) return false;

  if (TipsAtStart(profile, shared)) forms.Tip().ShowTip(false);
  forms.Guard.InUseTimer.start();
  return true;
}

}  // namespace quillary
