#include "ui/batch_model.h"

#include <QMimeData>
#include <QUrl>

#include "batch/list_row.h"
#include "res/string_ids.h"
#include "ui/icons.h"
#include "ui/qt_text.h"

namespace sheafwork::ui {

BatchModel::BatchModel(Session& session, QObject* parent)
    : QAbstractTableModel(parent),
      session_(session),
      good_(MakeIcon(IconId::Good)),
      bad_(MakeIcon(IconId::Bad)),
      pending_(MakeIcon(IconId::Pending)),
      drawing_(MakeIcon(IconId::Drawing)) {
  for (int n = 1; n <= session_.List.EntryCount(); ++n) rows_.push_back(RowOf(n));
  session_.View = this;
}

BatchModel::~BatchModel() {
  if (session_.View == this) session_.View = nullptr;
}

BatchModel::Row BatchModel::RowOf(int n) const {
  const BatchEntry& entry = session_.List.Entry(n);
  Row row;
  const auto texts = ListRowTexts(entry);
  for (std::size_t i = 0; i < texts.size(); ++i) row.texts[i] = Q(texts[i]);
  row.path = Q(entry.FileName);
  return row;
}

int BatchModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int BatchModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kListColumns;
}

QVariant BatchModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const Row& row = rows_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
      return row.texts[static_cast<std::size_t>(index.column())];
    case Qt::ToolTipRole: {
      QString tip =
          index.column() <= 1 ? row.path : row.texts[static_cast<std::size_t>(index.column())];
      if (row.status == RowStatus::Failed) tip += u'\n' + FailureText(row);
      return tip;
    }
    case Qt::DecorationRole:
      if (index.column() != 0) return {};
      if (index.row() + 1 == activeRow_) return pending_;
      switch (row.status) {
        case RowStatus::Plotted:
          return good_;
        case RowStatus::Failed:
          return bad_;
        case RowStatus::NotPlotted:
          return drawing_;
      }
      return {};
    default:
      return {};
  }
}

QVariant BatchModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
      section >= kListColumns) {
    return QAbstractTableModel::headerData(section, orientation, role);
  }
  return Q(ListColumnTitle(section));
}

Qt::ItemFlags BatchModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::ItemIsDropEnabled;
  return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDropEnabled |
         Qt::ItemNeverHasChildren;
}

Qt::DropActions BatchModel::supportedDropActions() const {
  return Qt::CopyAction | Qt::LinkAction | Qt::MoveAction;
}

QStringList BatchModel::mimeTypes() const { return {QStringLiteral("text/uri-list")}; }

bool BatchModel::canDropMimeData(const QMimeData* data, Qt::DropAction, int, int,
                                 const QModelIndex&) const {
  // Only a list of files is taken.
  return data && data->hasUrls();
}

bool BatchModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                              const QModelIndex& parent) {
  if (!canDropMimeData(data, action, row, column, parent)) return false;
  QStringList paths;
  for (const QUrl& url : data->urls()) {
    if (url.isLocalFile()) paths << url.toLocalFile();
  }
  if (paths.isEmpty()) return false;
  emit filesDropped(paths);
  // The entries were added by the session; nothing is moved in the view.
  return false;
}

void BatchModel::ListReloaded(bool keepSelection) {
  keepSelection_ = keepSelection;
  beginResetModel();
  rows_.clear();
  for (int n = 1; n <= session_.List.EntryCount(); ++n) rows_.push_back(RowOf(n));
  activeRow_ = 0;
  endResetModel();
  keepSelection_ = false;
}

void BatchModel::EntryAppended(int n) {
  const int row = rowCount();
  beginInsertRows({}, row, row);
  rows_.push_back(RowOf(n));
  endInsertRows();
}

void BatchModel::EntryRemoved(int n) {
  if (n < 1 || n > rowCount()) return;
  beginRemoveRows({}, n - 1, n - 1);
  rows_.erase(rows_.begin() + (n - 1));
  if (activeRow_ == n) activeRow_ = 0;
  if (activeRow_ > n) --activeRow_;
  endRemoveRows();
}

RowStatus BatchModel::Status(int n) const {
  if (n < 1 || n > rowCount()) return RowStatus::NotPlotted;
  return rows_[static_cast<std::size_t>(n - 1)].status;
}

void BatchModel::SetStatus(int n, RowStatus status, QStringList reasons) {
  if (n < 1 || n > rowCount()) return;
  Row& row = rows_[static_cast<std::size_t>(n - 1)];
  row.status = status;
  row.reasons = status == RowStatus::Failed ? std::move(reasons) : QStringList();
  if (activeRow_ == n) activeRow_ = 0;
  emit dataChanged(index(n - 1, 0), index(n - 1, kListColumns - 1),
                   {Qt::DecorationRole, Qt::ToolTipRole});
}

void BatchModel::ClearStatuses() {
  for (Row& row : rows_) {
    row.status = RowStatus::NotPlotted;
    row.reasons.clear();
  }
  activeRow_ = 0;
  if (!rows_.empty()) {
    emit dataChanged(index(0, 0), index(rowCount() - 1, kListColumns - 1),
                     {Qt::DecorationRole, Qt::ToolTipRole});
  }
}

QString BatchModel::FailureText(const Row& row) {
  return row.reasons.isEmpty() ? Res(ids::kDetailsNoReason) : row.reasons.join(u'\n');
}

QString BatchModel::Details(int n) const {
  if (n < 1 || n > rowCount()) return {};
  const Row& row = rows_[static_cast<std::size_t>(n - 1)];
  const int state = row.status == RowStatus::Plotted  ? ids::kDetailsPlotted
                    : row.status == RowStatus::Failed ? ids::kDetailsFailed
                                                      : ids::kDetailsNotPlotted;
  QString text = row.path + u'\n' + Res(ids::kDetailsState) + Res(state);
  if (row.status == RowStatus::Failed) text += u'\n' + FailureText(row);
  return text;
}

void BatchModel::SetActiveRow(int n) {
  const int previous = activeRow_;
  activeRow_ = n;
  for (int row : {previous, n}) {
    if (row >= 1 && row <= rowCount()) {
      emit dataChanged(index(row - 1, 0), index(row - 1, 0), {Qt::DecorationRole});
    }
  }
}

}  // namespace sheafwork::ui
