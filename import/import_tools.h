#pragma once

#include <QString>
#include <array>
#include <string>

#include "app/hub.h"
#include "app/shared_data.h"
#include "app/sharing_guard.h"
#include "auxiliary/msg_box.h"
#include "auxiliary/percent.h"
#include "auxiliary/please_wait.h"
#include "store/delimited_line.h"
#include "store/hooks.h"
#include "store/profile.h"
#include "store/records.h"

namespace quillary {

// What both steps of the import use.
struct ImportTools {
  SharedData& Shared;
  quillary::Profile& Profile;
  Records& Store;
  SharingGuard& Guard;
  Hub& Main;
  MsgBoxSnglTxt& MsgBox;
  PleaseWait& Waiting;
  Percent& Percentage;
  ProgressHooks& Progress;
};

// What the user chose in the first step.
struct ImportChoice {
  bool Replace = false;  // otherwise the records are added to those that are there
  QString ImportFile;    // a path of the host
  LineFormat Format;
  bool AllLines = true;  // otherwise those with one of the texts, of which an empty one is in none
  std::array<std::string, 2> Texts;
};

}  // namespace quillary
