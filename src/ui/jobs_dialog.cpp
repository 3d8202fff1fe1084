#include "ui/jobs_dialog.h"

#include <QFormLayout>
#include <QLabel>
#include <QSettings>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <thread>

#include "res/string_ids.h"
#include "ui/dialog_parts.h"
#include "ui/qt_text.h"

namespace sheafwork::ui {

namespace {

const QString kJobsKey = QStringLiteral("run/jobs");
constexpr int kMostJobs = 64;

}  // namespace

int StoredPlotJobs() {
  bool ok = false;
  const int jobs = QSettings().value(kJobsKey, 1).toInt(&ok);
  return ok ? std::clamp(jobs, 0, kMostJobs) : 1;
}

void StorePlotJobs(int jobs) { QSettings().setValue(kJobsKey, std::clamp(jobs, 0, kMostJobs)); }

int PlotJobsFor(int stored) {
  if (stored > 0) return stored;
  return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

JobsDialog::JobsDialog(int jobs, QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("frmJobs"));
  setWindowTitle(Res(ids::kJobsTitle));
  jobs_ = new QSpinBox(this);
  jobs_->setObjectName(QStringLiteral("spnJobs"));
  jobs_->setRange(0, kMostJobs);
  jobs_->setValue(jobs);
  auto* label = new QLabel(Res(ids::kJobsLabel), this);
  label->setBuddy(jobs_);
  auto* note = new QLabel(Res(ids::kJobsNote), this);
  note->setWordWrap(true);

  auto* form = new QFormLayout();
  form->addRow(label, jobs_);
  ButtonRow buttons = MakeButtonRow(this, ids::kLoggingOk, "cmdJobsOK", ids::kLoggingCancel,
                                    "cmdJobsCancel", 0, "");
  connect(buttons.ok, &QPushButton::clicked, this, &QDialog::accept);
  connect(buttons.cancel, &QPushButton::clicked, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(note);
  layout->addWidget(buttons.box);
}

int JobsDialog::Jobs() const { return jobs_->value(); }

}  // namespace sheafwork::ui
