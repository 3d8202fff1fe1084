#include "ui/main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QScrollBar>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>
#include <QToolBar>
#include <algorithm>
#include <memory>

#include "batch/list_commands.h"
#include "batch/list_row.h"
#include "embedded/automation/dwg_converter.h"
#include "embedded/automation/embedded_host.h"
#include "host/startup.h"
#include "log/paths.h"
#include "plotrun/plot_run.h"
#include "plotrun/worker_process.h"
#include "plottest/plot_test.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"
#include "ui/about_dialog.h"
#include "ui/batch_model.h"
#include "ui/devices_dialog.h"
#include "ui/help.h"
#include "ui/icons.h"
#include "ui/jobs_dialog.h"
#include "ui/layouts_dialog.h"
#include "ui/logging_dialog.h"
#include "ui/page_setups_dialog.h"
#include "ui/progress_dialog.h"
#include "ui/qt_prompt.h"
#include "ui/qt_text.h"
#include "ui/results_dialog.h"
#include "ui/settings_dialog.h"
#include "ui/system_info_dialog.h"

namespace sheafwork::ui {
namespace {

// Drawings and templates; DXF too, the embedded host's own format.
bool IsDrawingFile(const std::string& path) {
  return EndsWithIgnoreCase(path, "dwg") || EndsWithIgnoreCase(path, "dwt") ||
         EndsWithIgnoreCase(path, "dxf");
}

/// The list view's icons and the status line during a plot run; a failed
/// row keeps the reasons the host gave while it was plotted.
class RowIcons : public RunObserver {
 public:
  RowIcons(BatchModel& model, QTableView& view, QLabel& status, ProgressDialog* progress)
      : model_(model), view_(view), status_(status), progress_(progress) {
    if (progress_) {
      progress_->SetFailureListener([this](const std::string& reason) { reasons_ << Q(reason); });
    }
  }
  ~RowIcons() override {
    if (progress_) progress_->SetFailureListener({});
  }
  RowIcons(const RowIcons&) = delete;
  RowIcons& operator=(const RowIcons&) = delete;

  void RowsCleared() override {
    model_.ClearStatuses();
    QApplication::processEvents();
  }
  void RowStarted(int row, int count, const BatchEntry& entry) override {
    reasons_.clear();
    drawing_ = FileNameFromPath(entry.FileName);
    model_.SetActiveRow(row);
    view_.scrollTo(model_.index(row - 1, 0));
    status_.setText(Res(ids::kStatusRow).arg(row).arg(count).arg(Q(entry.FileName)));
    QApplication::processEvents();
  }
  // From here on, what worker processes did: the run's own host plots
  // nothing and its dialog hears of the sheets and failures only here.
  void SheetPlotted(int) override {
    if (workers_ && progress_) progress_->SheetPlotted(drawing_);
  }
  void HostReported(const std::string& text, bool failure) override {
    if (!failure) return;
    if (progress_) {
      progress_->PlotFailed(text);  // its listener keeps the reason
    } else {
      reasons_ << Q(text);
    }
  }
  /// The rows are plotted by worker processes.
  void SetWorkers(bool workers) { workers_ = workers; }
  void RowFinished(int row, RowStatus status) override {
    model_.SetStatus(row, status, reasons_);
    reasons_.clear();
    QApplication::processEvents();
  }

