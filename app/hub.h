#pragma once

#include <QRect>
#include <QString>
#include <QWidget>

#include "platform/run_time_error.h"

namespace quillary {

// What a dialog may ask of the main window. Geometry is in pixels of the screen.
class Hub {
 public:
  virtual ~Hub() = default;

  // Selects entry CurListIndex, shows its record and brings every control into line with the data.
  virtual void SetData() = 0;

  // The status bar's panels, 1 to 4.
  virtual void SetPanel(int panel, const QString& text) = 0;
  virtual QString Panel(int panel) const = 0;

  // Enables or disables the whole main window. While it is disabled it takes no input and cannot
  // be closed by the user.
  virtual void EnableMain(bool enable) = 0;
  virtual void BringToFront() = 0;
  // The main window with its frame.
  virtual QRect MainGeometry() const = 0;
  // The window that others stay in front of.
  virtual QWidget& MainWindow() = 0;

  // The list box: the number of its lines, a line's item data (a record number), the index of the
  // line that was inserted last.
  virtual int ListCount() const = 0;
  virtual int ItemData(int index) const = 0;
  virtual int NewIndex() const = 0;

  // Brings New, Edit and Delete into line with InUse.
  virtual void ShowReadOnly() = 0;
  // The user knows that the selected record could not be read: SetData does not tell it once more.
  virtual void NoteToldFault(RunTimeError error) = 0;
};

}  // namespace quillary
