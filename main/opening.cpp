#include <QStringList>
#include <cstdint>
#include <set>

#include "main/forms.h"
#include "store/records.h"

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

// A few of the record files.
QString FirstFiles(const std::set<std::int32_t>& numbers) {
  constexpr std::size_t Most = 3;
  QStringList names;
  for (const std::int32_t number : numbers) {
    if (names.size() == Most) {
      names.append(QStringLiteral("and more"));
      break;
    }
    names.append(QStringLiteral("quill%1.dat").arg(number));
  }
  return names.join(QStringLiteral(", "));
}

void TellError(Forms& forms, const QString& what, RunTimeError error, const QString& advice) {
  Tell(forms, MsgIcon::Critical,
       QStringLiteral("%1: %2.\r%3")
           .arg(what, QString::fromStdString(RunTimeErrorText(error)), advice));
}

}  // namespace

bool Forms::OpenDataFile() {
  MissingDataFile question(*this);
  RunTimeError error = RunTimeError::None;
  if (Store.OpenDataFile(Shared.PrefsFile, ownDirectory_, question, error)) return true;
  if (error != RunTimeError::None) {
    TellError(*this, QStringLiteral("The data files cannot be opened"), error,
              QStringLiteral("It is tried again at the next start."));
  }
  return false;
}

void Forms::WarnInUse() {
  InUseWarning().ShowFileInUse();
}

void Forms::SetReadOnly() {
  // A form that is not made yet takes it on when it is.
  if (newDialog_) newDialog_->EnableOK(!Shared.InUse);
  if (editDialog_) editDialog_->EnableOK(!Shared.InUse);
  if (deleteDialog_) deleteDialog_->EnableOK(!Shared.InUse);
  if (restoreDialog_) restoreDialog_->EnableRestore(!Shared.InUse);
  Main.ShowReadOnly();
}

// Told once, and again when others are missing: the user may not be able to bring them back.
void Forms::TellMissingRecords() {
  constexpr std::string_view Key = "ToldMissingRecords";
  const std::string missing = Store.ReadHeaderEntry(Records::MissingRecords);
  if (missing == profile_.ReadEntry(Shared.PrefsFile, Shared.PrefsSection, Key)) return;
  // Where it cannot be written it is told again.
  (void)profile_.WriteEntry(Shared.PrefsFile, Shared.PrefsSection, Key, missing);
  std::set<std::int32_t> files;
  for (const std::int32_t number : Store.AwaitedNumbers()) files.insert(number / RecordsPerFile);
  if (files.empty()) return;
  Tell(*this, MsgIcon::Exclamation,
       QStringLiteral("Names are missing from %1.\r"
                      "They come back when the files with them are in the data folder again.")
           .arg(FirstFiles(files)));
}

void Forms::TellFaults(RunTimeError countError, RunTimeError sortError, const QString& advice) {
  const bool isCounted = countError == RunTimeError::None;
  if (!isCounted) {
    TellError(*this, QStringLiteral("The data files cannot be written"), countError,
              QStringLiteral("You can look at the names but not change them."));
  }
  if (HasEnded()) return;
  if (!Shared.ListsIncomplete) TellMissingRecords();
  if (HasEnded()) return;
  if (Shared.ListsIncomplete && !Shared.RecordsReturned) {
    Tell(*this, MsgIcon::Exclamation,
         QStringLiteral("The data files are damaged or cannot be read: some names may be "
                        "missing.\r") +
             advice);
  } else if (sortError != RunTimeError::None && isCounted) {
    TellError(*this, QStringLiteral("The sorted list cannot be stored"), sortError,
              QStringLiteral("It will be stored with your next change."));
  }
}

}  // namespace quillary
