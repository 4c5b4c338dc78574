#pragma once

#include <string>

namespace quillary {

// What a button or a menu of the main window may start.
class Commands {
 public:
  virtual ~Commands() = default;

  virtual void ShowNewDialog() = 0;
  // These three are about the selected record; where it cannot be read, they say so instead.
  virtual void ShowDuplicateDialog() = 0;
  virtual void ShowEditDialog() = 0;
  virtual void ShowDeleteDialog() = 0;
  // Deletes the selected record at once.
  virtual void DeleteWithoutConfirmation() = 0;
  // Opens "Restore Deleted Record" with the deleted records.
  virtual void GetDeletedNamesList() = 0;
  // Opens "File to Import". 0: adds to the data, otherwise replaces them.
  virtual void MnuImport_Click(int index) = 0;
  virtual void BackUpToDisk() = 0;
  virtual void RestoreFromDisk() = 0;
  // Checks the modem's port and opens the dialer, or offers Setup.
  virtual void OpenDialer() = 0;
  // The same with a number, which is dialled at once.
  virtual void Dial(const std::string& number) = 0;
  virtual void ShowSetup() = 0;
  virtual void ShowFilterDialog() = 0;
  virtual void FilterOff() = 0;
  virtual void ShowAboutDialog() = 0;
  virtual void ShowTipOfDay() = 0;
  // Takes the program off the usage counter and ends it. Safe to call more than once.
  virtual void ExitApplication() = 0;
};

}  // namespace quillary
