#pragma once

#include <optional>

#include "auxiliary/detail_label.h"
#include "dialogs/change_dialog.h"

namespace quillary {

// "Delete Name": shows the selected record, Yes deletes it. Afterwards the entry above is selected,
// or the first one.
class DeleteDialog : public ChangeDialog {
  Q_OBJECT

 public:
  DeleteDialog(SharedData& shared, Records& records, SharingGuard& guard, Hub& hub,
               MsgBoxSnglTxt& msgBoxSnglTxt, PleaseWait& pleaseWait);

  // Shows the dialog at the main window's corner and disables the main window until the dialog is
  // closed. Expects FieldValues to hold the selected record.
  void ShowDeleteDialog();
  // What Yes does, without the dialog.
  void DeleteWithoutConfirmation();

 protected:
  std::optional<Refusal> Check() override;
  RunTimeError Change() override;
  void Select() override;

 private:
  DetailLabel* LblName;
  DetailLabel* LblTitle;
  DetailLabel* LblCompany;
};

}  // namespace quillary