 private:
  BatchModel& model_;
  QTableView& view_;
  QLabel& status_;
  ProgressDialog* progress_;
  QStringList reasons_;
  std::string drawing_;  ///< of the row under way
  bool workers_ = false;
};

}  // namespace

MainWindow::MainWindow(UiContext context, QWidget* parent) : QMainWindow(parent), ctx_(context) {
  setObjectName(QStringLiteral("frmSheafwork"));
  setWindowIcon(MakeIcon(IconId::App));

  model_ = new BatchModel(*ctx_.session, this);
  list_ = new QTableView(this);
  list_->setObjectName(QStringLiteral("lstBatch"));
  list_->setModel(model_);
  list_->setSelectionBehavior(QAbstractItemView::SelectRows);
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setShowGrid(false);
  list_->setAlternatingRowColors(true);
  list_->setWordWrap(false);
  list_->setTextElideMode(Qt::ElideMiddle);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->verticalHeader()->hide();
  list_->verticalHeader()->setDefaultSectionSize(list_->fontMetrics().height() + 8);
  list_->horizontalHeader()->setHighlightSections(false);
  list_->horizontalHeader()->setStretchLastSection(true);
  list_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  list_->horizontalHeader()->setSectionsClickable(true);
  const int widths[] = {200, 260, 190, 170};
  for (int column = 0; column < 4; ++column) list_->setColumnWidth(column, widths[column]);
  // The first size shows every column whole, the last one (which takes the
  // rest of the width) at least as wide as its heading.
  int listWidth = list_->horizontalHeader()->sectionSizeHint(kListColumns - 1) + 40;
  for (int width : widths) listWidth += width;
  listWidth += 2 * list_->frameWidth() + list_->verticalScrollBar()->sizeHint().width();
  list_->setAcceptDrops(true);
  list_->setDragDropMode(QAbstractItemView::DropOnly);
  list_->setDropIndicatorShown(false);
  list_->setDefaultDropAction(Qt::CopyAction);
  list_->setContextMenuPolicy(Qt::ActionsContextMenu);
  SetHelpId(list_, context::kMainList);
  setCentralWidget(list_);

  auto* detailsPane = new QDockWidget(Res(ids::kDetailsTitle), this);
  detailsPane->setObjectName(QStringLiteral("dockDetails"));
  detailsPane->setFeatures(QDockWidget::NoDockWidgetFeatures);
  details_ = new QPlainTextEdit(detailsPane);
  details_->setObjectName(QStringLiteral("txtDetails"));
  details_->setReadOnly(true);
  details_->setFixedHeight(details_->fontMetrics().lineSpacing() * 4 + 12);
  detailsPane->setWidget(details_);
  addDockWidget(Qt::BottomDockWidgetArea, detailsPane);

  connect(model_, &BatchModel::filesDropped, this, &MainWindow::AddFiles);
  connect(model_, &QAbstractItemModel::modelAboutToBeReset, this,
          [this] { savedSelection_ = SelectedPositions(); });
  connect(model_, &QAbstractItemModel::modelReset, this, [this] {
    if (model_->KeepSelection()) SelectPositions(savedSelection_);
    UpdateCommands();
  });
  connect(model_, &QAbstractItemModel::rowsInserted, this, &MainWindow::UpdateCommands);
  connect(model_, &QAbstractItemModel::rowsRemoved, this, &MainWindow::UpdateCommands);
  connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &MainWindow::UpdateCommands);
  connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          &MainWindow::ShowDetails);
  connect(model_, &QAbstractItemModel::dataChanged, this, &MainWindow::ShowDetails);
  connect(model_, &QAbstractItemModel::modelReset, this, &MainWindow::ShowDetails);
  // A click on a column heading rebuilds the view.
  connect(list_->horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this] { ctx_.session->ReloadMainListview(ctx_.session->ListModified, true); });
  connect(list_, &QTableView::doubleClicked, this, [this] {
    if (commands_.value(QStringLiteral("mnuOptionsPlotSettings"))->isEnabled()) PlotSettings();
  });

  BuildMenus();
  BuildToolbar();
  for (const char* name : {"mnuOptionsLayouts", "mnuOptionsPlotSetups", "mnuOptionsPlotDevices",
                           "mnuOptionsPlotSettings", "mnuOptionsLayers", "mnuFileRemove"}) {
    list_->addAction(Command(QString::fromLatin1(name)));
  }

  status_ = new QLabel(this);
  status_->setObjectName(QStringLiteral("lblStatus"));
  statusBar()->addWidget(status_, 1);
  count_ = new QLabel(this);
  count_->setObjectName(QStringLiteral("lblCount"));
  statusBar()->addPermanentWidget(count_);

  resize(std::max(980, listWidth), 560);
  if (ctx_.rememberGeometry) {
    QSettings settings;
    geometryRestored_ =
        restoreGeometry(settings.value(QStringLiteral("main/geometry")).toByteArray());
    restoreState(settings.value(QStringLiteral("main/state")).toByteArray());
    list_->horizontalHeader()->restoreState(
        settings.value(QStringLiteral("main/columns")).toByteArray());
  }
  Refresh();
}

