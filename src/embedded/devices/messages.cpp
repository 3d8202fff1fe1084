#include "embedded/devices/messages.h"

namespace sheafwork::embedded::device_messages {

namespace {

std::string Quoted(std::string_view text) { return "« " + std::string(text) + " »"; }

}  // namespace

std::string AtLine(const std::string& file, int line, std::string_view what) {
  return file + ", ligne " + std::to_string(line) + " : " + std::string(what);
}

std::string InFile(const std::string& file, std::string_view what) {
  return file + " : " + std::string(what);
}

std::string CannotRead(std::string_view reason) {
  return "lecture impossible (" + std::string(reason) + ")";
}

std::string NotUtf8() { return "le fichier n'est pas en UTF-8"; }

std::string NotKeyValue() { return "« clé = valeur » attendu"; }

std::string UnknownKey(std::string_view key) {
  return "clé inconnue " + Quoted(key) +
         " (attendu : driver, description, resolution, extension, output-folder, printer, "
         "default-paper ou paper)";
}

std::string RepeatedKey(std::string_view key) { return "clé " + Quoted(key) + " répétée"; }

std::string UnknownDriver(std::string_view value) {
  return "pilote inconnu " + Quoted(value) + " (attendu : pdf, png, svg, hpgl ou printer)";
}

std::string BadResolution(std::string_view value) {
  return "résolution incorrecte " + Quoted(value) + " (attendu : un entier de 1 à 9600)";
}

std::string BadPaper(std::string_view value) {
  return "papier incorrect " + Quoted(value) +
         " (attendu : nom | largeur x hauteur [| gauche bas droite haut])";
}

std::string BadPaperSize(std::string_view value) {
  return "taille de papier incorrecte " + Quoted(value) +
         " (attendu : largeur x hauteur en mm, nombres positifs)";
}

std::string BadMargins(std::string_view value) {
  return "marges incorrectes " + Quoted(value) +
         " (attendu : quatre nombres positifs ou nuls, gauche bas droite haut)";
}

std::string RepeatedPaper(std::string_view name) { return "papier " + Quoted(name) + " répété"; }

std::string MissingDriver() { return "clé « driver » manquante"; }

std::string NoPaper() { return "aucun papier (clé « paper ») pour ce pilote"; }

std::string MissingPrinter() { return "clé « printer » manquante pour le pilote printer"; }

std::string UnknownDefaultPaper(std::string_view name) {
  return "papier par défaut " + Quoted(name) + " absent de la liste des papiers";
}

}  // namespace sheafwork::embedded::device_messages
