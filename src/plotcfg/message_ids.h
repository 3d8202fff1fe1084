#pragma once
// The string-table ids the plot-configuration routines use. Private to
// src/plotcfg/.

#include <string>

#include "res/string_table.h"

namespace sheafwork::plotcfg_ids {

inline constexpr int kCurrentTab = 72;            // "*Onglet courant*"
inline constexpr int kModelTab = 73;              // "Onglet Objet"
inline constexpr int kLastActiveLayout = 74;      // "Onglet Dernière présentation active"
inline constexpr int kAllLayouts = 75;            // "Toutes les présentations"
inline constexpr int kDefault = 76;               // "Par défaut"
inline constexpr int kErrorTitle = 88;            // "Erreur de traçage en différé Orvane"
inline constexpr int kLayerProblem = 100;         // "ERREUR: ... configuration des calques ..."
inline constexpr int kDisplayInModelSpace = 101;  // "Avertissement: ... est tilemode: "
inline constexpr int kViewNotFoundStart = 105;    // "Avertissement: vue existante <"
inline constexpr int kViewNotFoundEnd = 106;      // "> introuvable; ... du dessin: "
inline constexpr int kBadScaleToFit = 109;        // "Avertissement: paramètre d'échelle ..."
inline constexpr int kBadCustomScale = 110;       // "ERREUR: Configuration d'échelle ..."
inline constexpr int kPlotSettingsProblem = 111;  // "ERREUR: ... paramètres du tracé ..."
inline constexpr int kLayoutProblem = 114;        // "ERREUR: ... de la présentation, ..."
inline constexpr int kResultsSaveProblem = 197;   // "Erreur lors de l'enregistrement ..."
inline constexpr int kPseudoPrinter = 216;        // "Phantom Ole to KDX Printer"
inline constexpr int kModelTabName = 295;         // "Objet"
inline constexpr int kPaperSizeChanged = 313;     // "Le format de papier ... a été modifié"

/// The text of `Id`, read from the table once: the table is built into the
/// program and never changes while it runs.
template <int Id>
const std::string& CachedText() {
  static const std::string text = LoadResourceText(Id);
  return text;
}

}  // namespace sheafwork::plotcfg_ids
