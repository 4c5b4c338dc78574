// Starts the program over a data set, and tells, in one line, the milliseconds from the start of
// the process to the painted names list and the kilobytes of memory it has used by then.
//
//   start_benchmark <folder of varek.ini and quilldat>

#include <sys/resource.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "benchmarks/opened_program.h"

namespace {

using namespace quillary;

double SecondsSinceBoot() {
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Ends the program when the watched view has been painted.
class PaintWatch : public QObject {
 public:
  PaintWatch(double startSeconds, Forms& forms) : startSeconds_(startSeconds), forms_(forms) {}

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && !isSeen_) {
      isSeen_ = true;
      QTimer::singleShot(0, this, [this] { Tell(); });
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  void Tell() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%.1f %ld\n", (SecondsSinceBoot() - startSeconds_) * 1000, usage.ru_maxrss);
    forms_.ExitApplication();
  }

  double startSeconds_;
  Forms& forms_;
  bool isSeen_ = false;
};

}  // namespace

int main(int argc, char* argv[]) {
  const double startSeconds = SecondsSinceBoot();
  if (argc != 2) return EXIT_FAILURE;
  QApplication application(argc, argv);
  benchmarks::OpenedProgram program(argv[1]);
  PaintWatch watch(startSeconds, program.Windows);
  program.Windows.Main.findChild<QAbstractItemView*>(QStringLiteral("LstNames"))
      ->viewport()
      ->installEventFilter(&watch);
  return program.Run();
}
