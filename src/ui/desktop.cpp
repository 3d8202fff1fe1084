#include "ui/desktop.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QScreen>
#include <QTranslator>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <system_error>

#include "host/startup.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/about_dialog.h"
#include "ui/help.h"
#include "ui/icons.h"
#include "ui/main_window.h"
#include "ui/qt_prompt.h"
#include "ui/single_instance.h"

namespace sheafwork::ui {
namespace {

/// The host application's window, as the list file keeps its size.
class HostAppWindow : public HostWindow {
 public:
  explicit HostAppWindow(host::Application& app) : app_(app) {}
  std::int32_t Width() override { return app_.Width(); }
  std::int32_t Height() override { return app_.Height(); }
  void SetWidth(std::int32_t width) override { app_.SetWidth(width); }
  void SetHeight(std::int32_t height) override { app_.SetHeight(height); }

 private:
  host::Application& app_;
};

// Whether a window can be shown at all; without one Qt would abort.
bool DisplayAvailable() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    const char* value = std::getenv(name);
    if (value && *value) return true;
  }
  return false;
}

void ShowError(Prompt& prompt, int messageId) {
  prompt.Ask({LoadResourceText(messageId), LoadResourceText(ids::kErrorTitle), PromptIcon::Critical,
              PromptButtons::Ok});
}

}  // namespace

int RunDesktop(int& argc, char** argv, const DesktopOptions& options) {
  if (!DisplayAvailable()) {
    std::cerr << "sheafwork: aucun écran n'est disponible pour l'application de bureau.\n"
                 "Essayez «\u00a0sheafwork --help\u00a0» pour les commandes.\n";
    return 2;
  }
  QApplication app(argc, argv);
  // Qt sets the locale from the environment; numbers the program formats
  // itself keep the C conventions (a decimal point, never a comma).
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setOrganizationName(QStringLiteral("Sheafwork"));
  QApplication::setApplicationName(QStringLiteral("sheafwork"));
  // No display name: the platform would add it to every window's title.
  QApplication::setWindowIcon(MakeIcon(IconId::App));
  QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
  // Qt's own texts (file dialogs, context menus) in French when installed.
  QTranslator qtTexts;
  if (qtTexts.load(QLocale(QLocale::French), QStringLiteral("qtbase"), QStringLiteral("_"),
                   QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(&qtTexts);
  }

  QtPrompt prompt;
  return RunDesktopSession(options, prompt);
}

int RunDesktopSession(const DesktopOptions& options, Prompt& prompt) {
  SingleInstance instance;
  if (!instance.TryLock()) {
    ShowError(prompt, ids::kSecondInstance);
    return 1;
  }

  Session session(options.userFolder);
  std::error_code ec;
  std::filesystem::create_directories(options.userFolder, ec);

  Splash splash;
  splash.adjustSize();
  if (QScreen* screen = QGuiApplication::primaryScreen()) {
    splash.move(screen->availableGeometry().center() - splash.rect().center());
  }
  splash.show();
  QApplication::processEvents();
  QApplication::setOverrideCursor(Qt::WaitCursor);

  const HostFactory* factory = options.hosts ? options.hosts->Find({}) : nullptr;
  AttachResult attached;
  if (factory)
    attached = AttachHost(*factory, ProgramFiles{options.dataFolder, options.userFolder}, prompt);
  QApplication::restoreOverrideCursor();
  splash.close();
  if (!factory) ShowError(prompt, ids::kHostLoadFailed);
  if (!attached.ok) {
    // The program cannot run; what was started is put back.
    if (attached.host) EndSession(session, attached.host.get(), prompt);
    return 1;
  }
  HostAppWindow hostWindow(attached.host->App());
  session.Host = &hostWindow;

  HtmlHelp help(HelpFolder(options.dataFolder));
  UiContext context;
  context.session = &session;
  context.prompt = &prompt;
  context.host = attached.host.get();
  context.help = &help;
  context.progress = options.progress;
  context.rememberGeometry = true;
  context.dataFolder = options.dataFolder;
  context.userFolder = options.userFolder;
  context.hostName = options.hosts ? options.hosts->DefaultName() : std::string();
  MainWindow window(context);
  if (auto* qtPrompt = dynamic_cast<QtPrompt*>(&prompt)) qtPrompt->SetParent(&window);
  // The program ends with its main window, even while the help window or
  // another window of its own is still open.
  const bool quitOnLastWindow = QApplication::quitOnLastWindowClosed();
  QApplication::setQuitOnLastWindowClosed(false);
  QObject::connect(&window, &MainWindow::Closed, qApp, &QCoreApplication::quit,
                   Qt::QueuedConnection);
  // The first time, the window is centred on the screen; later it comes back
  // where it was.
  if (QScreen* screen = QGuiApplication::primaryScreen(); screen && !window.GeometryRestored()) {
    const QRect available = screen->availableGeometry();
    window.resize(window.size().boundedTo(available.size() * 0.9));
    window.move(available.center() - window.rect().center());
  }
  window.show();
  window.raise();
  window.activateWindow();

  LoadCommandLineList(session, prompt, options.listName);
  window.Refresh();
  const int status = QApplication::exec();
  QApplication::setQuitOnLastWindowClosed(quitOnLastWindow);
  session.Host = nullptr;
  return status;
}

}  // namespace sheafwork::ui
