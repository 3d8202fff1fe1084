#include "ui/settings_dialog.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <cmath>

#include "log/paths.h"
#include "plotcfg/layout_setup.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"
#include "ui/dialog_parts.h"
#include "ui/help.h"
#include "ui/icons.h"
#include "ui/list_value_check.h"

namespace sheafwork::ui {
namespace {

// Plot area radio buttons: their id in the button group is their index here.
const char* const kAreaCodes[] = {"#O", "#D", "#E", "#L"};
constexpr int kAreaViewId = 4;

// Items of the scale list carry the host's number; these two are not numbers.
constexpr int kCustomItem = -1;
constexpr int kVariesItem = -2;

std::optional<double> ParseScaleNumber(const QString& text) {
  QString value = text.trimmed();
  value.replace(u',', u'.');
  bool ok = false;
  const double number = value.toDouble(&ok);
  if (!ok || !std::isfinite(number) || number <= 0) return std::nullopt;
  return number;
}

// A layer's row on the layers page: its flag, the word and the icon for it.
void ShowLayerState(QTreeWidgetItem& item, bool plotted) {
  item.setData(1, Qt::UserRole, plotted);
  item.setText(1, Res(plotted ? ids::kSettingsOnWord : ids::kSettingsOffWord));
  item.setIcon(1, MakeIcon(plotted ? IconId::Good : IconId::Bad));
}

}  // namespace

std::vector<std::pair<std::string, bool>> ParseLayerFlags(const std::string& layers) {
  std::vector<std::pair<std::string, bool>> flags;
  std::size_t pos = 0;
  while (pos < layers.size()) {
    while (pos < layers.size() && layers[pos] == ' ') ++pos;
    const std::size_t blank = layers.find(' ', pos);
    if (pos >= layers.size() || blank == std::string::npos || blank + 1 >= layers.size()) break;
    const std::string name = layers.substr(pos, blank - pos);
    const char flag = layers[blank + 1];
    flags.emplace_back(name, flag != '0' && flag != 'F' && flag != 'f');
    pos = blank + 2;
  }
  return flags;
}

SettingsDialog::SettingsDialog(Session& session, HostSession* host, Prompt& prompt,
                               HelpViewer* help, int page, QWidget* parent)
    : QDialog(parent), session_(session), prompt_(prompt) {
  rows_ = CachedSelection(session_);
  const bool single = rows_.size() == 1;
  setObjectName(QStringLiteral("frmSettings"));
  setWindowTitle(single ? Res(ids::kSettingsTitle) +
                              Q(FileNameFromPath(session_.List.Entry(rows_.front()).FileName))
                        : Res(ids::kSettingsMultiTitle));
  setWindowIcon(MakeIcon(IconId::Settings));

  int plotHelp = context::kSettingsPlot;
  int layersHelp = context::kSettingsLayers;
  tabs_ = new QTabWidget(this);
  tabs_->setObjectName(QStringLiteral("tabSettings"));
  tabs_->addTab(BuildPlotPage(plotHelp), Res(ids::kSettingsPlotTab));
  tabs_->addTab(BuildLayersPage(layersHelp), Res(ids::kSettingsLayersTab));
  tabs_->setTabEnabled(kLayersPage, single);

  ButtonRow buttons = MakeButtonRow(this, ids::kSettingsOk, "cmdSettingsOk", ids::kSettingsCancel,
                                    "cmdSettingsCancel", ids::kSettingsHelp, "cmdSettingsHelp");
  SetHelpIds({buttons.ok, buttons.cancel, buttons.help}, plotHelp);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tabs_);
  layout->addWidget(buttons.box);
  connect(buttons.ok, &QPushButton::clicked, this, &SettingsDialog::accept);
  connect(buttons.cancel, &QPushButton::clicked, this, &SettingsDialog::reject);
  connect(buttons.help, &QPushButton::clicked, this, [this, help] {
    if (!help) return;
    help->ShowTopic(QString::fromLatin1(
        tabs_->currentIndex() == kLayersPage ? topic::kSettingsLayers : topic::kSettingsPlot));
  });
  InstallContextHelp(this, help, QString::fromLatin1(topic::kSettingsPlot));

