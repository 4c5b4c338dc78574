#pragma once

namespace quillary {

// What a button or a menu of the main window may start.
class Commands {
 public:
  virtual ~Commands() = default;

  virtual void ShowNewDialog() = 0;
  // Expects FieldValues to hold the selected record.
  virtual void ShowDuplicateDialog() = 0;
  virtual void ShowFilterDialog() = 0;
  virtual void FilterOff() = 0;
  virtual void ShowAboutDialog() = 0;
  virtual void ShowTipOfDay() = 0;
  // Takes the program off the usage counter and ends it. Safe to call more than once.
  virtual void ExitApplication() = 0;
};

}  // namespace quillary