MainWindow::~MainWindow() = default;

QAction* MainWindow::AddCommand(const QString& name, int captionId, int tipId, int icon,
                                QKeySequence key) {
  auto* action = new QAction(Res(captionId), this);
  action->setObjectName(name);
  if (tipId) action->setToolTip(Res(tipId));
  if (icon >= 0) action->setIcon(MakeIcon(static_cast<IconId>(icon)));
  if (!key.isEmpty()) action->setShortcut(key);
  commands_.insert(name, action);
  return action;
}

void MainWindow::BuildMenus() {
  const auto icon = [](IconId id) { return static_cast<int>(id); };
  QMenu* file = menuBar()->addMenu(Res(ids::kMenuFile));
  file->setObjectName(QStringLiteral("mnuFile"));
  file->addAction(AddCommand(QStringLiteral("mnuFileAddDrawing"), ids::kMenuAddDrawing,
                             ids::kTipAddDrawing, icon(IconId::AddDrawing),
                             QKeySequence(Qt::Key_Insert)));
  file->addAction(AddCommand(QStringLiteral("mnuFileRemove"), ids::kMenuRemove, ids::kTipRemove,
                             icon(IconId::Remove), QKeySequence::Delete));
  file->addSeparator();
  file->addAction(AddCommand(QStringLiteral("mnuFileNewList"), ids::kMenuNewList, 0,
                             icon(IconId::NewList), QKeySequence::New));
  file->addAction(AddCommand(QStringLiteral("mnuFileOpenList"), ids::kMenuOpenList,
                             ids::kTipOpenList, icon(IconId::OpenList), QKeySequence::Open));
  file->addAction(AddCommand(QStringLiteral("mnuFileAppendList"), ids::kMenuAppendList, 0, -1, {}));
  file->addAction(AddCommand(QStringLiteral("mnuFileSaveList"), ids::kMenuSaveList,
                             ids::kTipSaveList, icon(IconId::SaveList), QKeySequence::Save));
  file->addSeparator();
  file->addAction(AddCommand(QStringLiteral("mnuFilePlot"), ids::kMenuPlot, ids::kTipPlot,
                             icon(IconId::Plot), QKeySequence(Qt::CTRL | Qt::Key_P)));
  file->addAction(AddCommand(QStringLiteral("mnuFilePlotTest"), ids::kMenuPlotTest,
                             ids::kTipPlotTest, icon(IconId::PlotTest),
                             QKeySequence(Qt::CTRL | Qt::Key_T)));
  file->addSeparator();
  file->addAction(AddCommand(QStringLiteral("mnuFileLogging"), ids::kMenuLogging, ids::kTipLogging,
                             icon(IconId::Logging), QKeySequence(Qt::CTRL | Qt::Key_J)));
  file->addSeparator();
  file->addAction(AddCommand(QStringLiteral("mnuFileExit"), ids::kMenuExit, 0, -1,
                             QKeySequence(Qt::CTRL | Qt::Key_Q)));

  QMenu* options = menuBar()->addMenu(Res(ids::kMenuOptions));
  options->setObjectName(QStringLiteral("mnuOptions"));
  options->addAction(AddCommand(QStringLiteral("mnuOptionsLayouts"), ids::kMenuLayouts,
                                ids::kTipLayouts, icon(IconId::Layouts), {}));
  options->addAction(AddCommand(QStringLiteral("mnuOptionsPlotSetups"), ids::kMenuPlotSetups,
                                ids::kTipPlotSetups, icon(IconId::PageSetups), {}));
  options->addAction(AddCommand(QStringLiteral("mnuOptionsPlotDevices"), ids::kMenuPlotDevices,
                                ids::kTipDevices, icon(IconId::Devices), {}));
  options->addSeparator();
  options->addAction(AddCommand(QStringLiteral("mnuOptionsPlotSettings"), ids::kMenuPlotSettings,
                                ids::kTipSettings, icon(IconId::Settings), {}));
  options->addAction(AddCommand(QStringLiteral("mnuOptionsLayers"), ids::kMenuLayers,
                                ids::kTipLayers, icon(IconId::Layers), {}));
  options->addSeparator();
  options->addAction(
      AddCommand(QStringLiteral("mnuOptionsJobs"), ids::kMenuJobs, ids::kTipJobs, -1, {}));

  QMenu* help = menuBar()->addMenu(Res(ids::kMenuHelp));
  help->setObjectName(QStringLiteral("mnuHelp"));
  help->addAction(AddCommand(QStringLiteral("mnuHelpMain"), ids::kMenuHelpMain, 0,
                             icon(IconId::Help), QKeySequence::HelpContents));
  help->addSeparator();
  help->addAction(AddCommand(QStringLiteral("mnuHelpAbout"), ids::kMenuHelpAbout, 0, -1, {}));

  const struct {
    const char* name;
    void (MainWindow::*slot)();
  } wiring[] = {
      {"mnuFileAddDrawing", &MainWindow::AddDrawings},
      {"mnuFileRemove", &MainWindow::RemoveSelected},
      {"mnuFileNewList", &MainWindow::NewList},
      {"mnuFileOpenList", &MainWindow::OpenList},
      {"mnuFileAppendList", &MainWindow::AppendList},
      {"mnuFileSaveList", &MainWindow::SaveList},
      {"mnuFilePlot", &MainWindow::Plot},
      {"mnuFilePlotTest", &MainWindow::PlotTest},
      {"mnuFileLogging", &MainWindow::Logging},
      {"mnuOptionsLayouts", &MainWindow::Layouts},
      {"mnuOptionsPlotSetups", &MainWindow::PlotSetups},
      {"mnuOptionsPlotDevices", &MainWindow::Devices},
      {"mnuOptionsPlotSettings", &MainWindow::PlotSettings},
      {"mnuOptionsLayers", &MainWindow::Layers},
      {"mnuOptionsJobs", &MainWindow::Jobs},
      {"mnuHelpMain", &MainWindow::HelpMain},
      {"mnuHelpAbout", &MainWindow::About},
  };
  for (const auto& [name, slot] : wiring) {
    connect(Command(QString::fromLatin1(name)), &QAction::triggered, this, slot);
  }
  connect(Command(QStringLiteral("mnuFileExit")), &QAction::triggered, this, &QWidget::close);

  // Two items of one menu never share a mnemonic.
  for (QMenu* menu : {file, options, help}) {
    QStringList captions;
    for (QAction* action : menu->actions()) captions << action->text();
    const QStringList distinct = DistinctMnemonics(captions);
    for (qsizetype i = 0; i < captions.size(); ++i) menu->actions()[i]->setText(distinct[i]);
  }
}

