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

  // Shows the selected record, CurRecordNo, at the main window's corner and disables the main
  // window until the dialog is closed. Where the record cannot be read, says so instead: nobody
  // should have to guess what he deletes.
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
