#include "ui_fixture.h"

namespace sheafwork::testing {
namespace {

std::vector<std::function<QObject*()>>& Makers() {
  static std::vector<std::function<QObject*()>> makers;
  return makers;
}

}  // namespace

std::vector<QObject*> UiTests() {
  std::vector<QObject*> tests;
  for (const auto& make : Makers()) tests.push_back(make());
  return tests;
}

UiTestRegistrar::UiTestRegistrar(std::function<QObject*()> make) {
  Makers().push_back(std::move(make));
}

UiWorld::UiWorld() : session(folder.path().string()) {
  // A plotter configuration folder, so that "Par défaut" has a device to
  // plot on and the devices dialog files to list.
  folder.Write("plotters/PDF.pc3", "driver=pdf\n");
  folder.Write("plotters/Traceur A0.PC3", "driver=hpgl\n");
  host.printerConfigPath = folder.File("plotters");
  AttachResult attached =
      AttachHost([this] { return host.App(); },
                 ProgramFiles{folder.File("data"), folder.path().string()}, prompt);
  hostSession = std::move(attached.host);
  host.ClearCalls();
}

UiWorld::~UiWorld() { session.View = nullptr; }

FakeDrawing& UiWorld::AddRow(const std::string& name) {
  FakeDrawing& drawing = host.AddDrawing(name);
  BatchEntry& entry = session.List.Append();
  entry.FileName = drawing.path;
  return drawing;
}

QStringList Items(const QListWidget& list) {
  QStringList items;
  for (int i = 0; i < list.count(); ++i) items << list.item(i)->text();
  return items;
}

ui::UiContext UiWorld::Context() {
  ui::UiContext context;
  context.session = &session;
  context.prompt = &prompt;
  context.host = hostSession.get();
  context.printers = &printers;
  context.fonts = &fonts;
  context.help = &help;
  return context;
}

}  // namespace sheafwork::testing
