#pragma once

#include <string>

#include "dialogs/record_dialog.h"

namespace quillary {

// "Edit Name": the user changes the selected record, OK stores it under its number. Where the first
// name, the last name or the company changed, the record moves to its new places in the lists.
// What another program has stored in the record meanwhile is shown before it is written over.
class EditDialog : public RecordDialog {
  Q_OBJECT

 public:
  EditDialog(SharedData& shared, Profile& profile, Records& records, SharingGuard& guard, Hub& hub,
             MsgBoxSnglTxt& msgBoxSnglTxt, PleaseWait& pleaseWait);

  // Shows the selected record, CurRecordNo, at the main window's corner and disables the main
  // window until the dialog is closed. Where the record cannot be read, says so instead: it would
  // be overwritten by empty fields.
  void ShowEditDialog();

 protected:
  std::optional<Refusal> Check() override;
  RunTimeError Change() override;
  void Select() override;
  // What was typed stays while the record may only be out of reach.
  bool FitsNewLists(bool isListed) const override {
    return isListed || records_.MustReadLists(RunTimeError::None);
  }

 private:
  bool moved_ = false;  // by the last change
  FieldArray stored_;   // the record as the user last saw it
};

}  // namespace quillary
