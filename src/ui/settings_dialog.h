#pragma once
// The plot settings dialog: plot area, scale, lineweight scaling and plot file
// of the selected rows on its first page, the layers a row plots on its
// second.
#include <QDialog>
#include <optional>
#include <string>
#include <vector>

#include "batch/plot_values.h"
#include "batch/session.h"
#include "host/host_session.h"
#include "prompt/prompt.h"
#include "ui/drawing_reader.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QRadioButton;
class QTabWidget;
class QTreeWidget;

namespace sheafwork::ui {

class HelpViewer;

/// The scale list offers "Personnalisé", "Ajuster au format", then these.
using sheafwork::StandardScales;

/// The layer flags of a row's Layers text, in order ("name flag" pairs).
std::vector<std::pair<std::string, bool>> ParseLayerFlags(const std::string& layers);

class SettingsDialog : public QDialog {
  Q_OBJECT

 public:
  static constexpr int kPlotPage = 0;
  static constexpr int kLayersPage = 1;

  /// Edits every row of the session's selection cache; the layers page only
  /// for a single row. `host` may be null (no drawing is read then).
  SettingsDialog(Session& session, HostSession* host, Prompt& prompt, HelpViewer* help, int page,
                 QWidget* parent = nullptr);

  void accept() override;

 private:
  QWidget* BuildPlotPage(int& helpId);
  QWidget* BuildLayersPage(int& helpId);
  void ShowArea(const std::string& area);
  void ShowScale(const std::string& scale, bool custom);
  void ShowFile(const std::string& file);
  void SetLayerState(bool plotted);
  void UpdateCustom();
  /// The row encodings of the plot page; nullopt for a field left as it was.
  std::optional<std::string> AreaValue() const;
  /// The plot file the folder and name fields give, both trimmed.
  std::string PlotFilePath() const;
  bool ValidatePlotFile();

  Session& session_;
  Prompt& prompt_;
  std::vector<int> rows_;
  DrawingInfo info_;
  QTabWidget* tabs_ = nullptr;
  QButtonGroup* area_ = nullptr;
  QRadioButton* areaView_ = nullptr;
  QComboBox* views_ = nullptr;
  QComboBox* scale_ = nullptr;
  QLineEdit* plotted_ = nullptr;
  QLineEdit* drawingUnits_ = nullptr;
  QCheckBox* scaleLW_ = nullptr;
  QGroupBox* fileGroup_ = nullptr;
  QLineEdit* fileName_ = nullptr;
  QLineEdit* fileFolder_ = nullptr;
  QTreeWidget* layers_ = nullptr;
  bool areaVaries_ = false;
  bool scaleVaries_ = false;
  bool areaTouched_ = false;
  bool scaleTouched_ = false;
  bool lwTouched_ = false;
  bool fileTouched_ = false;
  bool layersTouched_ = false;
};

}  // namespace sheafwork::ui
