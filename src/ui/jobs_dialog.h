#pragma once
// How many processes plot the rows of a run (Options menu), kept in the
// application's settings beside the window's geometry.
#include <QDialog>

class QSpinBox;

namespace sheafwork::ui {

/// The number of plot processes the settings hold: 1 when none is stored,
/// 0 for one per core.
int StoredPlotJobs();
/// Keeps `jobs` in the settings.
void StorePlotJobs(int jobs);
/// The number of processes a run gets for a stored value.
int PlotJobsFor(int stored);

class JobsDialog : public QDialog {
  Q_OBJECT

 public:
  explicit JobsDialog(int jobs, QWidget* parent = nullptr);
  int Jobs() const;

 private:
  QSpinBox* jobs_ = nullptr;
};

}  // namespace sheafwork::ui
