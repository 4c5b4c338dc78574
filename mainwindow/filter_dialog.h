#pragma once

#include <QLineEdit>
#include <array>

#include "app/hub.h"
#include "app/shared_data.h"
#include "auxiliary/msg_box.h"
#include "auxiliary/percent.h"
#include "platform/desktop/form.h"
#include "store/records.h"

namespace quillary {

// "Quillary Filter": narrows the list to the records that contain what is typed here.
class FilterDialog : public Form {
  Q_OBJECT

 public:
  FilterDialog(SharedData& shared, Records& records, Hub& hub, Percent& percent,
               MsgBoxSnglTxt& msgBoxSnglTxt);

  // Shows the dialog with the last criteria at the main window's corner and disables the main
  // window until the dialog is closed.
  void ShowFilterDialog();

 protected:
  void Form_Activate() override;
  void Form_Unload() override;

 private:
  void LayOut();
  void Form_Load();
  void BtnOK_Click();

  SharedData& shared_;
  Records& records_;
  Hub& hub_;
  Percent& percent_;
  MsgBoxSnglTxt& msgBoxSnglTxt_;

  // In the order of FilterCriteria.
  std::array<QLineEdit*, 5> criteria_{};
  QPushButton* BtnOK;
  QPushButton* BtnCancel;
};

// Turns the filter off; the record that is shown stays selected. Runs SetData.
void FilterOff(SharedData& shared, Records& records, Hub& hub);

}  // namespace quillary
