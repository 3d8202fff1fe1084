#pragma once
// One desktop application per user: a lock file in the per-user runtime
// folder. A lock left by a program that crashed is taken over.
#include <QLockFile>
#include <QString>

namespace sheafwork::ui {

class SingleInstance {
 public:
  explicit SingleInstance(const QString& lockPath = DefaultLockPath());
  /// True when this process now holds the lock; false when another running
  /// program holds it.
  bool TryLock();
  /// The program that holds the lock, when another one does ("pid on host").
  QString Holder() const;

  /// $XDG_RUNTIME_DIR/sheafwork.lock, else a per-user name in the temporary
  /// folder.
  static QString DefaultLockPath();

 private:
  QLockFile lock_;
};

}  // namespace sheafwork::ui
