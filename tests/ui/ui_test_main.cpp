// Runs every test class of the desktop application in one process.
#include <QApplication>
#include <QTemporaryDir>
#include <QtTest>
#include <cstdio>
#include <cstring>

#include "ui_fixture.h"

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QTemporaryDir runtime;
  if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR"))
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("sheafwork-tests"));
  // QtTest's own -functions lists the first class only, then ends the
  // process: list the test functions of every class instead.
  if (argc == 2 && std::strcmp(argv[1], "-functions") == 0) {
    for (QObject* test : sheafwork::testing::UiTests()) {
      const QMetaObject* meta = test->metaObject();
      for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QByteArray name = meta->method(i).name();
        if (meta->method(i).methodType() == QMetaMethod::Slot && !name.endsWith("_data") &&
            !name.startsWith("init") && !name.startsWith("cleanup")) {
          std::printf("%s()\n", name.constData());
        }
      }
      delete test;
    }
    return 0;
  }
  int status = 0;
  for (QObject* test : sheafwork::testing::UiTests()) {
    status |= QTest::qExec(test, argc, argv);
    delete test;
  }
  return status;
}
