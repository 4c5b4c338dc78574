#include "main/forms.h"

#include <utility>

namespace quillary {
namespace {

// The one instance of a form, made when it is needed first.
template <class FormType, class... Arguments>
FormType& Once(std::unique_ptr<FormType>& form, Arguments&&... arguments) {
  if (!form) form = std::make_unique<FormType>(std::forward<Arguments>(arguments)...);
  return *form;
}

}  // namespace

Forms::Forms(Profile& profile, const TextComparer& comparer, Ending& ending)
    : Main(Shared),
      StoreProgress(
          Main, [this] { return percent_.get(); }, [this] { return welcome_.get(); },
          [this] {
            if (hasEnded_) ending_.EndNow();
          }),
      Store(Shared, profile, comparer, StoreProgress, Main),
      Guard(profile, Shared, [this] { SetReadOnly(); }),
      profile_(profile),
      ending_(ending) {
  Main.Connect(Store, *this);
}

MsgBoxSnglTxt& Forms::SingleText() {
  return Once(msgBoxSnglTxt_, Shared, Main);
}
MsgBoxDblTxt& Forms::DoubleText() {
  return Once(msgBoxDblTxt_, Shared, Main);
}
PleaseWait& Forms::Waiting() {
  return Once(pleaseWait_, Main);
}
Percent& Forms::Percentage() {
  return Once(percent_, Main);
}
Welcome& Forms::Splash() {
  return Once(welcome_);
}
FileInUse& Forms::InUseWarning() {
  return Once(fileInUse_, Shared, Guard, Main, SingleText(), DoubleText());
}
TipOfDay& Forms::Tip() {
  return Once(tipOfDay_, Shared, profile_, Main, SingleText());
}
AboutDialog& Forms::About() {
  return Once(aboutDialog_, Shared, Main);
}
FilterDialog& Forms::Filter() {
  return Once(filterDialog_, Shared, Store, Main, Percentage());
}
NewDialog& Forms::New() {
  return Once(newDialog_, Shared, profile_, Store, Guard, Main, SingleText(), Waiting());
}

void Forms::SetReadOnly() {
  New().EnableOK(!Shared.InUse);
  Main.ShowReadOnly();
}

void Forms::ShowNewDialog() {
  New().ShowNewDialog();
}
void Forms::ShowDuplicateDialog() {
  New().ShowDuplicateDialog();
}
void Forms::ShowFilterDialog() {
  Filter().ShowFilterDialog();
}
void Forms::FilterOff() {
  quillary::FilterOff(Shared, Store, Main);
}
void Forms::ShowAboutDialog() {
  About().ShowAbout();
}
void Forms::ShowTipOfDay() {
  Tip().ShowTip(true);
}

void Forms::ExitApplication() {
  if (hasEnded_) return;
  hasEnded_ = true;
  Guard.InUseTimer.stop();
  // A change that is not finished is none.
  profile_.AbandonGroup();
  // Whoever cannot write at the end of the program has nobody left to tell.
  if (Guard.IsCounted()) static_cast<void>(Guard.DecrementUses());
  ending_.EndProgram();
}

}  // namespace quillary
