#include "main/forms.h"

#include <chrono>
#include <utility>

#include "platform/desktop/make_dde_client.h"

namespace quillary {
namespace {

// The one instance of a form, made when it is needed first.
template <class FormType, class... Arguments>
FormType& Once(std::unique_ptr<FormType>& form, Arguments&&... arguments) {
  if (!form) form = std::make_unique<FormType>(std::forward<Arguments>(arguments)...);
  return *form;
}

}  // namespace

Forms::Forms(Profile& profile, const TextComparer& comparer, Ending& ending,
             std::string ownDirectory)
    : Main(Shared),
      StoreProgress(
          Main, [this] { return percent_.get(); }, [this] { return welcome_.get(); },
          [this] {
            if (hasEnded_) ending_.EndNow();
          }),
      Store(Shared, profile, comparer, StoreProgress, Main),
      Guard(profile, Shared, [this] { SetReadOnly(); }),
      TxtDDE(MakeDdeClient()),
      Word(Main, *TxtDDE, [this]() -> MsgBoxSnglTxt& { return SingleText(); }),
      profile_(profile),
      ending_(ending),
      ownDirectory_(std::move(ownDirectory)) {
  Main.Connect(
      Store, *this, Guard, [this]() -> Percent& { return Percentage(); },
      [this]() -> MsgBoxSnglTxt& { return SingleText(); });
  // The user sees his change, then its files are written.
  finishing_.setSingleShot(true);
  QObject::connect(&finishing_, &QTimer::timeout, [this] { FinishChange(); });
  profile_.FinishLater([this] { finishing_.start(0); });
}

Forms::~Forms() {
  profile_.FinishLater({});
}

void Forms::FinishChange() {
  // Nothing is lost while it fails, and the next change would tell why.
  constexpr std::chrono::seconds UntilNextAttempt(2);
  if (profile_.Finish() != RunTimeError::None) finishing_.start(UntilNextAttempt);
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
  return Once(filterDialog_, Shared, Store, Main, Percentage(), SingleText());
}
FileToImportDialog& Forms::Import() {
  return Once(fileToImportDialog_, ImportTools{Shared, profile_, Store, Guard, Main, SingleText(),
                                               Waiting(), Percentage(), StoreProgress});
}
BackUp& Forms::DiskBackUp() {
  BackUpFolder& folder = Once(backUpFolder_, Shared, profile_, Main, SingleText());
  return Once(backUp_, Shared, profile_, Store, Guard, Main, *this, *this, SingleText(), Waiting(),
              Percentage(), folder);
}
SetupDialog& Forms::Setup() {
  return Once(setupDialog_, Shared, profile_, Store, Main, *this, SingleText());
}
DialDialog& Forms::Dialer() {
  return Once(dialDialog_, Shared, profile_, Main, *this, SingleText());
}
NewDialog& Forms::New() {
  Once(newDialog_, Shared, profile_, Store, Guard, Main, SingleText(), Waiting());
  newDialog_->EnableOK(!Shared.InUse);
  return *newDialog_;
}
EditDialog& Forms::Edit() {
  Once(editDialog_, Shared, profile_, Store, Guard, Main, SingleText(), Waiting());
  editDialog_->EnableOK(!Shared.InUse);
  return *editDialog_;
}
DeleteDialog& Forms::Delete() {
  Once(deleteDialog_, Shared, Store, Guard, Main, SingleText(), Waiting());
  deleteDialog_->EnableOK(!Shared.InUse);
  return *deleteDialog_;
}
RestoreDialog& Forms::Restore() {
  Once(restoreDialog_, Shared, Store, Guard, Main, SingleText(), Waiting(), Percentage());
  restoreDialog_->EnableRestore(!Shared.InUse);
  return *restoreDialog_;
}

void Forms::ShowNewDialog() {
  New().ShowNewDialog();
}
void Forms::ShowDuplicateDialog() {
  New().ShowDuplicateDialog();
}
void Forms::ShowEditDialog() {
  Edit().ShowEditDialog();
}
void Forms::ShowDeleteDialog() {
  Delete().ShowDeleteDialog();
}
void Forms::DeleteWithoutConfirmation() {
  Delete().DeleteWithoutConfirmation();
}
void Forms::GetDeletedNamesList() {
  Restore().GetDeletedNamesList();
}
void Forms::MnuImport_Click(int index) {
  Import().MnuImport_Click(index);
}
void Forms::BackUpToDisk() {
  DiskBackUp().BackUpToDisk();
}
void Forms::RestoreFromDisk() {
  DiskBackUp().RestoreFromDisk();
}
void Forms::OpenDialer() {
  Dialer().OpenDialer();
}
void Forms::Dial(const std::string& number) {
  Dialer().Dial(number);
}
void Forms::ShowSetup() {
  Setup().ShowSetup();
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
  static_cast<void>(profile_.Finish());
  // Whoever cannot write at the end of the program has nobody left to tell.
  if (Guard.IsCounted()) static_cast<void>(Guard.DecrementUses());
  ending_.EndProgram();
}

}  // namespace quillary