  // What the rows say, and for one row what its drawing says.
  const BatchEntry& first = session_.List.Entry(rows_.front());
  if (single && host) {
    info_ =
        ReadDrawing(*host, first.FileName, kReadViews | kReadLayers | kReadSettings, first.Layout);
    if (info_.opened && !info_.viewsOk) {
      prompt_.Ask({LoadResourceText(ids::kSettingsViewsUnreadable),
                   LoadResourceText(ids::kAppTitle), PromptIcon::Exclamation, PromptButtons::Ok});
    }
  }
  for (const std::string& view : info_.views) views_->addItem(Q(view));
  if (views_->count() == 0 && single) {
    views_->addItem(Res(ids::kSettingsNone));
    views_->setEnabled(false);
    areaView_->setEnabled(!first.PlotArea.empty() && first.PlotArea[0] != '#');
  }
  if (!single) views_->setEditable(true);

  const auto differ = [this](auto field) {
    for (int n : rows_) {
      if (field(session_.List.Entry(n)) != field(session_.List.Entry(rows_.front()))) return true;
    }
    return false;
  };
  areaVaries_ = differ([](const BatchEntry& e) { return e.PlotArea; });
  scaleVaries_ =
      differ([](const BatchEntry& e) { return e.PlotScale + (e.ScaleCustom ? "C" : "S"); });
  const bool lwVaries = differ([](const BatchEntry& e) { return e.ScaleLW; });
  const bool fileVaries = differ([](const BatchEntry& e) { return e.PlotFile; });

  // Plot area.
  if (!areaVaries_) {
    if (!first.PlotArea.empty()) {
      ShowArea(first.PlotArea);
    } else if (info_.areaOk) {
      ShowArea(info_.settings.plotArea);
    } else if (IsAllLayouts(first.Layout)) {
      ShowArea("#O");
    } else {
      if (info_.opened) {
        prompt_.Ask({LoadResourceText(ids::kSettingsAreaUnreadable),
                     LoadResourceText(ids::kAppTitle), PromptIcon::Exclamation, PromptButtons::Ok});
      }
      ShowArea("#E");
    }
  }
  // Scale and lineweights.
  if (scaleVaries_) {
    scale_->insertItem(0, Res(ids::kSettingsVaries), kVariesItem);
    scale_->setCurrentIndex(0);
  } else if (!first.PlotScale.empty()) {
    ShowScale(first.PlotScale, first.ScaleCustom);
  } else if (info_.scaleOk) {
    ShowScale(info_.settings.plotScale, info_.settings.scaleCustom);
  } else {
    if (info_.opened) {
      prompt_.Ask({LoadResourceText(ids::kSettingsScaleUnreadable),
                   LoadResourceText(ids::kAppTitle), PromptIcon::Exclamation, PromptButtons::Ok});
    }
    ShowScale("S#0", false);
  }
  if (lwVaries) {
    scaleLW_->setTristate(true);
    scaleLW_->setCheckState(Qt::PartiallyChecked);
  } else {
    scaleLW_->setChecked(first.PlotScale.empty() && info_.scaleOk ? info_.settings.scaleLW
                                                                  : first.ScaleLW);
  }
  // Plot file.
  if (fileVaries) {
    fileGroup_->setChecked(false);
    fileName_->setPlaceholderText(Res(ids::kSettingsVaries));
  } else {
    ShowFile(first.PlotFile);
  }
  if (!single && !scaleVaries_ && first.PlotScale.empty()) scale_->setCurrentIndex(-1);
  // From here on, what the person changes is what OK writes.
  connect(fileGroup_, &QGroupBox::toggled, this, [this] { fileTouched_ = true; });
  connect(fileName_, &QLineEdit::textEdited, this, [this] { fileTouched_ = true; });
  connect(fileFolder_, &QLineEdit::textEdited, this, [this] { fileTouched_ = true; });
  connect(area_, &QButtonGroup::idToggled, this, [this] { areaTouched_ = true; });
  connect(views_, &QComboBox::currentTextChanged, this, [this] { areaTouched_ = true; });
  connect(scale_, &QComboBox::currentIndexChanged, this, [this] { scaleTouched_ = true; });
  connect(plotted_, &QLineEdit::textEdited, this, [this] { scaleTouched_ = true; });
  connect(drawingUnits_, &QLineEdit::textEdited, this, [this] { scaleTouched_ = true; });
  connect(scaleLW_, &QCheckBox::stateChanged, this, [this] { lwTouched_ = true; });

