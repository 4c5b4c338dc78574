#include <QApplication>
#include <cstdlib>

#include "auxiliary/pictures.h"
#include "main/end_signals.h"
#include "main/main.h"
#include "platform/desktop/accessibility.h"
#include "platform/desktop/raise_window.h"
#include "platform/desktop/single_instance.h"
#include "platform/disk.h"
#include "platform/file_names.h"
#include "platform/text.h"
#include "store/profile.h"

namespace {

using namespace quillary;

class ProcessEnding : public Ending {
 public:
  void EndProgram() override { QCoreApplication::exit(); }
  void EndNow() override { std::_Exit(EXIT_SUCCESS); }
};

// When the desktop goes away without a word, Qt ends the process by exit().
Forms* runningForms = nullptr;
void LeaveDesktop() {
  if (runningForms != nullptr) runningForms->ExitApplication();
}

int Run(QApplication& application, EndSignals& endSignals) {
  SingleInstance instance(QStringLiteral("Quillary"));
  HostDisk disk;
  const FileNames names(disk, FindOwnDirectory(), FindProfileFolder());
  Profile profile(disk, names);
  const TextComparer comparer;
  ProcessEnding ending;
  Forms forms(profile, comparer, ending, names.OwnDirectory());

  QObject::connect(&endSignals, &EndSignals::EndRequested, [&] { forms.ExitApplication(); });
  QObject::connect(&application, &QCoreApplication::aboutToQuit, [&] { forms.ExitApplication(); });
  QObject::connect(&instance, &SingleInstance::ActivateRequested, [&] {
    QWidget* const window = QApplication::activeModalWidget();
    RaiseWindow(window != nullptr ? *window : forms.Main);
  });
  endSignals.Listen();
  runningForms = &forms;
  std::atexit(LeaveDesktop);

  const bool isStarted = Main(forms, profile, [&] { return instance.IsFirst(); });
  const int result = isStarted ? QApplication::exec() : EXIT_SUCCESS;
  runningForms = nullptr;
  return result;
}

}  // namespace

int main(int argc, char* argv[]) {
  EndSignals endSignals;
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("quillary"));
  QApplication::setDesktopFileName(QStringLiteral("quillary"));
  QApplication::setWindowIcon(QuillIcon());
  QApplication::setQuitOnLastWindowClosed(false);
  InstallAccessibleRoles();
  return Run(application, endSignals);
}
