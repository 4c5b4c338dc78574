#pragma once

#include <QString>

#include "platform/run_time_error.h"

namespace quillary {

// What is done with the data files at start-up, for those who replace them and open them anew.
class Opening {
 public:
  virtual ~Opening() = default;

  // Opens the data file with the questions and messages of start-up. False: the program is to end.
  virtual bool OpenDataFile() = 0;
  // Shows "Data File In Use" and returns when it is closed.
  virtual void WarnInUse() = 0;
  // Applies InUse to every command that changes data.
  virtual void SetReadOnly() = 0;
  // Tells the user of damaged data, once of missing names, and of what could not be written: the
  // counter of users, the links of the sorted lists. `advice`: a sentence for whoever is told of
  // damaged data.
  virtual void TellFaults(RunTimeError countError, RunTimeError sortError,
                          const QString& advice) = 0;
  // Whether the program has been asked to end. To be looked at whenever events have run: nothing is
  // to be done any more then, least of all to the counter of users.
  virtual bool HasEnded() const = 0;
};

}  // namespace quillary
