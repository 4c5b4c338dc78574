#include <QGuiApplication>

#include "auxiliary/unread_records.h"
#include "import/records_to_import_dialog.h"
#include "store/backup.h"

namespace quillary {
namespace {

// The hourglass, as long as this lives.
class WaitPointer {
 public:
  WaitPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  ~WaitPointer() { QGuiApplication::restoreOverrideCursor(); }
  WaitPointer(const WaitPointer&) = delete;
  WaitPointer& operator=(const WaitPointer&) = delete;
};

}  // namespace

void RecordsToImportDialog::BtnOK_Click() {
  const bool goesOn =
      Ask(QStringLiteral("Import notice"),
          QStringLiteral("This routine can take a long time in case you use a slow machine, or "
                         "importing a lot of data."),
          QStringLiteral("Continue"), QStringLiteral("Cancel"), MsgIcon::Information);
  if (!goesOn) {
    Unload();
    return;
  }
  for (std::size_t i = 0; i < FieldChoice.size(); ++i) {
    const int index = CboFieldName.at(i)->currentIndex();
    FieldChoice[i] = index < 0 ? NoneOfTheAbove : index;
  }
  std::optional<QString> refusal;
  RunTimeError unread = RunTimeError::None;
  const QPoint place = pos();
  {
    const WaitPointer pointer;
    tools_.Guard.InUseTimer.stop();
    // Hidden first: while a dialog is shown, the main window lets it come before itself.
    HideForm();
    tools_.Main.BringToFront();
    refusal = Import(unread);
    tools_.Main.SetPanel(1, QString());
    tools_.Guard.InUseTimer.start();
  }
  if (refusal) {
    tools_.Percentage.HideForm();
    tools_.Waiting.HideForm();
    const QString title = QStringLiteral("Records Not Imported");
    Tell(title, *refusal, MsgIcon::Critical);
    if (unread != RunTimeError::None) TellUnreadRecords(tools_.MsgBox, unread, title);
    MoveTo(place);
    ShowForm();
    return;
  }
  tools_.Shared.FilterOn = false;
  tools_.Store.ShowRecords();
  tools_.Shared.CurListIndex = 0;
  Unload();
  tools_.Percentage.HideForm();
  tools_.Main.BringToFront();
  tools_.Main.SetData();
}

std::optional<QString> RecordsToImportDialog::Import(RunTimeError& unread) {
  const QString assurance = QStringLiteral("Nothing was changed. You can try again.");
  tools_.Waiting.ShowPleaseWait();
  const QString wait = QStringLiteral("Please wait. Backing up old data");
  tools_.Main.SetPanel(1, wait);
  tools_.Waiting.SetLbl1(wait);
  // The timer may have had no turn since the other application started.
  tools_.Guard.CheckInUse();
  tools_.Main.ShowReadOnly();
  if (tools_.Shared.InUse) {
    return QStringLiteral("Another application is using the data file now.\r") + assurance;
  }
  RunTimeError error = BackUpFiles(tools_.Profile, tools_.Shared, tools_.Shared.DataPath);
  if (error != RunTimeError::None) {
    return QStringLiteral("The safety copy failed: %1.\r")
               .arg(QString::fromStdString(RunTimeErrorText(error))) +
           assurance;
  }
  tools_.Percentage.ShowProgressWindow();
  tools_.Waiting.HideForm();
  error = tools_.Store.ImportRecords(
      LinesToImport.size(), [this](std::size_t i) { return ImportRecrods(i); }, choice_.Replace);
  if (error == RunTimeError::None) return std::nullopt;
  const QString failed = QStringLiteral("The import failed: %1.\r")
                             .arg(QString::fromStdString(RunTimeErrorText(error)));
  if (!tools_.Store.MustReadLists(error)) return failed + assurance;
  static_cast<void>(tools_.Store.ReadListsAgain(&unread));
  tools_.Shared.CurListIndex = 0;
  tools_.Main.SetData();
  tools_.Main.EnableMain(false);
  return failed + QStringLiteral("Nothing was changed. The list has been read again.");
}

FieldArray RecordsToImportDialog::ImportRecrods(std::size_t lineIndex) const {
  return MakeRecord(SplitLine(LinesToImport.at(lineIndex), choice_.Format, FieldChoice.size()),
                    FieldChoice);
}

}  // namespace quillary
