#pragma once
// The plot test's results: the text, which may be edited, saved as a text
// file or added to the journal.
#include <QDialog>
#include <string>

#include "log/log_settings.h"
#include "prompt/prompt.h"

class QPlainTextEdit;
class QPushButton;

namespace sheafwork::ui {

class HelpViewer;

class ResultsDialog : public QDialog {
  Q_OBJECT

 public:
  ResultsDialog(const std::string& results, const LogSettings& log, Prompt& prompt,
                HelpViewer* help, QWidget* parent = nullptr);

  /// The text as it stands, with CR LF line ends as the scan wrote them.
  std::string Results() const;

 public slots:
  void AppendToJournal();
  void SaveAs();

 private:
  const LogSettings& log_;
  Prompt& prompt_;
  QPlainTextEdit* text_ = nullptr;
  QPushButton* append_ = nullptr;
};

}  // namespace sheafwork::ui
