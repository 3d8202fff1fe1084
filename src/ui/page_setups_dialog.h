#pragma once
// The named page setups dialog: which page setup the selected rows apply,
// from the row's own drawing or from another drawing or template.
#include <QDialog>

#include "batch/session.h"
#include "host/host_session.h"
#include "prompt/prompt.h"

class QLineEdit;
class QListWidget;

namespace sheafwork::ui {

class HelpViewer;

class PageSetupsDialog : public QDialog {
  Q_OBJECT

 public:
  /// Edits every row of the session's selection cache; the page setups are
  /// first read from the first selected row's drawing. `host` may be null.
  PageSetupsDialog(Session& session, HostSession* host, Prompt& prompt, HelpViewer* help,
                   QWidget* parent = nullptr);

  /// Reads the page setups of `drawing` into the list; `external` when it is
  /// not the rows' own drawing. False (after message 226) when it cannot.
  bool LoadFrom(const std::string& drawing, bool external);

  void accept() override;

 public slots:
  /// Asks for another drawing or template and lists its page setups.
  void Browse();

 private:
  Session& session_;
  HostSession* host_;
  Prompt& prompt_;
  std::string source_;  ///< the drawing the list shows the page setups of
  bool external_ = false;
  QListWidget* list_ = nullptr;
  QLineEdit* from_ = nullptr;
};

}  // namespace sheafwork::ui
