#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <QTest>
#include <QTimer>
#include <array>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillary::test {

// A modem on the other end of a serial port: a pseudo terminal of its own. It hears what is sent
// whenever events run.
class Modem {
 public:
  Modem() : line_(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    if (line_ < 0 || grantpt(line_) != 0 || unlockpt(line_) != 0) {
      throw std::runtime_error("no pseudo terminal");
    }
    Device = ptsname(line_);
    // While nobody has it open a pseudo terminal says everything back.
    termios settings{};
    tcgetattr(line_, &settings);
    cfmakeraw(&settings);
    tcsetattr(line_, TCSANOW, &settings);
    QObject::connect(&Listening, &QTimer::timeout, [this] { Listen(); });
    Listening.start(2);
  }
  ~Modem() { Vanish(); }
  Modem(const Modem&) = delete;
  Modem& operator=(const Modem&) = delete;

  void Say(const std::string& reply) {
    EXPECT_EQ(write(line_, reply.data(), reply.size()), static_cast<ssize_t>(reply.size()));
  }
  // Pulls its plug.
  void Vanish() {
    Listening.stop();
    if (line_ >= 0) close(line_);
    line_ = -1;
  }
  // Whether somebody had the port open before and nobody has now.
  bool IsReleased() const {
    pollfd status{line_, 0, 0};
    return poll(&status, 1, 0) == 1 && (status.revents & POLLHUP) != 0;
  }
  bool Hears(const std::string& command) {
    return QTest::qWaitFor([&] { return !Heard.empty() && Heard.back() == command; });
  }

  std::string Device;
  std::vector<std::string> Heard;  // commands, each with its carriage return
  QTimer Listening;

 private:
  void Listen() {
    std::array<char, 256> bytes{};
    for (ssize_t count = 0; (count = read(line_, bytes.data(), bytes.size())) > 0;) {
      begun_.append(bytes.data(), static_cast<std::size_t>(count));
    }
    for (std::size_t end = 0; (end = begun_.find('\r')) != std::string::npos;) {
      Heard.push_back(begun_.substr(0, end + 1));
      begun_.erase(0, end + 1);
    }
  }

  int line_;
  std::string begun_;  // of a command
};

}  // namespace quillary::test
