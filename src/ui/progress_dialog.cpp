#include "ui/progress_dialog.h"

#include <QApplication>
#include <QPushButton>

#include "embedded/automation/embedded_host.h"
#include "res/string_ids.h"
#include "ui/icons.h"
#include "ui/qt_text.h"

namespace sheafwork::ui {

ProgressDialog::~ProgressDialog() { delete dialog_.data(); }

void ProgressDialog::Start(int total) {
  delete dialog_.data();
  failures_ = 0;
  total_ = total;
  sheets_ = 0;
  dialog_ = new QProgressDialog(QApplication::activeWindow());
  dialog_->setObjectName(QStringLiteral("frmProgress"));
  dialog_->setWindowTitle(Res(ids::kProgressTitle));
  dialog_->setWindowIcon(MakeIcon(IconId::Plot));
  dialog_->setWindowModality(Qt::ApplicationModal);
  dialog_->setAutoClose(false);
  dialog_->setAutoReset(false);
  dialog_->setMinimumDuration(0);
  dialog_->setMinimumWidth(460);
  auto* cancel = new QPushButton(Res(ids::kProgressCancel), dialog_);
  cancel->setObjectName(QStringLiteral("cmdProgressCancel"));
  dialog_->setCancelButton(cancel);
  dialog_->setRange(0, std::max(total, 1));
  dialog_->setValue(0);
  dialog_->setLabelText(Res(ids::kProgressStarting));
  dialog_->show();
  QApplication::processEvents();
}

void ProgressDialog::Step(const std::string& drawing, const std::string& layout, int n, int total) {
  if (!dialog_) return;
  dialog_->setMaximum(std::max({total, n, 1}));
  dialog_->setValue(std::max(n - 1, 0));
  QString text = Res(ids::kProgressStep).arg(n).arg(std::max(total, n)).arg(Q(drawing), Q(layout));
  if (failures_ > 0) text += u'\n' + Res(ids::kProgressFailures).arg(failures_);
  dialog_->setLabelText(text);
  QApplication::processEvents();
}

bool ProgressDialog::Cancelled() {
  if (!dialog_) return false;
  QApplication::processEvents();
  return dialog_->wasCanceled();
}

void ProgressDialog::Finish() {
  if (!dialog_) return;
  dialog_->setValue(dialog_->maximum());
  dialog_->close();
  dialog_->deleteLater();
  dialog_ = nullptr;
  QApplication::processEvents();
}

std::shared_ptr<host::Application> MakeDesktopEmbeddedHost(
    std::shared_ptr<ProgressDialog> progress) {
  embedded::EmbeddedHostOptions options;
  options.progress = std::move(progress);
  return embedded::MakeEmbeddedHost(std::move(options));
}

void ProgressDialog::SheetPlotted(const std::string& drawing) {
  if (!dialog_) return;
  ++sheets_;
  const int total = std::max(total_, sheets_);
  dialog_->setMaximum(std::max(total, 1));
  dialog_->setValue(sheets_);
  QString text = Res(ids::kProgressSheetDone).arg(sheets_).arg(total).arg(Q(drawing));
  if (failures_ > 0) text += u'\n' + Res(ids::kProgressFailures).arg(failures_);
  dialog_->setLabelText(text);
  QApplication::processEvents();
}

void ProgressDialog::PlotFailed(const std::string& reason) {
  ++failures_;
  if (dialog_) dialog_->setToolTip(Q(reason));
  if (failureListener_) failureListener_(reason);
}

}  // namespace sheafwork::ui