  // Layers of the one row: the drawing's, with the row's overrides.
  if (single) {
    if (info_.opened && !info_.layersOk) {
      prompt_.Ask({LoadResourceText(ids::kLayersUnreadable), LoadResourceText(ids::kErrorTitle),
                   PromptIcon::Critical, PromptButtons::Ok});
    }
    const auto overrides = ParseLayerFlags(first.Layers);
    for (const LayerState& layer : info_.layers) {
      bool plotted = layer.plotted;
      for (const auto& [name, flag] : overrides) {
        if (EqualsIgnoreCase(name, layer.name)) plotted = flag;
      }
      auto* item = new QTreeWidgetItem(layers_, {Q(layer.name), QString()});
      ShowLayerState(*item, plotted);
    }
  }
  UpdateCustom();
  tabs_->setCurrentIndex(page == kLayersPage && single ? kLayersPage : kPlotPage);
  resize(sizeHint().expandedTo(QSize(560, 0)));
}

QWidget* SettingsDialog::BuildPlotPage(int& helpId) {
  auto* page = new QWidget(this);
  page->setObjectName(QStringLiteral("pagePlotSettings"));
  SetHelpId(page, helpId++);

  auto* areaBox = Named(new QGroupBox(Res(ids::kSettingsAreaGroup), page), "grpArea", helpId);
  area_ = new QButtonGroup(this);
  const struct {
    int captionId;
    const char* name;
  } areas[] = {{ids::kSettingsAreaLayout, "optLayout"},
               {ids::kSettingsAreaDisplay, "optDisplay"},
               {ids::kSettingsAreaExtents, "optExtents"},
               {ids::kSettingsAreaLimits, "optLimits"},
               {ids::kSettingsAreaView, "optView"}};
  auto* areaGrid = new QGridLayout(areaBox);
  for (int i = 0; i < 5; ++i) {
    auto* radio = Named(new QRadioButton(Res(areas[i].captionId), areaBox), areas[i].name, helpId);
    area_->addButton(radio, i);
    areaGrid->addWidget(radio, i, 0);
    if (i == kAreaViewId) areaView_ = radio;
  }
  views_ = Named(new QComboBox(areaBox), "cboViews", helpId);
  views_->setMinimumWidth(150);
  areaGrid->addWidget(views_, kAreaViewId, 1);
  areaGrid->setRowStretch(5, 1);
  connect(areaView_, &QRadioButton::toggled, views_, [this](bool on) {
    if (on) views_->setFocus();
  });

  auto* scaleBox = Named(new QGroupBox(Res(ids::kSettingsScaleGroup), page), "grpScale", helpId);
  auto* scaleLabel = Named(new QLabel(Res(ids::kSettingsScale), scaleBox), "lblScale", helpId);
  scale_ = Named(new QComboBox(scaleBox), "cboScale", helpId);
  scaleLabel->setBuddy(scale_);
  scale_->addItem(Res(ids::kScaleCustomName), kCustomItem);
  scale_->addItem(Res(ids::kScaleToFitName), 0);
  for (const StandardScale& scale : StandardScales())
    scale_->addItem(Res(scale.nameId), scale.number);
  auto* customLabel = Named(new QLabel(Res(ids::kSettingsCustom), scaleBox), "lblCustom", helpId);
  plotted_ = Named(new QLineEdit(scaleBox), "txtPlottedUnits", helpId);
  customLabel->setBuddy(plotted_);
  auto* equals =
      Named(new QLabel(Res(ids::kSettingsUnitsEqual).trimmed(), scaleBox), "lblUnitsEqual", helpId);
  drawingUnits_ = Named(new QLineEdit(scaleBox), "txtDrawingUnits", helpId);
  auto* unitsLabel =
      Named(new QLabel(Res(ids::kSettingsDrawingUnits), scaleBox), "lblDrawingUnits", helpId);
  unitsLabel->setBuddy(drawingUnits_);
  const auto* validator = new QRegularExpressionValidator(
      QRegularExpression(QStringLiteral("[0-9]{0,9}([.,][0-9]{0,9})?")), this);
  for (QLineEdit* edit : {plotted_, drawingUnits_}) {
    edit->setValidator(validator);
    edit->setMaximumWidth(90);
    edit->setAlignment(Qt::AlignRight);
  }
  scaleLW_ =
      Named(new QCheckBox(Res(ids::kSettingsScaleLineweights), scaleBox), "chkScaleLW", helpId);
  auto* scaleGrid = new QGridLayout(scaleBox);
  scaleGrid->addWidget(scaleLabel, 0, 0);
  scaleGrid->addWidget(scale_, 0, 1, 1, 4);
  scaleGrid->addWidget(customLabel, 1, 0);
  scaleGrid->addWidget(plotted_, 1, 1);
  scaleGrid->addWidget(equals, 1, 2);
  scaleGrid->addWidget(drawingUnits_, 1, 3);
  scaleGrid->addWidget(unitsLabel, 1, 4);
  scaleGrid->addWidget(scaleLW_, 2, 0, 1, 5);
  scaleGrid->setRowStretch(3, 1);
  connect(scale_, &QComboBox::currentIndexChanged, this, &SettingsDialog::UpdateCustom);

  fileGroup_ = Named(new QGroupBox(Res(ids::kSettingsFileGroup), page), "grpPlotFile", helpId);
  fileGroup_->setCheckable(true);
  auto* nameLabel =
      Named(new QLabel(Res(ids::kSettingsFileName), fileGroup_), "lblPlotFileName", helpId);
  fileName_ = Named(new QLineEdit(fileGroup_), "txtPlotFileName", helpId);
  nameLabel->setBuddy(fileName_);
  auto* folderLabel =
      Named(new QLabel(Res(ids::kSettingsFileFolder), fileGroup_), "lblPlotFileFolder", helpId);
  fileFolder_ = Named(new QLineEdit(fileGroup_), "txtPlotFileFolder", helpId);
  folderLabel->setBuddy(fileFolder_);
  auto* browse = Named(MakeButton(ids::kSettingsFileBrowse, "cmdPlotFileBrowse", fileGroup_),
                       "cmdPlotFileBrowse", helpId);
  browse->setToolTip(Res(ids::kPlotFileTitle));
  auto* fileGrid = new QGridLayout(fileGroup_);
  fileGrid->addWidget(nameLabel, 0, 0);
  fileGrid->addWidget(fileName_, 0, 1, 1, 2);
  fileGrid->addWidget(folderLabel, 1, 0);
  fileGrid->addWidget(fileFolder_, 1, 1);
  fileGrid->addWidget(browse, 1, 2);
  connect(browse, &QPushButton::clicked, this, [this] {
    FileDialogRequest request;
    request.title = LoadResourceText(ids::kPlotFileTitle);
    request.filter = LoadResourceText(ids::kAllFilesFilter);
    const QString folder = fileFolder_->text().trimmed();
    request.fileName = S(folder.isEmpty() ? fileName_->text() : folder + u'/' + fileName_->text());
    request.confirmOverwrite = true;
    if (auto name = prompt_.SaveFileName(request)) {
      ShowFile(*name);
      fileTouched_ = true;
    }
  });

  auto* grid = new QGridLayout(page);
  grid->addWidget(areaBox, 0, 0);
  grid->addWidget(scaleBox, 0, 1);
  grid->addWidget(fileGroup_, 1, 0, 1, 2);
  grid->setColumnStretch(1, 1);
  return page;
}