void MainWindow::BuildToolbar() {
  QToolBar* bar = addToolBar(Res(ids::kMenuFile));
  toolbar_ = bar;
  bar->setObjectName(QStringLiteral("tbrToolbar"));
  bar->setMovable(false);
  bar->setIconSize(QSize(24, 24));
  bar->setToolButtonStyle(Qt::ToolButtonIconOnly);
  SetHelpId(bar, context::kMainToolbar);
  // Toolbar keys and the commands they share with the menus.
  const struct {
    const char* key;
    const char* command;
    bool separatorBefore;
  } buttons[] = {
      {"AddDwg", "mnuFileAddDrawing", false},
      {"RemoveDwg", "mnuFileRemove", false},
      {"OpenList", "mnuFileOpenList", true},
      {"SaveList", "mnuFileSaveList", false},
      {"Plot", "mnuFilePlot", true},
      {"PlotTest", "mnuFilePlotTest", false},
      {"Logging", "mnuFileLogging", false},
      {"Layouts", "mnuOptionsLayouts", true},
      {"NPS", "mnuOptionsPlotSetups", false},
      {"Devices", "mnuOptionsPlotDevices", false},
      {"Settings", "mnuOptionsPlotSettings", false},
      {"Layers", "mnuOptionsLayers", false},
      {"Help", "mnuHelpMain", true},
  };
  for (const auto& button : buttons) {
    if (button.separatorBefore) bar->addSeparator();
    QAction* action = Command(QString::fromLatin1(button.command));
    bar->addAction(action);
    if (QWidget* widget = bar->widgetForAction(action)) {
      widget->setObjectName(QStringLiteral("tbr") + QString::fromLatin1(button.key));
    }
  }
  // The tooltips of the buttons keep the menu's shortcut in view.
  for (QAction* action : bar->actions()) {
    if (!action->shortcut().isEmpty() && !action->toolTip().isEmpty()) {
      action->setToolTip(QStringLiteral("%1 (%2)").arg(
          action->toolTip(), action->shortcut().toString(QKeySequence::NativeText)));
    }
  }
  Command(QStringLiteral("mnuHelpMain"))->setToolTip(Res(ids::kMenuHelpMain).remove(u'&'));
}

