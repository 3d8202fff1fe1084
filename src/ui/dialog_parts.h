#pragma once
// Small pieces every dialog of the program uses.
#include <QDialogButtonBox>
#include <QPushButton>
#include <QString>

#include "ui/qt_text.h"

namespace sheafwork::ui {

/// A push button with a string-table caption and a control name.
inline QPushButton* MakeButton(int captionId, const char* name, QWidget* parent) {
  auto* button = new QPushButton(Res(captionId), parent);
  button->setObjectName(QString::fromLatin1(name));
  return button;
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

}  // namespace sheafwork::ui
