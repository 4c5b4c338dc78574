#pragma once

#include <QPushButton>
#include <QString>
#include <optional>
#include <string>

#include "app/hub.h"
#include "app/shared_data.h"
#include "app/sharing_guard.h"
#include "auxiliary/msg_box.h"
#include "auxiliary/please_wait.h"
#include "dialogs/record_boxes.h"
#include "platform/desktop/form.h"
#include "store/profile.h"
#include "store/records.h"

namespace quillary {

// "New Name" and "New Name - Duplicate": the user types a record, OK adds it.
//
// Either the whole record is in the files, or nothing is; then the user is told why and the dialog
// is back with what was typed.
class NewDialog : public Form {
  Q_OBJECT

 public:
  NewDialog(SharedData& shared, Profile& profile, Records& records, SharingGuard& guard, Hub& hub,
            MsgBoxSnglTxt& msgBoxSnglTxt, PleaseWait& pleaseWait);

  // Both show the dialog at the main window's corner and disable the main window until the dialog
  // is closed.
  void ShowNewDialog();
  // Expects FieldValues to hold the record to be copied.
  void ShowDuplicateDialog();
  // Whether OK can be pressed (it cannot while another application holds the data).
  void EnableOK(bool enable);

 protected:
  void Form_Activate() override;
  void Form_Unload() override;
  QWidget* FirstControl() const override;

 private:
  // What the user is told when the record is not saved.
  struct Refusal {
    QString Title;
    QString Text;
    MsgIcon Icon = MsgIcon::Exclamation;
  };

  void Show(const QString& caption);
  void RemovePrompts();
  void BtnOK_Click();
  // Why the record is not even to be tried.
  std::optional<Refusal> Check();
  std::optional<Refusal> Insert(std::string& RecNo);
  RunTimeError WriteAll(std::string& RecNo);
  void SelectNew(const std::string& RecNo);
  void Tell(const Refusal& refusal);

  SharedData& shared_;
  Profile& profile_;
  Records& records_;
  SharingGuard& guard_;
  Hub& hub_;
  MsgBoxSnglTxt& msgBoxSnglTxt_;
  PleaseWait& pleaseWait_;

  RecordBoxes* Frame1;
  QPushButton* BtnOK;
  QPushButton* BtnCancel;
  bool goesOn_ = false;  // comes back after a refusal
};

}  // namespace quillary
