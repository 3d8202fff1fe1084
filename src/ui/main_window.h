#pragma once
// The program's main window: menus, toolbar and the batch list, a view over
// the session. Every command runs the core's operation on the session.
#include <QMainWindow>
#include <QMap>
#include <string>
#include <vector>

#include "ui/ui_context.h"

class QAction;
class QLabel;
class QPlainTextEdit;
class QTableView;
class QToolBar;

namespace sheafwork::ui {

class BatchModel;

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  explicit MainWindow(UiContext context, QWidget* parent = nullptr);
  ~MainWindow() override;

  /// The menu item or toolbar command of that name ("mnuFilePlot" ...).
  QAction* Command(const QString& name) const;
  QTableView* List() const { return list_; }
  BatchModel* Model() const { return model_; }

  /// The 1-based positions of the selected rows, ascending.
  std::vector<int> SelectedPositions() const;
  /// Selects exactly the rows at these 1-based positions.
  void SelectPositions(const std::vector<int>& positions);

  /// Adds dropped or chosen files: drawings become rows, list files are
  /// opened (the first, into an empty unnamed list) or appended.
  void AddFiles(const QStringList& paths);

  /// Whether the window took the size and place it had when it last closed.
  bool GeometryRestored() const { return geometryRestored_; }

  /// Closing without the exit question (the program cannot run).
  void SetForcedExit(bool forced) { forcedExit_ = forced; }

  /// Shows the window's caption and the commands' states for the session as
  /// it is now.
  void Refresh();

  /// The "Détails" pane: the current row's drawing, status and, when it
  /// failed, why.
  QPlainTextEdit* Details() const { return details_; }

 signals:
  /// The window closed for good (the exit was confirmed).
  void Closed();

 public slots:
  void AddDrawings();
  void RemoveSelected();
  void NewList();
  void OpenList();
  void AppendList();
  void SaveList();
  void Plot();
  void PlotTest();
  void Logging();
  void Layouts();
  void PlotSetups();
  void Devices();
  void PlotSettings();
  void Layers();
  void Jobs();
  void HelpMain();
  void About();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  /// Adds a row for `path`, or names on screen why it cannot be added.
  bool AddDrawing(const std::string& path);
  QAction* AddCommand(const QString& name, int captionId, int tipId, int icon, QKeySequence key);
  void BuildMenus();
  void BuildToolbar();
  void UpdateCommands();
  void ShowDetails();
  /// Caches the selection for the dialogs; false (after message 302) when it
  /// is too large, or when nothing is selected.
  bool CacheSelection();
  /// The host, or null after saying that none is attached.
  HostSession* RequireHost();
  void OpenSettings(int page);
  void AfterEdit();

  /// While a run goes on: the commands and the list wait.
  class Busy {
   public:
    explicit Busy(MainWindow& window);
    ~Busy();
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

   private:
    MainWindow& window_;
  };

  UiContext ctx_;
  QToolBar* toolbar_ = nullptr;
  BatchModel* model_ = nullptr;
  QTableView* list_ = nullptr;
  QLabel* status_ = nullptr;
  QLabel* count_ = nullptr;
  QPlainTextEdit* details_ = nullptr;
  QMap<QString, QAction*> commands_;
  std::vector<int> savedSelection_;
  bool forcedExit_ = false;
  bool closing_ = false;
  bool busy_ = false;
  bool geometryRestored_ = false;
};

}  // namespace sheafwork::ui
