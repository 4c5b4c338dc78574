#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "auxiliary/msg_box.h"
#include "mainwindow/main_dialog.h"
#include "platform/dde_client.h"

namespace quillary {

// The exchange with the word processor: the item "Copy && Paste into WinWord" of the copy menu. The
// item is enabled while a word processor runs that has a document open, which a timer looks after;
// until its first tick the item is disabled. Nothing here waits for the word processor.
class WordLink : public QObject {
  Q_OBJECT

 public:
  // All conversations go through `txtDDE`.
  WordLink(MainDialog& main, DdeClient& txtDDE, std::function<MsgBoxSnglTxt&()> msgBox);

  // Whether the word processor answered the last probe and listed at least three topics: -1, else
  // 0.
  std::int16_t IsWordRunning() const;

  // Probes for the word processor every 10000 ms. Stopped at first.
  QTimer WinWordRunTimer;

 private:
  void WinWordRunTimer_Timer();
  // The ticked details of the record that is shown go to the clipboard and into the document. If
  // they do not get there the user is told; what he has copied since stays on the clipboard unless
  // the document was about to take them. Where nothing is ticked the document stays as it is.
  void MnuCopyArray_Click(int index);
  void EndPaste(bool succeeded);
  // As soon as no other window is in front of the main window.
  void TellFault();
  void Tell(const QString& text);

  MainDialog& main_;
  DdeClient& txtDDE_;
  std::function<MsgBoxSnglTxt&()> msgBox_;
  QAction& item_;
  QTimer faultTimer_;
  bool isPasting_ = false;
  std::string details_;                // to be pasted
  std::optional<std::string> topics_;  // the last answer
};

}  // namespace quillary
