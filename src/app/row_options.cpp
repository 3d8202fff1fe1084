#include "app/row_options.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <utility>

#include "batch/batch_entry.h"
#include "batch/list_value.h"
#include "batch/plot_values.h"
#include "platform/code_page_path.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

namespace {

std::string Refused(const std::string& option, const std::string& value, int id,
                    const std::string& tail = "") {
  return option + " : « " + value + " » " + LoadResourceText(id) + tail;
}

// The scale options on `row`; the reason when they are refused.
std::string ApplyScale(const EntryFieldOptions& fields, BatchEntry& row) {
  const bool customRatio = fields.customScale && !fields.customScale->empty();
  if (customRatio) {
    if (fields.scale) return LoadResourceText(ids::kCliScaleConflict);
    const auto code = PlotScaleCode(*fields.customScale, true);
    if (!code) return Refused("--custom-scale", *fields.customScale, ids::kCliBadCustomScale);
    row.PlotScale = code->plotScale;
    row.ScaleCustom = true;
  } else if (fields.scale) {
    const bool custom = fields.customScale.has_value();
    const auto code = PlotScaleCode(*fields.scale, custom);
    if (!code) {
      if (custom) return Refused("--scale", *fields.scale, ids::kCliBadCustomScale);
      if (PlotScaleCode(*fields.scale, true)) {
        return Refused("--scale", *fields.scale, ids::kCliNotStandardScale, *fields.scale);
      }
      return Refused("--scale", *fields.scale, ids::kCliBadScale, AcceptedPlotScales());
    }
    row.PlotScale = code->plotScale;
    row.ScaleCustom = code->custom;
  } else if (fields.customScale) {
    // The bare flag on a row that keeps its scale text.
    if (row.PlotScale.empty() || !IsUsableScale(row.PlotScale, true)) {
      return Refused("--custom-scale", row.PlotScale, ids::kCliBadCustomScale);
    }
    row.ScaleCustom = true;
  }
  return {};
}

}  // namespace

void AddText(CLI::App* command, const std::string& name, std::optional<std::string>& target,
             const std::string& help) {
  command->add_option_function<std::string>(
      name, [&target](const std::string& v) { target = v; }, help);
}

bool EntryFieldOptions::Any() const {
  return layout || setup || device || layers || area || scale || customScale || scaleLineweights ||
         plotFile;
}

void AddRowOptions(CLI::App& command, EntryFieldOptions& f) {
  AddText(&command, "--layout", f.layout,
          "Présentation (Layout) ; « Toutes les présentations » les trace toutes");
  AddText(&command, "--setup", f.setup,
          "Mise en page (PlotSetup), ou DESSIN|NOM d'un autre dessin");
  AddText(&command, "--device", f.device,
          "Périphérique de traçage (PlotDevice), par exemple PDF.pc3");
  AddText(&command, "--layers", f.layers, "Calques : paires « nom 0|1 » (Layers)");
  AddText(&command, "--area", f.area,
          "Aire de tracé (PlotArea) : extents (étendue), display (affichage), limits "
          "(limites), layout (présentation), view:NOM (vue enregistrée) ou "
          "window:X1,Y1,X2,Y2 (fenêtre en unités du dessin) ; les codes #E, #D, #L, #O "
          "sont aussi acceptés ; \"\" garde celle de la présentation");
  AddText(&command, "--scale", f.scale,
          "Echelle du tracé (PlotScale) : fit (ajuster au format), 1:1, 1:2, 1:4, 1:8, 1:10, "
          "1:16, 1:20, 1:30, 1:40, 1:50, 1:100, 2:1, 4:1, 8:1, 10:1, 100:1, ou une échelle "
          "impériale écrite comme dans la fenêtre des réglages (\"1/4\\\" = 1'0\\\"\") ; le "
          "code S#n est aussi accepté ; \"\" garde celle de la présentation");
  command
      .add_option_function<std::string>(
          "--custom-scale", [&f](const std::string& v) { f.customScale = v; },
          "Echelle personnalisée N:M, N unités tracées pour M unités du dessin (1:25, "
          "1:33.3) ; sans valeur, --scale donne une échelle personnalisée, aussi en code "
          "N#M (ScaleCustom)")
      ->expected(0, 1)
      ->type_name("[N:M]");
  command.add_flag_function(
      "--scale-lineweights,!--no-scale-lineweights",
      [&f](std::int64_t count) { f.scaleLineweights = count > 0; },
      "Mettre à l'échelle les épaisseurs de ligne, ou non (ScaleLW)");
  AddText(&command, "--plot-file", f.plotFile, "Tracer dans ce fichier (PlotFile)");
}

std::string ApplyRowOptions(const EntryFieldOptions& fields, BatchEntry& entry) {
  BatchEntry row = entry;
  if (fields.layout) row.Layout = *fields.layout;
  if (fields.setup) {
    // A page setup of another drawing, "drawing|setup": the drawing is a path.
    const std::size_t bar = fields.setup->find('|');
    row.PlotSetup = bar == std::string::npos
                        ? *fields.setup
                        : CodePagePath(fields.setup->substr(0, bar)) + fields.setup->substr(bar);
  }
  if (fields.device) row.PlotDevice = *fields.device;
  if (fields.layers) row.Layers = *fields.layers;
  if (fields.plotFile) row.PlotFile = CodePagePath(*fields.plotFile);
  if (fields.area) {
    const auto code = PlotAreaCode(*fields.area);
    if (!code) return Refused("--area", *fields.area, ids::kCliBadArea, AcceptedPlotAreas());
    row.PlotArea = *code;
  }
  if (std::string problem = ApplyScale(fields, row); !problem.empty()) return problem;
  if (fields.scaleLineweights) row.ScaleLW = *fields.scaleLineweights;
  // What the list file could not hold is refused before anything changes.
  const std::pair<ListField, const std::string*> stored[] = {
      {ListField::Layout, &row.Layout},     {ListField::PageSetup, &row.PlotSetup},
      {ListField::Device, &row.PlotDevice}, {ListField::Layers, &row.Layers},
      {ListField::PlotArea, &row.PlotArea}, {ListField::PlotScale, &row.PlotScale},
      {ListField::PlotFile, &row.PlotFile}};
  for (const auto& [field, value] : stored) {
    const ValueFault fault = CheckListValue(field, *value);
    if (IsRefused(fault)) return ValueFaultMessage(field, fault);
  }
  entry = std::move(row);
  return {};
}

}  // namespace sheafwork
