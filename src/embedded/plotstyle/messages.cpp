#include "embedded/plotstyle/messages.h"

namespace sheafwork::embedded::plotstyle_messages {

namespace {

std::string Quoted(std::string_view text) { return "« " + std::string(text) + " »"; }

}  // namespace

std::string InFile(std::string_view file, std::string_view what) {
  return "Table de styles de tracé " + std::string(file) + " : " + std::string(what);
}

std::string AtLine(std::string_view file, int line, std::string_view what) {
  return "Table de styles de tracé " + std::string(file) + ", ligne " + std::to_string(line) +
         " : " + std::string(what);
}

std::string CannotRead(std::string_view reason) {
  return "lecture impossible (" + std::string(reason) + ")";
}

std::string CannotWrite(std::string_view reason) {
  return "écriture impossible (" + std::string(reason) + ")";
}

std::string TooShort(std::size_t size) {
  return "en-tête tronqué (" + std::to_string(size) + " octets, 60 attendus)";
}

std::string NotPlotStyleFile() {
  return "signature absente : ce n'est pas un fichier de table de styles de tracé";
}

std::string Truncated(std::size_t declared, std::size_t present) {
  return "données compressées tronquées (" + std::to_string(present) + " octets sur " +
         std::to_string(declared) + " annoncés)";
}

std::string TooLarge(std::size_t size) {
  return "taille annoncée démesurée (" + std::to_string(size) + " octets)";
}

std::string BadCompressedData(std::string_view detail) {
  return "données compressées illisibles (" + std::string(detail) + ")";
}

std::string TextSizeMismatch(std::size_t declared, std::size_t found) {
  return "le texte décompressé fait " + std::to_string(found) + " octets au lieu des " +
         std::to_string(declared) + " annoncés";
}

std::string UnclosedBlock(std::string_view name) { return "bloc " + Quoted(name) + " non fermé"; }

std::string UnexpectedClose() { return "« } » sans bloc ouvert"; }

std::string NotKeyValue() { return "« clé=valeur » ou « nom{ » attendu"; }

std::string TooDeep() { return "blocs imbriqués trop profondément"; }

std::string BadNumber(std::string_view key, std::string_view value) {
  return "valeur numérique incorrecte pour " + Quoted(key) + " : " + Quoted(value);
}

std::string BadBoolean(std::string_view key, std::string_view value) {
  return "TRUE ou FALSE attendu pour " + Quoted(key) + " : " + Quoted(value);
}

std::string BadEntryNumber(std::string_view key) {
  return "numéro de style " + Quoted(key) + " incorrect (0 à 254 attendu)";
}

std::string BadLineweightIndex(std::string_view key) {
  return "indice d'épaisseur " + Quoted(key) + " incorrect (0 à 255 attendu)";
}

std::string MissingStyles() { return "bloc « plot_style » absent"; }

std::string NamedStyles() {
  return "table de styles nommés : une table dépendante des couleurs est attendue";
}

std::string ExpectedBlock(std::string_view key) {
  return Quoted(key) + " doit être un bloc « { } »";
}

std::string ExpectedValue(std::string_view key) {
  return Quoted(key) + " doit être une valeur, pas un bloc";
}

}  // namespace sheafwork::embedded::plotstyle_messages
