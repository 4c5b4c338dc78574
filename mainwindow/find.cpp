#include <QApplication>

#include "auxiliary/unread_records.h"
#include "mainwindow/main_dialog.h"
#include "platform/numbers.h"
#include "platform/text.h"

namespace quillary {

namespace {

// The fields that an item of CboSrchIn searches, in this order.
std::vector<Field> SearchedFields(int item) {
  switch (item) {
    case 0:
      return {FirstName, LastName};
    case 1:
      return {Company};
    case 2:
      return {FirstName, LastName, Title, Company};
    default: {
      std::vector<Field> all;
      all.reserve(FieldCount);
      for (int i = 0; i < FieldCount; ++i) all.push_back(static_cast<Field>(i));
      return all;
    }
  }
}

std::size_t LineThatShows(Field field) {
  if (field <= LastName) return NameLine;
  // Address4 and Address5 stand on one line.
  return field <= Address4 ? field - 2U : field - 3U;
}

}  // namespace

void MainDialog::ConnectFind() {
  connect(BtnFind, &QPushButton::clicked, this, &MainDialog::BtnFind_Click);
  connect(TxtFind, &QLineEdit::textChanged, this, [this] { SetBtnFind(QStringLiteral("Find")); });
  connect(CboSrchIn, &QComboBox::activated, this, [this] {
    SetBtnFind(QStringLiteral("Find"));
    SetDefaultButton(*BtnFind);
  });
  SearchResultTimer.setObjectName(QStringLiteral("SearchResultTimer"));
  SearchResultTimer.setSingleShot(true);
  using std::chrono_literals::operator""ms;
  SearchResultTimer.setInterval(2000ms);
  connect(&SearchResultTimer, &QTimer::timeout, this, [this] { Highlight(-1); });
}

void MainDialog::SetBtnFind(const QString& caption, const QString& found) {
  BtnFind->setText(caption);
  btnFindTag_ = caption;
  for (QWidget* control : std::initializer_list<QWidget*>{TxtFind, BtnFind, CboSrchIn}) {
    if (control->accessibleDescription() != found) control->setAccessibleDescription(found);
  }
}

void MainDialog::TxtFind_GotFocus() {
  SetDefaultButton(*BtnFind);
}

void MainDialog::FindBox_LostFocus() {
  SetDefaultButton(*BtnCopy);
  SetBtnFind(QStringLiteral("Find"));
}

void MainDialog::BtnFind_Click() {
  Highlight(-1);
  const QString text = TxtFind->text();
  if (Trim(text.toStdString()).empty()) {
    QApplication::beep();
    return;
  }
  const std::int16_t start = shared_.CurListIndex;
  const QString position = Panel(2);
  const std::int16_t count = shared_.FilterOn ? shared_.FilteredCount : shared_.NoOfRecords;
  guard_->InUseTimer.stop();
  Percent& progress = percent_();
  progress.ShowProgressWindow();
  bool found = false;
  const RunTimeError error = FindFunction(count, found);
  const bool isMiss = !found || shared_.CurListIndex == start;
  // Before the window becomes active again: the selected record may be one of those.
  if (isMiss && error != RunTimeError::None) NoteToldFault(error);
  progress.HideForm();
  EnableMain(true);
  BringToFront();

  if (found) ShowFound();
  if (isMiss) {
    SetPanel(2, position);
    TellNotFound(text, found, error);
  }
  SetPanel(1, QString());
  guard_->InUseTimer.start();
}

RunTimeError MainDialog::FindFunction(std::int16_t Count, bool& Found) {
  TextList recordNos;
  for (int i = 0; i < Count; ++i) recordNos.push_back(NumberText(LstNames->ItemData(i)));
  const std::vector<Field> fields = SearchedFields(CboSrchIn->currentIndex());
  RunTimeError error = RunTimeError::None;
  const auto entry = records_->FindText(TxtFind->text().toStdString(), fields, recordNos,
                                        static_cast<std::size_t>(shared_.CurListIndex), &error);
  Found = entry.has_value();
  if (!Found) return error;
  shared_.CurListIndex = static_cast<std::int16_t>(entry->Index);
  foundLine_ = LineThatShows(fields.at(entry->KeyIndex));
  return error;
}

void MainDialog::ShowFound() {
  LstNames->SetListIndex(shared_.CurListIndex);
  // What has just been found could be read.
  static_cast<void>(LstNames_Click());
  DetailLabel* line = Label.at(foundLine_);
  line->SetTextColour(DetailLabel::Colour::Found);
  const QString name = LstNames->currentIndex().data().toString();
  SetBtnFind(QStringLiteral("Find Next"), name + QStringLiteral(". ") + line->accessibleName());
  SearchResultTimer.start();
}

// `found`: the record that was shown already has the text, and no other one. Nobody can say so of
// records that could not be read.
void MainDialog::TellNotFound(const QString& text, bool found, RunTimeError error) {
  SetBtnFind(QStringLiteral("Find"));
  const QString title = QStringLiteral("Can't find text");
  if (error != RunTimeError::None) {
    TellUnreadRecords(msgBox_(), error, title);
    return;
  }
  const QString quoted = QStringLiteral("'") + text + QStringLiteral("'");
  SetPanel(1,
           QStringLiteral("Can't find ") + quoted + (found ? QStringLiteral(" again") : QString()));
  const QString what = found ? QStringLiteral("Can't find next ") : QStringLiteral("Can't find ");
  msgBox_().ShowMsg(what + quoted, MsgButtons::Left, QStringLiteral("OK"), QString(),
                    MsgIcon::Information, title);
}

}  // namespace quillary
