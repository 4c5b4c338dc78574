#include <QFile>
#include <algorithm>

#include "import/records_to_import_dialog.h"
#include "platform/numbers.h"
#include "platform/text_file.h"

namespace quillary {

RunTimeError RecordsToImportDialog::CheckDelimiter() {
  tools_.Shared.MsgBoxAnswer = 1;
  TextFile file;
  RunTimeError error = file.Open(QFile::encodeName(choice_.ImportFile).toStdString());
  if (error != RunTimeError::None) return error;
  std::string line;
  if (!file.Next(line)) error = file.Error();
  if (error != RunTimeError::None) return error;
  const std::size_t count = CountFields(line, choice_.Format);
  if (count < 2) {
    Tell(QStringLiteral("Wrong Delimiter"),
         QStringLiteral("The delimiter you specified does not exist.\rPlease choose another one."),
         MsgIcon::Information);
  } else {
    FieldCount = static_cast<std::int16_t>(count);
  }
  return error;
}

RunTimeError RecordsToImportDialog::ImportLines() {
  tools_.Shared.MsgBoxAnswer = 1;
  const QString text = QStringLiteral("Please wait while counting number of records...");
  tools_.Main.SetPanel(1, text);
  tools_.Waiting.SetLbl1(text);
  TextFile file;
  const RunTimeError error = file.Open(QFile::encodeName(choice_.ImportFile).toStdString());
  if (error != RunTimeError::None) return error;

  const std::size_t stored =
      choice_.Replace ? 0 : static_cast<std::size_t>(std::max<int>(tools_.Shared.NoOfRecords, 0));
  const std::size_t room =
      std::min(MaxImportLines, MaxRecords - std::min<std::size_t>(stored, MaxRecords));
  std::string line;
  while (file.Next(line)) {
    if (IsTaken(line)) {
      if (LinesToImport.size() == room) {
        if (AskWhetherToStop(room)) break;
        return RunTimeError::None;
      }
      LinesToImport.push_back(line);
      if (LinesToImport.size() + stored == MaxImportRecords) {
        if (AskWhetherToStop()) break;
        return RunTimeError::None;
      }
    }
    tools_.Progress.Step(0);
    ShowCount();
  }
  if (file.Error() != RunTimeError::None) return file.Error();
  if (LinesToImport.empty()) {
    Tell(QStringLiteral("No records"),
         QStringLiteral("There is no record to import.\rPlease choose other records."),
         MsgIcon::Information);
    tools_.Shared.MsgBoxAnswer = 0;
    return RunTimeError::None;
  }
  FillFieldData();
  return RunTimeError::None;
}

bool RecordsToImportDialog::IsTaken(const std::string& line) const {
  return choice_.AllLines || std::any_of(texts_.begin(), texts_.end(),
                                         [&](const TextSearch& text) { return text.IsIn(line); });
}

bool RecordsToImportDialog::AskWhetherToStop() {
  return Ask(QStringLiteral("Too many records"),
             QStringLiteral("Quillary can have up to 8000 records.\r"
                            "Should I import up to 8000 records?"),
             QStringLiteral("Yes"), QStringLiteral("No"), MsgIcon::Question);
}

// Data that hold more than 8000 records already are full much later.
bool RecordsToImportDialog::AskWhetherToStop(std::size_t room) {
  const QString title = QStringLiteral("Too many records");
  if (room == 0) {
    Tell(title, QStringLiteral("The data file is full: it holds %1 names.").arg(MaxRecords),
         MsgIcon::Exclamation);
    tools_.Shared.MsgBoxAnswer = 0;
    return false;
  }
  return Ask(title,
             QStringLiteral("Only %1 of the records can be imported.\r"
                            "Should I import the first %1 records?")
                 .arg(room),
             QStringLiteral("Yes"), QStringLiteral("No"), MsgIcon::Question);
}

// As often as one can see it.
void RecordsToImportDialog::ShowCount() {
  constexpr qint64 kIntervalMs = 16;
  if (sinceCountShown_.isValid() && sinceCountShown_.elapsed() < kIntervalMs) return;
  sinceCountShown_.start();
  const auto count = static_cast<std::int64_t>(LinesToImport.size());
  tools_.Waiting.SetLbl2(QString::fromStdString(SignedNumberText(count + 1)));
}

void RecordsToImportDialog::FillFieldData() {
  constexpr std::size_t kMostPreviewed = 20;
  const std::size_t count = std::min(LinesToImport.size(), kMostPreviewed);
  PreviewLast = static_cast<std::int16_t>(count - 1);
  for (std::size_t i = 0; i < count; ++i) {
    FieldData.push_back(
        SplitLine(LinesToImport[i], choice_.Format, static_cast<std::size_t>(FieldCount)));
  }
}

}  // namespace quillary
