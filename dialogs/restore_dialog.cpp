#include "dialogs/restore_dialog.h"

#include <QCloseEvent>
#include <QGroupBox>
#include <QLabel>
#include <algorithm>

#include "platform/desktop/twips.h"
#include "platform/numbers.h"

namespace quillary {

namespace {

// Twips, inside the frame.
constexpr int kLineHeight = 285;
constexpr int kLineTop = 45;  // of a line above its text, in whose middle the text is
constexpr int kNotesHeight = 495;

struct Heading {
  const char* Name;
  const char* Caption;
  int Top;
};

constexpr std::array<Heading, 9> kHeadings{{{"Label1", "Name", 300},
                                            {"Label2", "Title", 600},
                                            {"Label3", "Company", 900},
                                            {"Label4", "Address", 1200},
                                            {"Label5", "Phone1", 2700},
                                            {"Label6", "Phone2", 3000},
                                            {"Label7", "Fax", 3270},
                                            {"Label8", "E-Mail", 3600},
                                            {"Notes", "Notes", 3900}}};

// The detail lines beside the headings; the address has five of them.
constexpr std::array<int, DetailLineCount> kLineTops{300,  600,  900,  1200, 1500, 1800, 2100,
                                                     2400, 2700, 3000, 3270, 3600, 3900};

}  // namespace

RestoreDialog::RestoreDialog(SharedData& shared, Records& records, SharingGuard& guard, Hub& hub,
                             MsgBoxSnglTxt& msgBoxSnglTxt, PleaseWait& pleaseWait, Percent& percent)
    : ChangeDialog(QStringLiteral("RestoreDialog"),
                   {shared, records, guard, hub, msgBoxSnglTxt, pleaseWait},
                   {QStringLiteral("Please wait while inserting the record"),
                    QStringLiteral("Record Not Restored"),
                    QStringLiteral("The record could not be restored")}),
      percent_(percent),
      DelLstNames(new ListBox(QStringLiteral("DelLstNames"))) {
  setWindowTitle(QStringLiteral("Restore Deleted Record"));
  MakeDetails();
  DelLstNames->setParent(this);
  DelLstNames->setAccessibleName(QStringLiteral("Deleted names"));
  Place(*DelLstNames, 4980, 210, 2475, 4350);
  connect(DelLstNames, &ListBox::Click, this, &RestoreDialog::DelLstNames_Click);
  auto* BtnRestore =
      MakeButton(this, QStringLiteral("BtnRestore"), QStringLiteral("&Restore"), 7560, 210);
  connect(DelLstNames, &ListBox::DblClick, BtnRestore, &QPushButton::click);
  auto* BtnCancel =
      MakeButton(this, QStringLiteral("BtnCancel"), QStringLiteral("Cancel"), 7560, 4170);
  SetButtons(*BtnRestore, *BtnCancel);
  SetSize(8895, 4680);
}

void RestoreDialog::MakeDetails() {
  auto* DetailsFrame = new QGroupBox(QStringLiteral(" Details "), this);
  DetailsFrame->setObjectName(QStringLiteral("DetailsFrame"));
  Place(*DetailsFrame, 120, 90, 4700, 4455);
  for (const Heading& heading : kHeadings) {
    auto* label = new QLabel(QString::fromLatin1(heading.Caption), DetailsFrame);
    label->setObjectName(QString::fromLatin1(heading.Name));
    Place(*label, 240, heading.Top - kLineTop, 930, kLineHeight);
  }
  for (std::size_t i = 0; i < Label.size(); ++i) {
    const bool isNotes = i == NotesLine;
    Label.at(i) = new DetailLabel(
        QStringLiteral("Label(%1)").arg(i), QString::fromLatin1(DetailLineNames.at(i)),
        isNotes ? DetailLabel::Shape::Block : DetailLabel::Shape::OneLine);
    Label.at(i)->setParent(DetailsFrame);
    Place(*Label.at(i), 1200, kLineTops.at(i) - (isNotes ? 0 : kLineTop), 3380,
          isNotes ? kNotesHeight : kLineHeight);
  }
}

void RestoreDialog::GetDeletedNamesList() {
  mainFields_ = shared_.FieldValues;
  const QString position = hub_.Panel(2);
  DelLstNames->SetLines({}, {});
  DelLstNames_Click();
  guard_.InUseTimer.stop();
  ShowAtCorner();
  setEnabled(false);
  percent_.ShowProgressWindow();
  records_.ReadDeletedNamesList();
  DelLstNames->SetLines(shared_.DelNamesList, shared_.DelRecNo);
  setEnabled(true);
  ShowForm();
  percent_.HideForm();
  DelLstNames->setFocus();
  DelLstNames_Click();
  EnableOK(!shared_.InUse);
  hub_.SetPanel(1, windowTitle());
  hub_.SetPanel(2, position);  // the reading has cleared it
  guard_.InUseTimer.start();
}

void RestoreDialog::EnableOK(bool enable) {
  ChangeDialog::EnableOK(enable && DelLstNames->ListCount() > 0);
}

void RestoreDialog::DelLstNames_Click() {
  if (DelLstNames->ListCount() == 0) {
    shared_.CurDelRecordNo.clear();
    for (DetailLabel* label : Label) label->SetCaption(std::string());
    return;
  }
  if (DelLstNames->ListIndex() < 0) DelLstNames->SetListIndex(0);
  shared_.CurDelRecordNo = NumberText(DelLstNames->ItemData(DelLstNames->ListIndex()));
  // A record that cannot be read is shown empty; trying to restore it tells why.
  static_cast<void>(records_.ReadRecord(shared_.CurDelRecordNo));
  auto captions = ComposeLines(shared_.NameStyle, shared_.FieldValues);
  for (std::size_t i = 0; i < Label.size(); ++i) {
    Label.at(i)->SetCaption(std::move(captions.at(i)));
  }
}

RunTimeError RestoreDialog::Change() {
  return records_.RestoreRecord(shared_.CurDelRecordNo);
}

void RestoreDialog::Select() {
  // Under a filter the list counts as filled anew, whose last entry came last.
  const int last = shared_.FilterOn ? hub_.ListCount() - 1 : hub_.NewIndex();
  shared_.CurListIndex = static_cast<std::int16_t>(std::max(last, 0));
}

void RestoreDialog::Form_Unload() {
  shared_.FieldValues = mainFields_;
  ChangeDialog::Form_Unload();
}

// The window system can close it while the list is being read.
void RestoreDialog::closeEvent(QCloseEvent* event) {
  if (isEnabled()) {
    ChangeDialog::closeEvent(event);
  } else {
    event->ignore();
  }
}

}  // namespace quillary
