#include "mainwindow/word_link.h"

#include <QApplication>
#include <QClipboard>
#include <chrono>
#include <utility>

#include "mainwindow/copy_details.h"

namespace quillary {

namespace {

constexpr const char* Application = "Winword";
constexpr const char* Topic = "System";

QString WaitText() {
  return QStringLiteral("Please wait while pasting into WinWord");
}

}  // namespace

WordLink::WordLink(MainDialog& main, DdeClient& txtDDE, std::function<MsgBoxSnglTxt&()> msgBox)
    : main_(main),
      txtDDE_(txtDDE),
      msgBox_(std::move(msgBox)),
      item_(*main.Menus().MnuCopyArray[2]) {
  using std::chrono_literals::operator""ms;
  WinWordRunTimer.setInterval(10000ms);
  connect(&WinWordRunTimer, &QTimer::timeout, this, &WordLink::WinWordRunTimer_Timer);
  connect(&main.Menus(), &QuillMnu::MnuCopyArray_Click, this, &WordLink::MnuCopyArray_Click);
  faultTimer_.setInterval(100ms);
  connect(&faultTimer_, &QTimer::timeout, this, &WordLink::TellFault);
}

std::int16_t WordLink::IsWordRunning() const {
  if (!topics_) return 0;
  // A search starts as far behind the start of the last one as that has found a tab. The second tab
  // is never jumped over; whether later ones are does not matter.
  constexpr int leastCount = 2;
  std::size_t start = 1;
  std::size_t place = 0;
  int count = 0;
  do {
    const std::size_t found = topics_->find('\t', start - 1);
    place = found == std::string::npos ? 0 : found + 1;
    start += place;
    ++count;
  } while (place != 0);
  return count > leastCount ? -1 : 0;
}

void WordLink::WinWordRunTimer_Timer() {
  if (isPasting_) return;
  const auto finish = [this](const std::optional<std::string>& topics) {
    topics_ = topics;
    item_.setEnabled(IsWordRunning() != 0);
  };
  txtDDE_.Open(Application, Topic, [this, finish](const std::optional<std::string>& opened) {
    if (opened) {
      txtDDE_.Request("Topics", finish);
    } else {
      finish(std::nullopt);
    }
  });
}

void WordLink::MnuCopyArray_Click(int index) {
  if (index != 2 || isPasting_) return;
  details_ = main_.SelectedDetails();
  main_.CopySelected();
  // Pasting nothing would delete what is selected in the document.
  if (details_.empty()) {
    return Tell(QStringLiteral("No details are ticked.\rTick the details to copy, and try again."));
  }
  isPasting_ = true;
  item_.setEnabled(false);
  main_.SetPanel(1, WaitText());
  // A probe that has no answer yet is given up.
  txtDDE_.End();
  txtDDE_.Open(Application, Topic, [this](const std::optional<std::string>& opened) {
    if (!opened) return EndPaste(false);
    // The user may have copied something else since then.
    CopyToClipboard(details_);
    txtDDE_.Execute("[EditPaste]", [this](const std::optional<std::string>& executed) {
      EndPaste(executed.has_value());
    });
  });
}

void WordLink::EndPaste(bool succeeded) {
  isPasting_ = false;
  txtDDE_.End();
  item_.setEnabled(IsWordRunning() != 0);
  if (main_.Panel(1) == WaitText()) main_.SetPanel(1, QString());
  if (!succeeded) faultTimer_.start();
}

void WordLink::TellFault() {
  if (!main_.isEnabled() || QApplication::activeModalWidget() != nullptr ||
      QApplication::activePopupWidget() != nullptr) {
    return;
  }
  faultTimer_.stop();
  QString text = QStringLiteral("WinWord did not take the details.");
  if (QGuiApplication::clipboard()->text() == QString::fromStdString(details_)) {
    text += QStringLiteral("\rThey are on the Clipboard.");
  }
  Tell(text);
}

void WordLink::Tell(const QString& text) {
  msgBox_().ShowMsg(text, MsgButtons::Left, QStringLiteral("OK"), QString(), MsgIcon::Exclamation,
                    QStringLiteral("Can't paste into WinWord"));
}

}  // namespace quillary
