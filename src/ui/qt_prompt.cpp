#include "ui/qt_prompt.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include "ui/qt_text.h"

namespace sheafwork::ui {
namespace {

QMessageBox::Icon BoxIcon(PromptIcon icon) {
  switch (icon) {
    case PromptIcon::Information:
      return QMessageBox::Information;
    case PromptIcon::Question:
      return QMessageBox::Question;
    case PromptIcon::Exclamation:
      return QMessageBox::Warning;
    case PromptIcon::Critical:
      return QMessageBox::Critical;
    case PromptIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

// The dialog's own labels in French, whether or not Qt's translations are
// installed.
void FrenchLabels(QFileDialog& dialog, bool save) {
  dialog.setLabelText(QFileDialog::LookIn, QStringLiteral("Regarder dans\u00a0:"));
  dialog.setLabelText(QFileDialog::FileName, QStringLiteral("Nom du fichier\u00a0:"));
  dialog.setLabelText(QFileDialog::FileType, QStringLiteral("Type de fichier\u00a0:"));
  dialog.setLabelText(QFileDialog::Accept,
                      save ? QStringLiteral("&Enregistrer") : QStringLiteral("&Ouvrir"));
  dialog.setLabelText(QFileDialog::Reject, QStringLiteral("Annuler"));
}

void Prepare(QFileDialog& dialog, const FileDialogRequest& request, bool save) {
  dialog.setWindowTitle(Q(request.title));
  dialog.setNameFilters(QtNameFilters(request.filter).split(QStringLiteral(";;")));
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(save ? QFileDialog::AnyFile
                          : (request.mustExist ? QFileDialog::ExistingFile : QFileDialog::AnyFile));
  if (save) {
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.confirmOverwrite);
    const QString suffix = FirstSuffix(request.filter);
    if (!suffix.isEmpty()) dialog.setDefaultSuffix(suffix);
  }
  if (!request.fileName.empty()) {
    const QFileInfo info(Q(request.fileName));
    if (info.dir().exists()) dialog.setDirectory(info.absolutePath());
    dialog.selectFile(info.fileName());
  }
  FrenchLabels(dialog, save);
  dialog.resize(dialog.sizeHint().expandedTo(QSize(780, 480)));
}

}  // namespace

PromptAnswer QtPrompt::Ask(const PromptMessage& message) {
  QMessageBox box(BoxIcon(message.icon), Q(message.title), Q(message.text), QMessageBox::NoButton,
                  parent_);
  struct Choice {
    QMessageBox::StandardButton button;
    const char* text;
    PromptAnswer answer;
  };
  std::vector<Choice> choices;
  switch (message.buttons) {
    case PromptButtons::Ok:
      choices = {{QMessageBox::Ok, "OK", PromptAnswer::Ok}};
      break;
    case PromptButtons::OkCancel:
      choices = {{QMessageBox::Ok, "OK", PromptAnswer::Ok},
                 {QMessageBox::Cancel, "Annuler", PromptAnswer::Cancel}};
      break;
    case PromptButtons::YesNo:
      choices = {{QMessageBox::Yes, "&Oui", PromptAnswer::Yes},
                 {QMessageBox::No, "&Non", PromptAnswer::No}};
      break;
    case PromptButtons::YesNoCancel:
      choices = {{QMessageBox::Yes, "&Oui", PromptAnswer::Yes},
                 {QMessageBox::No, "&Non", PromptAnswer::No},
                 {QMessageBox::Cancel, "Annuler", PromptAnswer::Cancel}};
      break;
  }
  for (const Choice& choice : choices) {
    box.addButton(choice.button)->setText(QString::fromUtf8(choice.text));
  }
  box.setDefaultButton(choices.front().button);
  const int pressed = box.exec();
  for (const Choice& choice : choices) {
    if (pressed == choice.button) return choice.answer;
  }
  // Closed with Escape or the close box: the answer that changes nothing.
  switch (message.buttons) {
    case PromptButtons::Ok:
      return PromptAnswer::Ok;
    case PromptButtons::YesNo:
      return PromptAnswer::No;
    default:
      return PromptAnswer::Cancel;
  }
}

std::optional<std::string> QtPrompt::OpenFileName(const FileDialogRequest& request) {
  QFileDialog dialog(parent_);
  Prepare(dialog, request, false);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return S(dialog.selectedFiles().front());
}

std::vector<std::string> QtPrompt::OpenFileNames(const FileDialogRequest& request) {
  QFileDialog dialog(parent_);
  Prepare(dialog, request, false);
  dialog.setFileMode(QFileDialog::ExistingFiles);
  std::vector<std::string> names;
  if (dialog.exec() == QDialog::Accepted) {
    for (const QString& name : dialog.selectedFiles()) names.push_back(S(name));
  }
  return names;
}

std::optional<std::string> QtPrompt::SaveFileName(const FileDialogRequest& request) {
  QFileDialog dialog(parent_);
  Prepare(dialog, request, true);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return S(dialog.selectedFiles().front());
}

}  // namespace sheafwork::ui
