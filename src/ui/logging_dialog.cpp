#include "ui/logging_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "log/paths.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/dialog_parts.h"
#include "ui/help.h"
#include "ui/list_value_check.h"

namespace sheafwork::ui {

LoggingDialog::LoggingDialog(LogSettings& settings, Prompt& prompt, HelpViewer* help,
                             QWidget* parent)
    : QDialog(parent), settings_(settings), prompt_(prompt) {
  setObjectName(QStringLiteral("frmLogging"));
  setWindowTitle(Res(ids::kLoggingTitle));
  int helpId = context::kLogging;
  SetHelpId(this, helpId++);

  // One group per log; the error log has no comment line.
  const auto build = [&](Group& g, bool isJournal) {
    const auto id = [isJournal](int journalId, int errorId) {
      return isJournal ? journalId : errorId;
    };
    auto* box =
        Named(new QGroupBox(Res(id(ids::kLoggingJournalGroup, ids::kLoggingErrorGroup)), this),
              isJournal ? "grpJournal" : "grpError", helpId);
    g.enable =
        Named(new QCheckBox(Res(id(ids::kLoggingJournalEnable, ids::kLoggingErrorEnable)), box),
              isJournal ? "chkJournalEnable" : "chkErrorEnable", helpId);
    g.nameLabel = Named(new QLabel(Res(id(ids::kLoggingJournalName, ids::kLoggingErrorName)), box),
                        isJournal ? "lblJournalFilename" : "lblErrorFilename", helpId);
    g.name =
        Named(new QLineEdit(box), isJournal ? "txtJournalFilename" : "txtErrorFilename", helpId);
    g.nameLabel->setBuddy(g.name);
    g.name->setMinimumWidth(320);
    g.browse =
        Named(new QPushButton(Res(id(ids::kLoggingJournalBrowse, ids::kLoggingErrorBrowse)), box),
              isJournal ? "cmdJournalBrowse" : "cmdErrorBrowse", helpId);
    g.overwrite = Named(
        new QRadioButton(Res(id(ids::kLoggingJournalOverwrite, ids::kLoggingErrorOverwrite)), box),
        isJournal ? "optJournalOverwrite" : "optErrorOverwrite", helpId);
    g.append =
        Named(new QRadioButton(Res(id(ids::kLoggingJournalAppend, ids::kLoggingErrorAppend)), box),
              isJournal ? "optJournalAppend" : "optErrorAppend", helpId);
    g.headerLabel =
        Named(new QLabel(Res(id(ids::kLoggingJournalHeader, ids::kLoggingErrorHeader)), box),
              isJournal ? "lblJournalHeader" : "lblErrorHeader", helpId);
    g.header = Named(new QLineEdit(box), isJournal ? "txtJournalHeader" : "txtErrorHeader", helpId);
    g.headerLabel->setBuddy(g.header);

    auto* grid = new QGridLayout(box);
    grid->addWidget(g.enable, 0, 0, 1, 3);
    grid->addWidget(g.nameLabel, 1, 0);
    grid->addWidget(g.name, 1, 1);
    grid->addWidget(g.browse, 1, 2);
    auto* modes = new QHBoxLayout;
    modes->addWidget(g.overwrite);
    modes->addWidget(g.append);
    modes->addStretch();
    grid->addLayout(modes, 2, 1, 1, 2);
    grid->addWidget(g.headerLabel, 3, 0);
    grid->addWidget(g.header, 3, 1, 1, 2);
    if (isJournal) {
      g.userLabel = Named(new QLabel(Res(ids::kLoggingJournalUser), box), "lblJournalUser", helpId);
      g.user = Named(new QLineEdit(box), "txtJournalUser", helpId);
      g.userLabel->setBuddy(g.user);
      grid->addWidget(g.userLabel, 4, 0);
      grid->addWidget(g.user, 4, 1, 1, 2);
    }
    grid->setColumnStretch(1, 1);
    return box;
  };
  QGroupBox* journalBox = build(journal_, true);
  QGroupBox* errorBox = build(error_, false);

  ButtonRow buttons = MakeButtonRow(this, ids::kLoggingOk, "cmdJournalOK", ids::kLoggingCancel,
                                    "cmdJournalCancel", ids::kLoggingHelp, "cmdJournalHelp");
  SetHelpIds({buttons.ok, buttons.cancel, buttons.help}, helpId);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(journalBox);
  layout->addWidget(errorBox);
  layout->addWidget(buttons.box);

  ConnectButtonRow(this, buttons, help, topic::kLogging);
  connect(journal_.enable, &QCheckBox::toggled, this,
          [this](bool on) { EnableGroup(journal_, on); });
  connect(error_.enable, &QCheckBox::toggled, this, [this](bool on) { EnableGroup(error_, on); });
  connect(journal_.browse, &QPushButton::clicked, this,
          [this] { Browse(journal_, ids::kJournalBrowseTitle); });
  connect(error_.browse, &QPushButton::clicked, this,
          [this] { Browse(error_, ids::kErrorLogBrowseTitle); });
  InstallContextHelp(this, help, QString::fromLatin1(topic::kLogging));

  // The settings as they are.
  journal_.enable->setChecked(settings_.JournalLogOn);
  EnableGroup(journal_, settings_.JournalLogOn);
  journal_.name->setText(Q(settings_.JournalLogFileName));
  (settings_.JournalAppend ? journal_.append : journal_.overwrite)->setChecked(true);
  journal_.header->setText(Q(settings_.JournalHeader));
  journal_.user->setText(Q(settings_.JournalUserComment));
  error_.enable->setChecked(settings_.ErrorLogOn);
  EnableGroup(error_, settings_.ErrorLogOn);
  error_.name->setText(Q(settings_.ErrorLogFileName));
  (settings_.ErrorAppend ? error_.append : error_.overwrite)->setChecked(true);
  error_.header->setText(Q(settings_.ErrorHeader));
}

void LoggingDialog::EnableGroup(const Group& group, bool on) {
  for (QWidget* widget : std::initializer_list<QWidget*>{
           group.nameLabel, group.name, group.browse, group.overwrite, group.append,
           group.headerLabel, group.header, group.userLabel, group.user}) {
    if (widget) widget->setEnabled(on);
  }
}

void LoggingDialog::Browse(const Group& group, int titleId) {
  FileDialogRequest request;
  request.title = LoadResourceText(titleId);
  request.filter = LoadResourceText(ids::kLogFilter);
  request.fileName = S(group.name->text());
  // Overwriting asks before an existing file is chosen; appending does not.
  request.confirmOverwrite = group.overwrite->isChecked();
  if (auto name = prompt_.SaveFileName(request); name && !name->empty())
    group.name->setText(Q(*name));
}

void LoggingDialog::accept() {
  const auto refuse = [this](int messageId) {
    prompt_.Ask({LoadResourceText(messageId), LoadResourceText(ids::kErrorTitle), PromptIcon::None,
                 PromptButtons::Ok});
  };
  if (journal_.enable->isChecked() && !IsValidFileName(S(journal_.name->text()))) {
    refuse(ids::kJournalNameNotValid);
    journal_.name->setFocus();
    return;
  }
  if (error_.enable->isChecked() && !IsValidFileName(S(error_.name->text()))) {
    refuse(ids::kErrorLogNameNotValid);
    error_.name->setFocus();
    return;
  }
  // Only the values of a log that is on are kept.
  if (journal_.enable->isChecked() &&
      !(AcceptListValue(prompt_, ListField::JournalFile, S(journal_.name->text()), journal_.name) &&
        AcceptListValue(prompt_, ListField::JournalHeader, S(journal_.header->text()),
                        journal_.header) &&
        AcceptListValue(prompt_, ListField::JournalComment, S(journal_.user->text()),
                        journal_.user))) {
    return;
  }
  if (error_.enable->isChecked() &&
      !(AcceptListValue(prompt_, ListField::ErrorFile, S(error_.name->text()), error_.name) &&
        AcceptListValue(prompt_, ListField::ErrorHeader, S(error_.header->text()),
                        error_.header))) {
    return;
  }
  settings_.JournalLogOn = journal_.enable->isChecked();
  if (settings_.JournalLogOn) {
    settings_.JournalLogFileName = S(journal_.name->text());
    settings_.JournalAppend = !journal_.overwrite->isChecked();
    settings_.JournalHeader = S(journal_.header->text());
    settings_.JournalUserComment = S(journal_.user->text());
  }
  settings_.ErrorLogOn = error_.enable->isChecked();
  if (settings_.ErrorLogOn) {
    settings_.ErrorLogFileName = S(error_.name->text());
    settings_.ErrorAppend = !error_.overwrite->isChecked();
    settings_.ErrorHeader = S(error_.header->text());
  }
  QDialog::accept();
}

}  // namespace sheafwork::ui
