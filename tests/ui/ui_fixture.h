#pragma once
// What the desktop application's tests share: a session with the scripted
// host attached, the scripted prompt, printers and fonts of the test's
// choosing, and a help viewer that records the topics it was asked for.
#include <QApplication>
#include <QListWidget>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "batch/session.h"
#include "fakes/fake_host.h"
#include "fakes/scripted_prompt.h"
#include "fakes/system_doubles.h"
#include "fakes/temp_folder.h"
#include "host/host_session.h"
#include "host/startup.h"
#include "ui/help.h"
#include "ui/ui_context.h"

namespace sheafwork::testing {

/// The test classes, each made afresh for the run.
std::vector<QObject*> UiTests();
struct UiTestRegistrar {
  explicit UiTestRegistrar(std::function<QObject*()> make);
};
#define SHEAFWORK_UI_TEST(Class) \
  static const ::sheafwork::testing::UiTestRegistrar registrar##Class([] { return new Class; })

class RecordingHelp : public ui::HelpViewer {
 public:
  void ShowTopic(const QString& name) override { topics << name; }
  QStringList topics;
};

/// A session with the fake host attached and nothing in the list.
class UiWorld {
 public:
  UiWorld();
  ~UiWorld();

  /// A drawing served by the host, also added as a row of the list.
  FakeDrawing& AddRow(const std::string& name);
  ui::UiContext Context();

  FakeHost host;
  ScriptedPrompt prompt;
  TempFolder folder;  ///< logs, lists, plotter configurations
  Session session;
  std::unique_ptr<HostSession> hostSession;
  ListedPrinters printers;
  AllFonts fonts;
  RecordingHelp help;
};

/// The control named `name` among the children of `parent`; a missing one
/// ends the test run.
template <typename T>
T* Child(const QWidget& parent, const char* name) {
  T* child = parent.findChild<T*>(QString::fromLatin1(name));
  if (!child) qFatal("no control %s", name);
  return child;
}

/// The texts of a list's items, in order.
QStringList Items(const QListWidget& list);

/// Runs `check` on the modal dialog of type T as soon as it shows, then
/// accepts it; gives up after `tries` polls. Returns immediately.
template <typename T>
void WhenModal(std::function<void(T&)> check, int tries = 500) {
  // Polls until the dialog shows: work done before it may run the event loop.
  QTimer::singleShot(10, [check, tries] {
    if (auto* dialog = qobject_cast<T*>(QApplication::activeModalWidget())) {
      check(*dialog);
      dialog->accept();
    } else if (tries > 0) {
      WhenModal(check, tries - 1);
    } else {
      qWarning("no modal dialog of the expected type");
    }
  });
}

}  // namespace sheafwork::testing