QAction* MainWindow::Command(const QString& name) const { return commands_.value(name); }

std::vector<int> MainWindow::SelectedPositions() const {
  std::vector<int> positions;
  for (const QModelIndex& index : list_->selectionModel()->selectedRows()) {
    positions.push_back(index.row() + 1);
  }
  std::sort(positions.begin(), positions.end());
  return positions;
}

void MainWindow::SelectPositions(const std::vector<int>& positions) {
  QItemSelection selection;
  for (int n : positions) {
    if (n >= 1 && n <= model_->rowCount()) {
      selection.select(model_->index(n - 1, 0), model_->index(n - 1, kListColumns - 1));
    }
  }
  list_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void MainWindow::UpdateCommands() {
  const int entries = ctx_.session->List.EntryCount();
  if (count_) {
    count_->setText(entries == 0 ? Res(ids::kStatusEmptyList)
                                 : Res(ids::kStatusDrawings).arg(entries));
  }
  const bool hasEntries = entries > 0;
  const std::size_t selected = hasEntries ? list_->selectionModel()->selectedRows().size() : 0;
  for (const char* name : {"mnuFileSaveList", "mnuFilePlot", "mnuFilePlotTest"}) {
    Command(QString::fromLatin1(name))->setEnabled(hasEntries);
  }
  for (const char* name : {"mnuFileRemove", "mnuOptionsLayouts", "mnuOptionsPlotSetups",
                           "mnuOptionsPlotDevices", "mnuOptionsPlotSettings"}) {
    Command(QString::fromLatin1(name))->setEnabled(selected >= 1);
  }
  Command(QStringLiteral("mnuOptionsLayers"))->setEnabled(selected == 1);
}

void MainWindow::ShowDetails() {
  const QModelIndex current = list_->selectionModel()->currentIndex();
  details_->setPlainText(current.isValid() ? model_->Details(current.row() + 1) : QString());
}

void MainWindow::Refresh() {
  setWindowTitle(Q(ctx_.session->Caption));
  setWindowModified(false);
  UpdateCommands();
}

bool MainWindow::CacheSelection() {
  const std::vector<int> positions = SelectedPositions();
  try {
    ctx_.session->Selection.SelectCountCache(positions);
  } catch (const SelectionTooLarge&) {
    ctx_.prompt->Ask({LoadResourceText(ids::kListSelectionInvalid),
                      LoadResourceText(ids::kErrorTitle), PromptIcon::Critical, PromptButtons::Ok});
    return false;
  }
  return !positions.empty();
}

HostSession* MainWindow::RequireHost() {
  if (!ctx_.host) {
    ctx_.prompt->Ask({LoadResourceText(ids::kHostLoadFailed), LoadResourceText(ids::kErrorTitle),
                      PromptIcon::Critical, PromptButtons::Ok});
  }
  return ctx_.host;
}

void MainWindow::AfterEdit() {
  // The dialogs changed the selected entries in place.
  ctx_.session->ReloadMainListview(true, true);
  Refresh();
}

void MainWindow::AddFiles(const QStringList& paths) {
  Session& session = *ctx_.session;
  bool changed = false;
  for (const QString& path : paths) {
    const QFileInfo info(path);
    if (!info.isFile()) continue;
    if (IsDrawingFile(S(path))) {
      changed |= AddDrawing(S(info.absoluteFilePath()));
    } else if (EndsWithIgnoreCase(S(path), "qx3")) {
      if (session.List.Empty() && session.ListName.empty() && !changed) {
        LoadListFile(session, *ctx_.prompt, S(info.absoluteFilePath()));
      } else {
        changed |= AppendListFile(session, *ctx_.prompt, S(info.absoluteFilePath()));
      }
    }
  }
  Refresh();
}

void MainWindow::AddDrawings() {
  const FileDialogRequest request{
      LoadResourceText(ids::kAddDrawingTitle), DrawingFilter(), {}, true, false};
  std::vector<std::string> chosen;
  if (auto* qtPrompt = dynamic_cast<QtPrompt*>(ctx_.prompt)) {
    chosen = qtPrompt->OpenFileNames(request);
  } else if (auto name = ctx_.prompt->OpenFileName(request)) {
    chosen.push_back(*name);
  }
  for (const std::string& name : chosen) {
    if (IsDrawingFile(name)) AddDrawing(name);
  }
  Refresh();
}

bool MainWindow::AddDrawing(const std::string& path) {
  const std::string problem = DrawingRowProblem(*ctx_.session, path);
  if (!problem.empty()) {
    ctx_.prompt->Ask({path + " : " + problem, LoadResourceText(ids::kErrorTitle),
                      PromptIcon::Exclamation, PromptButtons::Ok});
    return false;
  }
  return AddDrawingToList(*ctx_.session, path) != nullptr;
}

void MainWindow::RemoveSelected() {
  const std::vector<int> positions = SelectedPositions();
  if (positions.empty()) return;
  const int first = positions.front();
  if (RemoveSelectedEntries(*ctx_.session, *ctx_.prompt, positions) > 0) {
    // Keep a row selected where the removed ones were, for repeated Delete.
    const int count = ctx_.session->List.EntryCount();
    if (count > 0) SelectPositions({std::min(first, count)});
  }
  Refresh();
}

void MainWindow::NewList() {
  sheafwork::NewList(*ctx_.session, *ctx_.prompt);
  model_->ClearStatuses();
  Refresh();
}

void MainWindow::OpenList() {
  sheafwork::OpenList(*ctx_.session, *ctx_.prompt);
  Refresh();
}

void MainWindow::AppendList() {
  sheafwork::AppendList(*ctx_.session, *ctx_.prompt);
  Refresh();
}

void MainWindow::SaveList() {
  sheafwork::SaveList(*ctx_.session, *ctx_.prompt);
  Refresh();
}

void MainWindow::Jobs() {
  JobsDialog dialog(StoredPlotJobs(), this);
  if (dialog.exec() == QDialog::Accepted) StorePlotJobs(dialog.Jobs());
}

void MainWindow::Plot() {
  if (ctx_.session->List.Empty()) return;
  HostSession* host = RequireHost();
  if (!host) return;
  RowIcons icons(*model_, *list_, *status_, ctx_.progress);
  RunServices services;
  services.clock = ctx_.clock;
  services.observer = &icons;
  services.prompt = ctx_.prompt;
  // Worker processes only for the embedded host, which they start for
  // themselves; they share the drawings converted from DWG.
  std::unique_ptr<embedded::ScratchFolder> conversions;
  const int jobs = PlotJobsFor(StoredPlotJobs());
  if (jobs > 1 &&
      std::dynamic_pointer_cast<embedded::EmbeddedPreferences>(host->App().GetPreferences())) {
    try {
      conversions = std::make_unique<embedded::ScratchFolder>();
      services.jobs = jobs;
      services.workerCommand = WorkerCommand({}, conversions->path());
      icons.SetWorkers(true);
    } catch (const host::Error&) {
      // No folder for the conversions: the run plots its rows itself.
    }
  }
  RunResult result;
  {
    const Busy busy(*this);
    result = PlotAllEntries(*ctx_.session, *host, services);
  }
  model_->SetActiveRow(0);
  QString summary = Res(ids::kStatusSummary).arg(result.plotted).arg(result.failed);
  if (result.cancelled) {
    summary += Res(ids::kStatusCancelled);
  } else if (result.endedEarly) {
    summary += Res(ids::kStatusEndedEarly);
  }
  status_->setText(summary);
  for (const std::string& problem : result.logProblems) {
    ctx_.prompt->Ask(
        {problem, LoadResourceText(ids::kErrorTitle), PromptIcon::Exclamation, PromptButtons::Ok});
  }
  // The first failed row becomes the current one, its reason in view.
  for (int n = 1; n <= model_->rowCount(); ++n) {
    if (model_->Status(n) != RowStatus::Failed) continue;
    list_->setCurrentIndex(model_->index(n - 1, 0));
    break;
  }
  Refresh();
}

void MainWindow::PlotTest() {
  if (ctx_.session->List.Empty()) return;
  HostSession* host = RequireHost();
  if (!host) return;
  std::unique_ptr<PrinterCatalog> systemPrinters;
  std::unique_ptr<FontFolders> systemFonts;
  PrinterCatalog* printers = ctx_.printers;
  FontFolders* fonts = ctx_.fonts;
  if (!printers) printers = (systemPrinters = SystemPrinterCatalog()).get();
  if (!fonts) fonts = (systemFonts = SystemFontFolders()).get();
  PlotTestServices services{*printers, *fonts, ctx_.clock, {}};
  // A bar while the drawings are checked; the scan cannot be interrupted.
  QProgressDialog progress(this);
  progress.setObjectName(QStringLiteral("frmPlotTestProgress"));
  progress.setWindowTitle(Res(ids::kMenuPlotTest).remove(u'&'));
  progress.setCancelButton(nullptr);
  progress.setMinimumDuration(500);
  progress.setAutoClose(false);
  progress.setMinimumWidth(460);
  services.progress = [this, &progress](int row, int count, const std::string& drawing) {
    const QString text =
        Res(ids::kStatusTestRow).arg(row).arg(count).arg(Q(FileNameFromPath(drawing)));
    status_->setText(text);
    progress.setMaximum(count);
    progress.setValue(row - 1);
    progress.setLabelText(text);
    QApplication::processEvents();
  };
  std::string results;
  {
    const Busy busy(*this);
    results = RunPlotTest(*ctx_.session, *host, services);
  }
  progress.close();
  status_->clear();
  ResultsDialog dialog(results, ctx_.session->Log, *ctx_.prompt, ctx_.help, this);
  dialog.exec();
  Refresh();
}

void MainWindow::Logging() {
  const LogSettings before = ctx_.session->Log;
  LoggingDialog dialog(ctx_.session->Log, *ctx_.prompt, ctx_.help, this);
  if (dialog.exec() == QDialog::Accepted && !(ctx_.session->Log == before)) {
    ctx_.session->ListModified = true;
  }
  Refresh();
}

void MainWindow::Layouts() {
  if (!CacheSelection()) return;
  const std::vector<int> positions = SelectedPositions();
  if (positions.size() == 1) {
    LayoutsSingleDialog dialog(*ctx_.session, positions.front(), ctx_.host, *ctx_.prompt, ctx_.help,
                               this);
    if (dialog.exec() == QDialog::Accepted) AfterEdit();
  } else {
    LayoutsMultiDialog dialog(*ctx_.session, *ctx_.prompt, ctx_.help, this);
    if (dialog.exec() == QDialog::Accepted) AfterEdit();
  }
}

void MainWindow::PlotSetups() {
  if (!CacheSelection()) return;
  PageSetupsDialog dialog(*ctx_.session, ctx_.host, *ctx_.prompt, ctx_.help, this);
  if (dialog.exec() == QDialog::Accepted) AfterEdit();
}

void MainWindow::Devices() {
  if (!CacheSelection()) return;
  DevicesDialog dialog(*ctx_.session, ctx_.printers, ctx_.host, *ctx_.prompt, ctx_.help, this);
  if (dialog.exec() == QDialog::Accepted) AfterEdit();
}

void MainWindow::OpenSettings(int page) {
  if (!CacheSelection()) return;
  SettingsDialog dialog(*ctx_.session, ctx_.host, *ctx_.prompt, ctx_.help, page, this);
  if (dialog.exec() == QDialog::Accepted) AfterEdit();
}

void MainWindow::PlotSettings() { OpenSettings(SettingsDialog::kPlotPage); }
void MainWindow::Layers() { OpenSettings(SettingsDialog::kLayersPage); }

void MainWindow::HelpMain() {
  if (ctx_.help) ctx_.help->ShowTopic(QString::fromLatin1(topic::kMain));
}

void MainWindow::About() {
  AboutDialog dialog(*ctx_.prompt, this, [this] {
    SystemInfoDialog info(CollectSystemFacts(ctx_), this);
    info.exec();
    return true;
  });
  dialog.exec();
}

MainWindow::Busy::Busy(MainWindow& window) : window_(window) {
  // The menus, the toolbar and the list wait; the window itself stays enabled
  // so that the host's progress dialog, its child, keeps its Cancel button.
  window_.busy_ = true;
  window_.menuBar()->setEnabled(false);
  window_.toolbar_->setEnabled(false);
  window_.list_->setEnabled(false);
  QApplication::setOverrideCursor(Qt::WaitCursor);
}

MainWindow::Busy::~Busy() {
  QApplication::restoreOverrideCursor();
  window_.menuBar()->setEnabled(true);
  window_.toolbar_->setEnabled(true);
  window_.list_->setEnabled(true);
  window_.busy_ = false;
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (busy_) {
    event->ignore();  // a run is going on
    return;
  }
  if (closing_) {
    event->accept();
    return;
  }
  if (!ConfirmExit(*ctx_.prompt, forcedExit_)) {
    event->ignore();
    return;
  }
  closing_ = true;
  if (ctx_.rememberGeometry) {
    QSettings settings;
    settings.setValue(QStringLiteral("main/geometry"), saveGeometry());
    settings.setValue(QStringLiteral("main/state"), saveState());
    settings.setValue(QStringLiteral("main/columns"), list_->horizontalHeader()->saveState());
  }
  EndSession(*ctx_.session, ctx_.host, *ctx_.prompt);
  event->accept();
  emit Closed();
}

}  // namespace sheafwork::ui
