#include "ui/results_dialog.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "plottest/results_actions.h"
#include "res/string_ids.h"
#include "ui/dialog_parts.h"
#include "ui/help.h"
#include "ui/icons.h"

namespace sheafwork::ui {

ResultsDialog::ResultsDialog(const std::string& results, const LogSettings& log, Prompt& prompt,
                             HelpViewer* help, QWidget* parent)
    : QDialog(parent), log_(log), prompt_(prompt) {
  setObjectName(QStringLiteral("frmPlotTest"));
  setWindowTitle(Res(ids::kResultsTitle));
  setWindowIcon(MakeIcon(IconId::PlotTest));
  setSizeGripEnabled(true);
  int helpId = context::kResults;
  SetHelpId(this, helpId++);

  text_ = new QPlainTextEdit(this);
  text_->setObjectName(QStringLiteral("txtPTResults"));
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  QString shown = Q(results);
  shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  if (shown.endsWith(u'\n')) shown.chop(1);
  text_->setPlainText(shown);
  SetHelpId(text_, helpId++);

  auto* save = MakeButton(ids::kResultsSave, "cmdPTSave", this);
  append_ = MakeButton(ids::kResultsAppend, "cmdPTAppend", this);
  auto* ok = MakeButton(ids::kResultsOk, "cmdPTOk", this);
  SetHelpIds({save, append_, ok}, helpId);
  ok->setDefault(true);
  auto* buttons = new QDialogButtonBox(this);
  buttons->addButton(save, QDialogButtonBox::ActionRole);
  buttons->addButton(append_, QDialogButtonBox::ActionRole);
  buttons->addButton(ok, QDialogButtonBox::AcceptRole);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text_);
  layout->addWidget(buttons);
  resize(760, 480);

  connect(ok, &QPushButton::clicked, this, &QDialog::accept);
  connect(save, &QPushButton::clicked, this, &ResultsDialog::SaveAs);
  connect(append_, &QPushButton::clicked, this, &ResultsDialog::AppendToJournal);
  InstallContextHelp(this, help, QString::fromLatin1(topic::kMain));
}

std::string ResultsDialog::Results() const {
  QString text = text_->toPlainText();
  if (text.isEmpty()) return {};
  text.replace(u'\n', QStringLiteral("\r\n"));
  return S(text) + "\r\n";
}

void ResultsDialog::AppendToJournal() {
  // The results are appended once per showing.
  if (AppendResultsToJournal(log_, Results(), prompt_)) append_->setEnabled(false);
}

void ResultsDialog::SaveAs() { SaveResultsAs(Results(), prompt_); }

}  // namespace sheafwork::ui
