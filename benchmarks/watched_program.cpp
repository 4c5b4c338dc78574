// The program over a data set, with its event loop watched. For every line on the standard input it
// tells, in one line, the milliseconds of the longest time since the line before in which no events
// ran, and how many of them its main thread was computing. Ends with the standard input.
//
//   watched_program <folder of varek.ini and quilldat>

#include <unistd.h>

#include <QApplication>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "benchmarks/opened_program.h"

namespace {

using namespace quillary;

double Milliseconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

class EventWatch : public QObject {
 public:
  EventWatch() {
    Start();
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] { Note(); });
    timer_.start(5);
  }

  void Tell() {
    Note();
    std::printf("%.0f %.0f\n", longest_, computing_);
    std::fflush(stdout);
    longest_ = computing_ = 0;
  }

 private:
  void Start() {
    since_ = Milliseconds(CLOCK_MONOTONIC);
    computedBefore_ = Milliseconds(CLOCK_THREAD_CPUTIME_ID);
  }
  void Note() {
    const double time = Milliseconds(CLOCK_MONOTONIC) - since_;
    if (time > longest_) {
      longest_ = time;
      computing_ = Milliseconds(CLOCK_THREAD_CPUTIME_ID) - computedBefore_;
    }
    Start();
  }

  QTimer timer_;
  double since_ = 0;
  double computedBefore_ = 0;
  double longest_ = 0;
  double computing_ = 0;
};

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 2) return EXIT_FAILURE;
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  EventWatch watch;
  benchmarks::OpenedProgram program(argv[1]);
  QSocketNotifier lines(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&lines, &QSocketNotifier::activated, &watch, [&] {
    char sign = 0;
    if (read(STDIN_FILENO, &sign, 1) == 1) {
      watch.Tell();
    } else {
      lines.setEnabled(false);
      program.Windows.ExitApplication();
    }
  });
  return program.Run();
}
