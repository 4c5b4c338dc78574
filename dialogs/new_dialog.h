#pragma once

#include <optional>
#include <string>

#include "dialogs/record_dialog.h"

namespace quillary {

// "New Name" and "New Name - Duplicate": the user types a record, OK adds it.
class NewDialog : public RecordDialog {
  Q_OBJECT

 public:
  NewDialog(SharedData& shared, Profile& profile, Records& records, SharingGuard& guard, Hub& hub,
            MsgBoxSnglTxt& msgBoxSnglTxt, PleaseWait& pleaseWait);

  // Both show the dialog at the main window's corner and disable the main window until the dialog
  // is closed.
  void ShowNewDialog();
  // Copies the selected record, CurRecordNo; where it cannot be read, says so instead.
  void ShowDuplicateDialog();

 protected:
  bool FitsNewLists(bool /*isListed*/) const override { return true; }
  std::optional<Refusal> Check() override;
  RunTimeError Change() override;
  void Select() override;

 private:
  void RemovePrompts();

  std::string recNo_;  // of the record that was added last
};

}  // namespace quillary
