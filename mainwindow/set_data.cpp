#include <algorithm>
#include <utility>

#include "mainwindow/main_dialog.h"
#include "platform/numbers.h"

namespace quillary {

namespace {

// What belongs to a copy flag: its detail lines, and the fields of which one at least must be
// there.
struct Detail {
  DetailLine FirstLine;
  DetailLine LastLine;
  Field FirstField;
  Field LastField;
};

constexpr std::array<Detail, CopyFlagCount> Details{{
    {NameLine, NameLine, FirstName, LastName},
    {TitleLine, TitleLine, Title, Title},
    {CompanyLine, CompanyLine, Company, Company},
    {AddressLine, LastAddressLine, Address1, Address6},
    {Phone1Line, Phone1Line, Phone1, Phone1},
    {Phone2Line, Phone2Line, Phone2, Phone2},
    {FaxLine, FaxLine, Fax, Fax},
    {EMailLine, EMailLine, EMail, EMail},
}};

}  // namespace

void MainDialog::SetData() {
  EnableMain(true);
  SetPanel(1, QString());
  ShowReadOnly();
  const bool isRecordShown = AnythingToShow();
  RunTimeError error = RunTimeError::None;
  if (isRecordShown) {
    error = ShowRecord();
  } else {
    ShowNothing();
  }
  const bool company = shared_.ViewMode != 0;
  SetPanel(3, company ? QStringLiteral("Company") : QStringLiteral("Name"));
  SetPanel(4, shared_.FilterOn ? QStringLiteral("Filter - ON") : QStringLiteral("Filter - OFF"));
  quillMnu_.SetChecks(shared_.ViewMode, shared_.FilterOn);
  if (isRecordShown) TellFault(error);
}

void MainDialog::NoteToldFault(RunTimeError error) {
  toldFaults_[records_->RecordFile(shared_.CurRecordNo)] = error;
}

void MainDialog::TellFault(RunTimeError error) {
  if (faultBox_ != nullptr) return;
  // Closing the box activates the window, which brings SetData here again; and whoever goes through
  // the list by the arrow keys would get a box for each name.
  RunTimeError& told = toldFaults_[records_->RecordFile(shared_.CurRecordNo)];
  if (std::exchange(told, error) == error || error == RunTimeError::None) return;
  const std::string number = SignedNumberText(static_cast<int>(error));
  faultBox_ = new QMessageBox(
      QMessageBox::NoIcon, QStringLiteral("Quillary"),
      QStringLiteral("Error No. %1 Found, in the MainDialog.SetData\nPlease contact the authour.")
          .arg(QString::fromStdString(number)),
      QMessageBox::Ok, this);
  faultBox_->setWindowFlag(Qt::CustomizeWindowHint);  // no buttons but Close in the frame
  faultBox_->setTextFormat(Qt::PlainText);
  faultBox_->setAttribute(Qt::WA_DeleteOnClose);
  // Without waiting: whoever called SetData may have windows to close.
  faultBox_->setWindowModality(Qt::ApplicationModal);
  faultBox_->show();
}

bool MainDialog::AnythingToShow() const {
  const int count = shared_.FilterOn ? shared_.FilteredCount : shared_.NoOfRecords;
  return count > 0 && LstNames->ListCount() > 0;
}

void MainDialog::ShowReadOnly() {
  const bool change = AnythingToShow() && !shared_.InUse;
  BtnNew->setEnabled(!shared_.InUse);
  BtnEdit->setEnabled(change);
  BtnDelete->setEnabled(change);
  quillMnu_.SetReadOnly(shared_.InUse);
  quillMnu_.MnuNewArray[1]->setEnabled(change);
}

void MainDialog::ShowNothing() {
  const bool anyRecord = shared_.NoOfRecords > 0;
  BtnFilter->setEnabled(anyRecord);
  SetPanel(2, QString());
  // Before the list is disabled: else its focus would wander off to the next control.
  if (anyRecord && shared_.FilterOn) {
    BtnFilter->setFocus();
  } else if (!shared_.InUse) {
    BtnNew->setFocus();
  }
  LstNames->SetListIndex(-1);
  LstNames->setEnabled(false);
  BtnCopy->setEnabled(false);
  DetailsPanel->setFocusPolicy(Qt::NoFocus);
  DetailsFrame->setEnabled(false);
  for (std::size_t flag = 0; flag < ChkCopy.size(); ++flag) SetCopyBox(flag, false);
  EnableFind(false);
  CboSrchIn->setCurrentIndex(-1);
  Notes->setEnabled(false);
  for (DetailLabel* label : Label) {
    label->SetTextColour(DetailLabel::Colour::Normal);
    label->SetCaption(std::string());
    label->setEnabled(false);
  }
}

RunTimeError MainDialog::ShowRecord() {
  LstNames->setEnabled(true);
  LstNames->SetListIndex(shared_.CurListIndex);
  const RunTimeError error = LstNames_Click();
  BtnCopy->setEnabled(true);
  BtnFilter->setEnabled(true);
  DetailsPanel->setFocusPolicy(Qt::TabFocus);
  DetailsFrame->setEnabled(true);
  EnableFind(true);
  if (CboSrchIn->currentIndex() < 0) CboSrchIn->setCurrentIndex(0);
  return error;
}

void MainDialog::EnableFind(bool enable) {
  for (QWidget* control : {static_cast<QWidget*>(FrmFind), static_cast<QWidget*>(BtnFind),
                           static_cast<QWidget*>(TxtFind), static_cast<QWidget*>(SrchInLabel),
                           static_cast<QWidget*>(CboSrchIn)}) {
    control->setEnabled(enable);
  }
}

void MainDialog::SetCopyBox(std::size_t flag, bool present) {
  ChkCopy.at(flag)->setEnabled(present);
  ChkCopy.at(flag)->setChecked(present && shared_.CopyValues.at(flag) != 0);
}

RunTimeError MainDialog::LstNames_Click() {
  if (LstNames->ListCount() == 0) return RunTimeError::None;
  if (LstNames->ListIndex() < 0) LstNames->SetListIndex(0);
  shared_.CurListIndex = static_cast<std::int16_t>(LstNames->ListIndex());
  shared_.CurRecordNo = NumberText(LstNames->ItemData(shared_.CurListIndex));
  const int count = shared_.FilterOn ? shared_.FilteredCount : shared_.NoOfRecords;
  SetPanel(2, QString::fromStdString(SignedNumberText(shared_.CurListIndex + 1) + "/" +
                                     SignedNumberText(count)));

  const RunTimeError error = records_->ReadRecord(shared_.CurRecordNo);
  const FieldArray& fields = shared_.FieldValues;
  auto captions = ComposeLines(shared_.NameStyle, fields);
  for (std::size_t i = 0; i < Label.size(); ++i) {
    Label.at(i)->SetTextColour(DetailLabel::Colour::Normal);
    Label.at(i)->SetCaption(std::move(captions.at(i)));
  }
  for (std::size_t flag = 0; flag < Details.size(); ++flag) {
    const Detail& detail = Details.at(flag);
    const bool present =
        std::any_of(fields.begin() + detail.FirstField, fields.begin() + detail.LastField + 1,
                    [](const std::string& value) { return !value.empty(); });
    SetCopyBox(flag, present);
    for (std::size_t line = detail.FirstLine; line <= detail.LastLine; ++line) {
      Label.at(line)->setEnabled(present);
    }
  }
  const bool notes = !fields[Field::Notes].empty();
  Notes->setEnabled(notes);
  Label[NotesLine]->setEnabled(notes);
  return error;
}

}  // namespace quillary