QWidget* SettingsDialog::BuildLayersPage(int& helpId) {
  auto* page = new QWidget(this);
  page->setObjectName(QStringLiteral("pageLayers"));
  SetHelpId(page, helpId++);
  auto* group = Named(new QGroupBox(Res(ids::kSettingsLayersGroup), page), "grpLayers", helpId);
  layers_ = Named(new QTreeWidget(group), "lstLayers", helpId);
  layers_->setRootIsDecorated(false);
  layers_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  layers_->setHeaderLabels({Res(ids::kSettingsLayerName), Res(ids::kSettingsLayerPlot)});
  layers_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  layers_->header()->setStretchLastSection(false);
  layers_->header()->resizeSection(1, 170);
  layers_->setMinimumHeight(220);
  layers_->setSortingEnabled(false);
  auto* on = Named(MakeButton(ids::kSettingsLayerOn, "cmdLayerOn", group), "cmdLayerOn", helpId);
  auto* off =
      Named(MakeButton(ids::kSettingsLayerOff, "cmdLayerOff", group), "cmdLayerOff", helpId);
  auto* buttons = new QVBoxLayout;
  buttons->addWidget(on);
  buttons->addWidget(off);
  buttons->addStretch();
  auto* row = new QHBoxLayout(group);
  row->addWidget(layers_, 1);
  row->addLayout(buttons);
  auto* layout = new QVBoxLayout(page);
  layout->addWidget(group);
  connect(on, &QPushButton::clicked, this, [this] { SetLayerState(true); });
  connect(off, &QPushButton::clicked, this, [this] { SetLayerState(false); });
  connect(layers_, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
    layers_->setCurrentItem(item);
    SetLayerState(!item->data(1, Qt::UserRole).toBool());
  });
  return page;
}

