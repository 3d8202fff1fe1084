// Runs every test class of the desktop application in one process.
#include <QApplication>
#include <QTemporaryDir>
#include <QtTest>

#include "ui_fixture.h"

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QTemporaryDir runtime;
  if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR"))
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("sheafwork-tests"));
  int status = 0;
  for (QObject* test : sheafwork::testing::UiTests()) {
    status |= QTest::qExec(test, argc, argv);
    delete test;
  }
  return status;
}
