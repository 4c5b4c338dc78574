#pragma once

#include <QPushButton>
#include <QString>
#include <optional>

#include "app/hub.h"
#include "app/shared_data.h"
#include "app/sharing_guard.h"
#include "auxiliary/msg_box.h"
#include "auxiliary/please_wait.h"
#include "platform/desktop/form.h"
#include "store/records.h"

namespace quillary {

// What the dialogs that change the data have in common: shown at the main window's corner over the
// disabled main window, whose status panel 1 tells the dialog's caption; the default button makes
// one change while the please-wait window is up, and closes the dialog.
//
// Either the whole change is in the files, or nothing is; then the user is told why, once, and the
// dialog is back as he left it. Where another program has changed the data, the lists are read
// again and the dialog is back only if it still makes sense.
class ChangeDialog : public Form {
  Q_OBJECT

 public:
  // Whether the default button can be pressed (it cannot while another application holds the
  // data).
  virtual void EnableOK(bool enable);

 protected:
  // What every dialog of this kind works with.
  struct Tools {
    SharedData& Shared;
    Records& Store;
    SharingGuard& Guard;
    Hub& Main;
    MsgBoxSnglTxt& Message;
    PleaseWait& Wait;
  };
  // What the user reads about the change.
  struct Wording {
    QString Wait;    // while it is made
    QString Title;   // of the message when it failed
    QString Failed;  // "The record could not be saved"
  };
  // What the user is told when the change is not made.
  struct Refusal {
    QString Title;
    QString Text;
    MsgIcon Icon = MsgIcon::Exclamation;
    RunTimeError Unread = RunTimeError::None;  // of the lists that were read again, told after it
  };

  ChangeDialog(const QString& name, const Tools& tools, Wording wording);

  // To be called by the constructor of the form, for buttons that it has placed.
  void SetButtons(QPushButton& change, QPushButton& cancel);
  void ShowAtCorner();
  // Makes the change, whether the dialog is shown or not. What the default button does.
  void MakeChange();

  // Why the change is not even to be tried; the dialog stays as it is.
  virtual std::optional<Refusal> Check() { return std::nullopt; }
  // Makes the change in files, memory and list box, or fails and leaves all of them alone.
  virtual RunTimeError Change() = 0;
  // Sets CurListIndex after the change.
  virtual void Select() = 0;
  // Shows the dialog again after a failure.
  virtual void ComeBack() { ShowForm(); }
  // Whether it does so after the lists were read again; `isListed` tells whether CurRecordNo is in
  // the list still.
  virtual bool FitsNewLists(bool /*isListed*/) const { return false; }

  // The selected record, CurRecordNo, into FieldValues. Where it cannot be read the user is told
  // why, under that title, and it gives false.
  bool ReadSelected(const QString& title);
  // There is no room for one more record.
  std::optional<Refusal> CheckRoom() const;
  void Tell(const Refusal& refusal);

  void Form_Activate() override;
  void Form_Unload() override;

  SharedData& shared_;
  Records& records_;
  SharingGuard& guard_;
  Hub& hub_;

 private:
  std::optional<Refusal> TryChange(bool& comesBack);
  bool ReadListsAgain(RunTimeError& unread);

  MsgBoxSnglTxt& msgBoxSnglTxt_;
  PleaseWait& pleaseWait_;
  Wording wording_;
};

// A button of such a dialog; twips.
QPushButton* MakeButton(QWidget* parent, const QString& name, const QString& caption, int left,
                        int top);

}  // namespace quillary