void SettingsDialog::SetLayerState(bool plotted) {
  for (QTreeWidgetItem* item : layers_->selectedItems()) {
    ShowLayerState(*item, plotted);
    layersTouched_ = true;
  }
}

void SettingsDialog::ShowArea(const std::string& area) {
  for (int i = 0; i < 4; ++i) {
    if (area == kAreaCodes[i]) {
      area_->button(i)->setChecked(true);
      return;
    }
  }
  areaView_->setEnabled(true);
  areaView_->setChecked(true);
  const int index = views_->findText(Q(area));
  if (index >= 0) {
    views_->setCurrentIndex(index);
  } else {
    if (!views_->isEnabled()) views_->clear();
    views_->setEnabled(true);
    views_->insertItem(0, Q(area));
    views_->setCurrentIndex(0);
  }
}

void SettingsDialog::ShowScale(const std::string& scale, bool custom) {
  const std::size_t hash = scale.find('#');
  const std::string firstPart(TrimSpaces(std::string_view(scale).substr(0, hash)));
  const std::string secondPart =
      hash == std::string::npos ? std::string()
                                : std::string(TrimSpaces(std::string_view(scale).substr(hash + 1)));
  if (custom) {
    scale_->setCurrentIndex(scale_->findData(kCustomItem));
    plotted_->setText(Q(firstPart));
    drawingUnits_->setText(Q(secondPart));
    return;
  }
  bool ok = false;
  const int number = Q(secondPart).toInt(&ok);
  const int index = ok && (firstPart == "S" || firstPart == "0") ? scale_->findData(number) : -1;
  scale_->setCurrentIndex(index >= 0 ? index : scale_->findData(0));
}

void SettingsDialog::ShowFile(const std::string& file) {
  fileGroup_->setChecked(!file.empty());
  fileName_->setText(Q(FileNameFromPath(file)));
  std::string folder = FolderFromPath(file);
  if (folder.size() > 1 && (folder.back() == '/' || folder.back() == '\\')) folder.pop_back();
  fileFolder_->setText(Q(folder));
}

void SettingsDialog::UpdateCustom() {
  const bool custom = scale_->currentData().toInt() == kCustomItem;
  plotted_->setEnabled(custom);
  drawingUnits_->setEnabled(custom);
  if (custom && plotted_->text().isEmpty()) plotted_->setText(QStringLiteral("1"));
  if (custom && drawingUnits_->text().isEmpty()) drawingUnits_->setText(QStringLiteral("1"));
}

