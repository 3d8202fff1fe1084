#include "embedded/paint/qt_application.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QtGlobal>
#include <clocale>
#include <string>

#include "embedded/render/messages.h"
#include "embedded/render/plot_job.h"

namespace sheafwork::embedded {

namespace {

// Qt warns on every start when the session has no runtime folder (a cron job,
// a service); give it a private one, as a login session would.
void EnsureRuntimeFolder() {
  if (!qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) return;
  const std::string folder = "/tmp/runtime-sheafwork-" + std::to_string(getuid());
  struct stat status {};
  if (mkdir(folder.c_str(), 0700) != 0 &&
      (lstat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) ||
       status.st_uid != getuid() || (status.st_mode & 0777) != 0700)) {
    return;  // Qt falls back to its own default and says so
  }
  qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(folder));
}

}  // namespace

void EnsureGuiApplication() {
  if (QCoreApplication* existing = QCoreApplication::instance()) {
    if (qobject_cast<QGuiApplication*>(existing) == nullptr) {
      throw PlotError(render_messages::NoGuiApplication());
    }
    return;
  }
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
      qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  EnsureRuntimeFolder();
  // Qt keeps references to argc and argv for the application's lifetime.
  static int argc = 1;
  static char name[] = "sheafwork";
  static char* argv[] = {name, nullptr};
  // Deliberately never destroyed: Qt's own globals may be gone by the time
  // static destructors run.
  static QGuiApplication* const application = new QGuiApplication(argc, argv);
  (void)application;
  // Qt sets the locale from the environment; numbers the program formats
  // itself keep the C conventions (a decimal point, never a comma).
  std::setlocale(LC_NUMERIC, "C");
}

}  // namespace sheafwork::embedded
