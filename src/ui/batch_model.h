#pragma once
// The main list as a Qt model over the session's BatchList: row n shows entry
// n + 1 in five columns, the first with the row's plot status icon.
#include <QAbstractTableModel>
#include <QIcon>
#include <array>
#include <vector>

#include "batch/session.h"
#include "plotrun/plot_run.h"

namespace sheafwork::ui {

class BatchModel : public QAbstractTableModel, public ListObserver {
  Q_OBJECT

 public:
  /// Follows `session` from now on (it becomes the session's view).
  explicit BatchModel(Session& session, QObject* parent = nullptr);
  ~BatchModel() override;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  Qt::DropActions supportedDropActions() const override;
  QStringList mimeTypes() const override;
  bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                       const QModelIndex& parent) const override;
  bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                    const QModelIndex& parent) override;

  // ListObserver
  void ListReloaded(bool keepSelection) override;
  void EntryAppended(int n) override;
  void EntryRemoved(int n) override;

  /// The status icon of entry `n` (from 1).
  RowStatus Status(int n) const;
  /// Sets the status of entry `n`; a failed one keeps the reasons the host
  /// gave, which its tooltips and details show.
  void SetStatus(int n, RowStatus status, QStringList reasons = {});
  /// Entry `n` for a person: its drawing, its status and, when it failed,
  /// why (or that the host gave no reason).
  QString Details(int n) const;
  void ClearStatuses();
  /// Marks entry `n` as the one being plotted (0: none).
  void SetActiveRow(int n);

  /// Whether the last reload asked to keep the selection.
  bool KeepSelection() const { return keepSelection_; }

 signals:
  /// Files were dropped on the list: drawings and list files, in order.
  void filesDropped(const QStringList& paths);

 private:
  /// What a row shows, kept so that the view always sees the rows it was
  /// told of, also while an entry is being removed.
  struct Row {
    std::array<QString, 5> texts;
    QString path;
    RowStatus status = RowStatus::NotPlotted;
    QStringList reasons;
  };
  /// Why a failed row failed, one reason a line.
  static QString FailureText(const Row& row);
  Row RowOf(int n) const;

  Session& session_;
  std::vector<Row> rows_;
  int activeRow_ = 0;
  bool keepSelection_ = false;
  QIcon good_, bad_, pending_, drawing_;
};

}  // namespace sheafwork::ui