std::optional<std::string> SettingsDialog::AreaValue() const {
  const int id = area_->checkedId();
  if (id < 0) return std::nullopt;
  if (id < kAreaViewId) return std::string(kAreaCodes[id]);
  const QString view = views_->currentText().trimmed();
  if (view.isEmpty() || (!views_->isEditable() && !views_->isEnabled())) return std::nullopt;
  return S(view);
}

std::string SettingsDialog::PlotFilePath() const {
  const QString folder = fileFolder_->text().trimmed();
  const QString name = fileName_->text().trimmed();
  return S(folder.isEmpty() ? name : folder + u'/' + name);
}

bool SettingsDialog::ValidatePlotFile() {
  if (!fileGroup_->isChecked() || !fileTouched_ || fileName_->text().trimmed().isEmpty())
    return true;
  const std::string path = PlotFilePath();
  int refused = 0;
  if (path.size() > 255) {
    refused = ids::kFileNameTooLong;
  } else if (!IsValidFileName(path)) {
    refused = ids::kFileNameNotValid;
  }
  if (refused == 0) return true;
  prompt_.Ask({LoadResourceText(refused), LoadResourceText(ids::kInvalidFileTitle),
               PromptIcon::Exclamation, PromptButtons::Ok});
  tabs_->setCurrentIndex(kPlotPage);
  fileName_->setFocus();
  return false;
}

void SettingsDialog::accept() {
  const bool single = rows_.size() == 1;
  // Scale. Lineweight scaling only counts with a scale, so it writes the
  // scale shown too.
  const int scaleItem = scale_->currentIndex() < 0 ? kVariesItem : scale_->currentData().toInt();
  const bool writeScale = scaleTouched_ || (lwTouched_ && scaleItem != kVariesItem);
  std::optional<std::string> scale;
  bool custom = false;
  if (!writeScale) {
    // left as it was
  } else if (scaleItem == kCustomItem) {
    const auto plotted = ParseScaleNumber(plotted_->text());
    const auto units = ParseScaleNumber(drawingUnits_->text());
    if (!plotted || !units) {
      QApplication::beep();
      tabs_->setCurrentIndex(kPlotPage);
      (plotted ? drawingUnits_ : plotted_)->setFocus();
      return;
    }
    scale = FormatScaleNumber(*plotted) + "#" + FormatScaleNumber(*units);
    custom = true;
  } else if (scaleItem != kVariesItem) {
    scale = "S#" + std::to_string(scaleItem);
  }
  if (!ValidatePlotFile()) return;

  const std::optional<std::string> area = areaTouched_ ? AreaValue() : std::nullopt;
  std::string file;
  if (fileGroup_->isChecked() && !fileName_->text().trimmed().isEmpty()) file = PlotFilePath();
  std::string layers;
  if (single && layersTouched_) {
    for (int i = 0; i < layers_->topLevelItemCount(); ++i) {
      const QTreeWidgetItem* item = layers_->topLevelItem(i);
      const std::string name = S(item->text(0));
      if (name.empty() || name.find(' ') != std::string::npos) continue;  // not representable
      if (!layers.empty()) layers += ' ';
      layers += name + (item->data(1, Qt::UserRole).toBool() ? " 1" : " 0");
    }
  }
  if ((area && !AcceptListValue(prompt_, ListField::PlotArea, *area)) ||
      (fileTouched_ && !AcceptListValue(prompt_, ListField::PlotFile, file, fileName_)) ||
      (single && layersTouched_ && !AcceptListValue(prompt_, ListField::Layers, layers))) {
    return;
  }
  for (int n : rows_) {
    BatchEntry& entry = session_.List.Entry(n);
    if (area) entry.PlotArea = *area;
    if (scale) {
      entry.PlotScale = *scale;
      entry.ScaleCustom = custom;
    }
    if (lwTouched_ && scaleLW_->checkState() != Qt::PartiallyChecked)
      entry.ScaleLW = scaleLW_->isChecked();
    if (fileTouched_) entry.PlotFile = file;
    if (single && layersTouched_) entry.Layers = layers;
  }
  QDialog::accept();
}

}  // namespace sheafwork::ui
