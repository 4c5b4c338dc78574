#pragma once

#include <array>
#include <optional>

#include "app/name_line.h"
#include "auxiliary/detail_label.h"
#include "auxiliary/list_box.h"
#include "auxiliary/percent.h"
#include "dialogs/change_dialog.h"

namespace quillary {

// "Restore Deleted Record": the list of the deleted records with the details of the selected one,
// which Restore, or a double click, brings back under its number. One record each time the dialog
// is shown.
class RestoreDialog : public ChangeDialog {
  Q_OBJECT

 public:
  RestoreDialog(SharedData& shared, Records& records, SharingGuard& guard, Hub& hub,
                MsgBoxSnglTxt& msgBoxSnglTxt, PleaseWait& pleaseWait, Percent& percent);

  // Lists the deleted records while the progress window is up, and shows the dialog at the main
  // window's corner; the main window is disabled until the dialog is closed. FieldValues hold the
  // selected deleted record meanwhile.
  void GetDeletedNamesList();
  // Whether Restore can be pressed (it cannot while another application holds the data, nor where
  // nothing is listed).
  void EnableRestore(bool enable) { EnableOK(enable); }
  void EnableOK(bool enable) override;

 protected:
  std::optional<Refusal> Check() override { return CheckRoom(); }
  RunTimeError Change() override;
  void Select() override;
  void Form_Unload() override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void MakeDetails();
  void DelLstNames_Click();

  Percent& percent_;
  FieldArray mainFields_;  // those of the main window's record

  ListBox* DelLstNames;
  std::array<DetailLabel*, DetailLineCount> Label{};
};

}  // namespace quillary
