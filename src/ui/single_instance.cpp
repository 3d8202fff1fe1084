#include "ui/single_instance.h"

#include <unistd.h>

#include <QDir>
#include <QStandardPaths>

namespace sheafwork::ui {

SingleInstance::SingleInstance(const QString& lockPath) : lock_(lockPath) {
  // The lock lives as long as the program; only a dead holder makes it stale.
  lock_.setStaleLockTime(0);
}

bool SingleInstance::TryLock() { return lock_.isLocked() || lock_.tryLock(100); }

QString SingleInstance::Holder() const {
  qint64 pid = 0;
  QString host;
  QString application;
  if (!lock_.getLockInfo(&pid, &host, &application)) return {};
  return QStringLiteral("%1 (%2)").arg(pid).arg(host);
}

QString SingleInstance::DefaultLockPath() {
  const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  if (!runtime.isEmpty() && QDir().mkpath(runtime)) {
    return QDir(runtime).filePath(QStringLiteral("sheafwork.lock"));
  }
  // A shared temporary folder: the user's id keeps users apart.
  return QDir::temp().filePath(QStringLiteral("sheafwork-%1.lock").arg(getuid()));
}

}  // namespace sheafwork::ui
