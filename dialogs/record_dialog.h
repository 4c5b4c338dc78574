#pragma once

#include <QPushButton>
#include <QString>
#include <optional>
#include <string>

#include "dialogs/change_dialog.h"
#include "dialogs/record_boxes.h"
#include "store/profile.h"

namespace quillary {

// What the dialogs have in common in which the user types a record: the boxes, OK and Cancel. After
// a failure he goes on typing where he was.
class RecordDialog : public ChangeDialog {
  Q_OBJECT

 protected:
  RecordDialog(const QString& name, const Tools& tools, Wording wording, Profile& profile);

  // Shows the dialog with these values in its boxes.
  void ShowDialog(const FieldArray& values, const QString& caption);
  // Refuses a record without a name and a company.
  std::optional<Refusal> Check() override;
  void ComeBack() override;
  QWidget* FirstControl() const override;

  // The values of the boxes go into FieldValues until `update` is undone. First name, last name and
  // company are trimmed, and there are the display strings made of them.
  struct Typed {
    std::string ShowName;
    std::string ShowCompany;
  };
  Typed TakeBoxes(ProfileUpdate& update);

  Profile& profile_;
  RecordBoxes* Frame1;

 private:
  bool goesOn_ = false;
};

}  // namespace quillary
