#include "dialogs/record_dialog.h"

#include <utility>

#include "platform/desktop/twips.h"

namespace quillary {

RecordDialog::RecordDialog(const QString& name, const Tools& tools, Wording wording,
                           Profile& profile)
    : ChangeDialog(name, tools, std::move(wording)),
      profile_(profile),
      Frame1(new RecordBoxes(this)) {
  SetSize(4635, 6135);
  Place(*Frame1, 180, 120, 4275, 5235);
  auto* BtnOK = MakeButton(this, QStringLiteral("BtnOK"), QStringLiteral("OK"), 960, 5580);
  auto* BtnCancel =
      MakeButton(this, QStringLiteral("BtnCancel"), QStringLiteral("Cancel"), 2460, 5580);
  SetButtons(*BtnOK, *BtnCancel);
}

void RecordDialog::ShowDialog(const FieldArray& values, const QString& caption) {
  hub_.SetPanel(1, QString());
  setWindowTitle(caption);
  for (std::size_t i = 0; i < shared_.NoOfFields; ++i) Frame1->SetValue(i, values.at(i));
  Frame1->Begin();
  ShowAtCorner();
}

std::optional<ChangeDialog::Refusal> RecordDialog::Check() {
  for (const Field field : {Field::FirstName, Field::LastName, Field::Company}) {
    if (!Frame1->Text(field).isEmpty()) return std::nullopt;
  }
  return Refusal{QStringLiteral("Empty Name and Company"),
                 QStringLiteral("Either Name or Company must be filled")};
}

void RecordDialog::ComeBack() {
  goesOn_ = true;
  ShowForm();
  goesOn_ = false;
  Frame1->GoOn();
}

QWidget* RecordDialog::FirstControl() const {
  return goesOn_ ? &Frame1->LastBox() : Form::FirstControl();
}

RecordDialog::Typed RecordDialog::TakeBoxes(ProfileUpdate& update) {
  FieldArray& values = shared_.FieldValues;
  update.OnUndo([&values, before = values] { values = before; });
  for (std::size_t i = 0; i < shared_.NoOfFields; ++i) values.at(i) = Frame1->Value(i);
  std::string& firstName = values[Field::FirstName];
  std::string& lastName = values[Field::LastName];
  std::string& company = values[Field::Company];
  Typed typed;
  typed.ShowName = BuildShowName(firstName, lastName, company);
  typed.ShowCompany = BuildShowCompany(firstName, lastName, company);
  return typed;
}

}  // namespace quillary
