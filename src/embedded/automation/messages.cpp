#include "embedded/automation/messages.h"

namespace sheafwork::embedded::host_messages {

namespace {

std::string S(std::string_view text) { return std::string(text); }
std::string Quoted(std::string_view text) { return "« " + S(text) + " »"; }

}  // namespace

std::string FileNotFound(std::string_view path) { return "Fichier introuvable : " + S(path); }

std::string NoDwgConverter(std::string_view path) {
  return "aucun convertisseur DWG n'est installé (lancez scripts/setup.sh, ou nommez-en un dans "
         "SHEAFWORK_DWG_CONVERTER) : " +
         S(path);
}

std::string NoNode(std::string_view path) {
#ifdef _WIN32
  return "Node.js est introuvable (node.exe n'est dans aucun dossier du PATH) : installez Node.js "
         "pour ouvrir les dessins DWG : " +
         S(path);
#else
  return "Node.js est introuvable (commande « node ») : installez le paquet nodejs (ou lancez "
         "scripts/setup.sh) pour ouvrir les dessins DWG : " +
         S(path);
#endif
}

std::string ConversionFailed(std::string_view path, std::string_view reason) {
  return "la conversion DWG a échoué (" + S(reason) + ") : " + S(path);
}

std::string ConvertedDrawingUnreadable(std::string_view path, std::string_view reason) {
  return "le DXF converti de ce dessin DWG est illisible (" + S(reason) + ") : " + S(path);
}

std::string ConverterExit(int status) {
  return "le convertisseur a rendu le code " + std::to_string(status);
}

std::string ConverterNoOutput() { return "le convertisseur n'a pas écrit de fichier DXF"; }

std::string ConverterTimedOut(int seconds) {
  return "le convertisseur a été arrêté au bout de " + std::to_string(seconds) + " s";
}

std::string UnsupportedFile(std::string_view path) {
  return "type de dessin non pris en charge (attendu : .dxf, .dwg ou .dwt) : " + S(path);
}

std::string HostClosed() { return "l'hôte embarqué est fermé"; }

std::string DocumentClosed(std::string_view name) {
  return "le dessin " + Quoted(name) + " est fermé";
}

std::string NoActiveDocument() { return "aucun dessin n'est ouvert"; }

std::string IndexOutOfRange(std::int32_t index, std::int32_t count) {
  return "indice hors limites : " + std::to_string(index) + " (" + std::to_string(count) +
         " élément(s))";
}

std::string UnknownVariable(std::string_view name) {
  return "variable système inconnue : " + S(name);
}

std::string ReadOnlyVariable(std::string_view name) {
  return "la variable système " + S(name) + " est en lecture seule";
}

std::string VariableType(std::string_view name) {
  return "Type incompatible : valeur de type inattendu pour la variable système " + S(name);
}

std::string VariableRange(std::string_view name, int min, int max) {
  return "valeur hors limites pour la variable système " + S(name) + " (" + std::to_string(min) +
         " à " + std::to_string(max) + ")";
}

std::string SaveFailed(std::string_view path, std::string_view reason) {
  return "impossible d'enregistrer le dessin (" + S(reason) + ") : " + S(path);
}

std::string NoPaperLayout() { return "le dessin n'a aucune présentation d'espace papier"; }

std::string ForeignLayout() { return "la présentation n'appartient pas à ce dessin"; }

std::string BadSpace(int space) {
  return "espace incorrect : " + std::to_string(space) + " (1 objet, 0 papier)";
}

std::string UnknownDevice(std::string_view name) {
  return "périphérique de traçage introuvable : " + S(name);
}

std::string UnknownMedia(std::string_view name) {
  return "format de papier inconnu du périphérique : " + S(name);
}

std::string UnknownView(std::string_view name) { return "vue introuvable : " + S(name); }

std::string OutOfRange(std::string_view what, int value, int min, int max) {
  return S(what) + " hors limites : " + std::to_string(value) + " (" + std::to_string(min) + " à " +
         std::to_string(max) + ")";
}

std::string BadCustomScale() {
  return "échelle personnalisée incorrecte : les deux nombres doivent être positifs";
}

std::string BadCopies(int copies) {
  return "nombre de copies incorrect : " + std::to_string(copies);
}

std::string Internal(std::string_view what) { return "erreur interne de l'hôte : " + S(what); }

std::string OutOfMemory() { return "mémoire insuffisante"; }

std::string OutOfMemoryReading(std::string_view path) {
  return "mémoire insuffisante pour lire le dessin " + S(path);
}

std::string DeviceNotFound(std::string_view name) {
  return "périphérique de traçage introuvable : " + S(name);
}

std::string DriverNotSupported(std::string_view driver) {
  return "le pilote " + Quoted(driver) +
         " n'est pas encore pris en charge par le moteur de traçage";
}

std::string NoOutputFolder(std::string_view folder) {
  return "dossier de sortie introuvable : " + S(folder);
}

std::string PlotDone(std::string_view drawing, std::string_view layout, std::string_view device,
                     std::string_view output) {
  return "Tracé : dessin " + S(drawing) + ", présentation " + S(layout) + ", périphérique " +
         S(device) + ", sortie " + S(output);
}

std::string PlotFailed(std::string_view drawing, std::string_view layout, std::string_view device,
                       std::string_view reason) {
  return "Échec du tracé : dessin " + S(drawing) + ", présentation " + S(layout) +
         ", périphérique " + S(device) + " : " + S(reason);
}

std::string PlotCancelled(std::string_view drawing, std::string_view layout,
                          std::string_view device) {
  return "Tracé interrompu à la demande de l'utilisateur : dessin " + S(drawing) +
         ", présentation " + S(layout) + ", périphérique " + S(device);
}

std::string NoFallbackDevice(std::string_view name) {
  return "périphérique de remplacement introuvable : " + S(name);
}

std::string DeviceStandsIn(std::string_view drawing, std::string_view layout,
                           std::string_view stored, std::string_view fallback, bool missing) {
  return "Périphérique " + Quoted(stored) + (missing ? " absent de cette machine" : "") +
         " : tracé sur " + S(fallback) + " (dessin " + S(drawing) + ", présentation " + S(layout) +
         ")";
}

std::string DefaultPaperUsed(std::string_view drawing, std::string_view layout,
                             std::string_view stored, std::string_view device,
                             std::string_view paper) {
  return "Papier " + Quoted(stored) + " inutilisable : tracé sur le papier par défaut de " +
         S(device) + ", " + S(paper) + " (dessin " + S(drawing) + ", présentation " + S(layout) +
         ")";
}

std::string PrinterOutput(std::string_view printer) { return "imprimante " + S(printer); }

std::string UndrawnEntities(std::string_view drawing, std::string_view layout,
                            std::string_view kinds) {
  return "Entités non tracées (types que l'hôte ne sait pas tracer) : " + S(kinds) + " (dessin " +
         S(drawing) + ", présentation " + S(layout) + ")";
}

std::string PlotStyleMissing(std::string_view drawing, std::string_view layout,
                             std::string_view table) {
  return "Table de styles de tracé « " + S(table) +
         " » introuvable sur cette machine : présentation tracée sans elle (dessin " + S(drawing) +
         ", présentation " + S(layout) + ")";
}

std::string NamedPlotStylesIgnored(std::string_view drawing, std::string_view layout,
                                   std::string_view table) {
  return "Table de styles nommés " + Quoted(table) +
         " non appliquée, seules les tables dépendantes des couleurs (.ctb) le sont (dessin " +
         S(drawing) + ", présentation " + S(layout) + ") ; tracé sans table";
}

std::string XrefLogTitle(std::string_view drawing) {
  return "Références externes du dessin " + S(drawing);
}

std::string XrefFound(std::string_view block, std::string_view stored, std::string_view found) {
  return "Xréf " + S(block) + " : " + S(stored) + " -> " + S(found);
}

std::string XrefNotFound(std::string_view block, std::string_view stored,
                         std::string_view notFoundMark) {
  return "Xréf " + S(block) + " : " + S(stored) + " -> " + S(notFoundMark);
}

std::string XrefNone() { return "Aucune référence externe"; }

std::string XrefLeftOut(std::string_view block, std::string_view stored, std::string_view found,
                        std::string_view leftOutMark, std::string_view reason) {
  return "Xréf " + S(block) + " : " + S(stored) + " -> " + S(found) + " : " + S(leftOutMark) +
         " (" + S(reason) + ")";
}

std::string XrefDepthLimit(int levels) {
  return "plus de " + std::to_string(levels) + (levels > 1 ? " niveaux" : " niveau") +
         " de références imbriquées";
}

std::string XrefSizeLimit(std::uintmax_t bytes) {
  return "les fichiers référencés dépassent ensemble " + std::to_string(bytes >> 20) + " Mo";
}

std::string XrefNotLoaded(std::string_view drawing, std::string_view block, std::string_view found,
                          std::string_view reason) {
  return "Référence externe non chargée : " + S(block) + " (" + S(found) + ", dessin " +
         S(drawing) + ") : " + S(reason) + " ; le dessin est tracé sans elle";
}

std::string ImageReference(std::string_view stored, std::string_view foundOrMark) {
  return "Image " + S(stored) + " -> " + S(foundOrMark);
}

std::string ImageNotFound(std::string_view drawing, std::string_view stored) {
  return "Image introuvable : " + S(stored) + " (dessin " + S(drawing) +
         ") ; seul son cadre est tracé";
}

std::string ImageUnreadable(std::string_view drawing, std::string_view path) {
  return "Image illisible : " + S(path) + " (dessin " + S(drawing) + ") ; seul son cadre est tracé";
}

std::string CombinedPageFailed(std::string_view reason) {
  return "PDF combiné : page non ajoutée, " + S(reason);
}

std::string CombinedNotWritten(std::string_view reason) {
  return "PDF combiné non écrit : " + S(reason);
}

}  // namespace sheafwork::embedded::host_messages
