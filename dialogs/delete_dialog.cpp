#include "dialogs/delete_dialog.h"

#include <QGroupBox>
#include <QLabel>
#include <algorithm>

#include "platform/desktop/twips.h"
#include "platform/numbers.h"

namespace quillary {

namespace {

constexpr int kLineHeight = 285;
constexpr int kLineTop = 45;  // of a line above its text, in whose middle the text is

// A heading and what stands beside it.
DetailLabel* MakeLine(QWidget* frame, const QString& heading, const QString& caption,
                      const QString& name, int top) {
  auto* label = new QLabel(caption, frame);
  label->setObjectName(heading);
  Place(*label, 240, top - kLineTop, 930, kLineHeight);
  auto* line = new DetailLabel(name, caption, DetailLabel::Shape::OneLine);
  line->setParent(frame);
  Place(*line, 1200, top - kLineTop, 2895, kLineHeight);
  return line;
}

}  // namespace

DeleteDialog::DeleteDialog(SharedData& shared, Records& records, SharingGuard& guard, Hub& hub,
                           MsgBoxSnglTxt& msgBoxSnglTxt, PleaseWait& pleaseWait)
    : ChangeDialog(QStringLiteral("DeleteDialog"),
                   {shared, records, guard, hub, msgBoxSnglTxt, pleaseWait},
                   {QStringLiteral("Please wait while deleting the record"),
                    QStringLiteral("Record Not Deleted"),
                    QStringLiteral("The record could not be deleted")}) {
  setWindowTitle(QStringLiteral("Delete Name"));
  auto* Frame1 = new QGroupBox(QStringLiteral(" Delete this record ? "), this);
  Frame1->setObjectName(QStringLiteral("Frame1"));
  Place(*Frame1, 180, 120, 4275, 1575);
  LblName = MakeLine(Frame1, QStringLiteral("Label1"), QStringLiteral("Name"),
                     QStringLiteral("LblName"), 360);
  LblTitle = MakeLine(Frame1, QStringLiteral("Label2"), QStringLiteral("Title"),
                      QStringLiteral("LblTitle"), 720);
  LblCompany = MakeLine(Frame1, QStringLiteral("Label3"), QStringLiteral("Company"),
                        QStringLiteral("LblCompany"), 1080);
  auto* BtnOK = MakeButton(this, QStringLiteral("BtnOK"), QStringLiteral("Yes"), 960, 1920);
  auto* BtnCancel = MakeButton(this, QStringLiteral("BtnCancel"), QStringLiteral("No"), 2460, 1920);
  SetButtons(*BtnOK, *BtnCancel);
  SetSize(4635, 2475);
}

void DeleteDialog::ShowDeleteDialog() {
  if (!ReadSelected(windowTitle())) return;
  const FieldArray& fields = shared_.FieldValues;
  const std::string& firstName = fields[Field::FirstName];
  LblName->SetCaption((firstName.empty() ? "" : firstName + " ") + fields[Field::LastName]);
  LblTitle->SetCaption(fields[Field::Title]);
  LblCompany->SetCaption(fields[Field::Company]);
  ShowAtCorner();
}

void DeleteDialog::DeleteWithoutConfirmation() {
  MakeChange();
}

std::optional<ChangeDialog::Refusal> DeleteDialog::Check() {
  if (Val(records_.ReadHeaderEntry("DelNoOfRecords")) < MaxRecords) return std::nullopt;
  return Refusal{windowTitle(), QStringLiteral("The list of deleted names is full: it holds %1 "
                                               "names.\rRestore one of them first.")
                                    .arg(MaxRecords)};
}

RunTimeError DeleteDialog::Change() {
  const auto index = static_cast<std::size_t>(std::max<int>(shared_.CurListIndex, 0));
  return records_.DeleteRecord(shared_.CurRecordNo, index);
}

void DeleteDialog::Select() {
  if (shared_.CurListIndex > 0) --shared_.CurListIndex;
}

}  // namespace quillary
