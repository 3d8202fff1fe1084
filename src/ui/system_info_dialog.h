#pragma once
// "Infos système": what a person reporting a problem is asked for, in one
// window they can copy from: the system, Qt, the program and its host, and
// the folders the program reads and writes.
#include <QDialog>
#include <QString>
#include <utility>
#include <vector>

#include "ui/ui_context.h"

class QPlainTextEdit;

namespace sheafwork::ui {

/// Labelled lines, in order.
using SystemFacts = std::vector<std::pair<QString, QString>>;

/// The facts of this system and of the program as `context` runs it; the
/// host is asked for its folders when one is attached.
SystemFacts CollectSystemFacts(const UiContext& context);

class SystemInfoDialog : public QDialog {
  Q_OBJECT

 public:
  explicit SystemInfoDialog(const SystemFacts& facts, QWidget* parent = nullptr);
  QPlainTextEdit* Text() const { return text_; }

 private:
  QPlainTextEdit* text_ = nullptr;
};

}  // namespace sheafwork::ui
