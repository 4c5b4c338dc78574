#pragma once

#include <cstddef>
#include <string_view>

#include "store/text_list.h"

namespace quillary {

// How the store tells of long work. The one who implements it decides how often the screen is
// touched; the calls themselves are cheap enough for every record.
class ProgressHooks {
 public:
  virtual ~ProgressHooks() = default;
  // A stage of work begins: `status` goes to the main window's status panel 1 and the progress
  // window, `splash` (where not empty) to the splash window; bars stand at 0. The next stage may
  // begin without an End between.
  virtual void Begin(std::string_view status, std::string_view splash) = 0;
  // So many percent (0 to 100) are done. Lets pending events run.
  virtual void Step(double percent) = 0;
  // The stage is over: status panels 1 and 2 are cleared.
  virtual void End() = 0;
};

// The lines of the main window's list box, for the store to keep in step with its lists. Record
// numbers become the lines' item data.
class ListHooks {
 public:
  virtual ~ListHooks() = default;
  // Replaces all lines. The two lists are equally long.
  virtual void SetLines(const TextList& texts, const TextList& recordNumbers) = 0;
  virtual void InsertLine(std::size_t index, std::string_view text,
                          std::string_view recordNumber) = 0;
  virtual void RemoveLine(std::size_t index) = 0;
};

}  // namespace quillary
