#pragma once
// Small pieces every dialog of the program uses.
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QString>
#include <initializer_list>
#include <vector>

#include "batch/session.h"
#include "ui/help.h"
#include "ui/qt_text.h"

namespace sheafwork::ui {

/// A push button with a string-table caption and a control name.
inline QPushButton* MakeButton(int captionId, const char* name, QWidget* parent) {
  auto* button = new QPushButton(Res(captionId), parent);
  button->setObjectName(QString::fromLatin1(name));
  return button;
}

/// Gives `widget` its control name and the next context-help id.
template <typename Widget>
Widget* Named(Widget* widget, const char* name, int& helpId) {
  widget->setObjectName(QString::fromLatin1(name));
  SetHelpId(widget, helpId++);
  return widget;
}

/// Gives the widgets the next context-help ids, in order.
inline void SetHelpIds(std::initializer_list<QWidget*> widgets, int& helpId) {
  for (QWidget* widget : widgets) SetHelpId(widget, helpId++);
}

/// The OK, Cancel and Help row at the bottom of a dialog.
struct ButtonRow {
  QDialogButtonBox* box;
  QPushButton* ok;
  QPushButton* cancel;
  QPushButton* help;
};

inline ButtonRow MakeButtonRow(QWidget* parent, int okId, const char* okName, int cancelId,
                               const char* cancelName, int helpId, const char* helpName) {
  ButtonRow row{new QDialogButtonBox(parent), MakeButton(okId, okName, parent), nullptr, nullptr};
  row.box->addButton(row.ok, QDialogButtonBox::AcceptRole);
  row.ok->setDefault(true);
  if (cancelId) {
    row.cancel = MakeButton(cancelId, cancelName, parent);
    row.box->addButton(row.cancel, QDialogButtonBox::RejectRole);
  }
  if (helpId) {
    row.help = MakeButton(helpId, helpName, parent);
    row.box->addButton(row.help, QDialogButtonBox::HelpRole);
  }
  return row;
}

/// OK accepts `dialog`, Cancel rejects it and Help opens `topic` (when there
/// is a help viewer).
inline void ConnectButtonRow(QDialog* dialog, const ButtonRow& row, HelpViewer* help,
                             const char* topic) {
  QObject::connect(row.ok, &QPushButton::clicked, dialog, &QDialog::accept);
  QObject::connect(row.cancel, &QPushButton::clicked, dialog, &QDialog::reject);
  QObject::connect(row.help, &QPushButton::clicked, dialog, [help, topic] {
    if (help) help->ShowTopic(QString::fromLatin1(topic));
  });
}

/// The 1-based positions of the rows the session's selection cache holds, in
/// list order.
inline std::vector<int> CachedSelection(const Session& session) {
  std::vector<int> rows;
  for (int n = 1; n <= session.List.EntryCount(); ++n) {
    if (session.Selection.FindEntryInArray(n)) rows.push_back(n);
  }
  return rows;
}

}  // namespace sheafwork::ui
