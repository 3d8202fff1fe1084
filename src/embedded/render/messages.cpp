#include "embedded/render/messages.h"

#include <charconv>
#include <string>

namespace sheafwork::embedded::render_messages {

namespace {

std::string Number(double value) {
  char buffer[32];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 6);
  return std::string(buffer, result.ptr);
}

std::string Size(double widthMm, double heightMm) {
  return Number(widthMm) + " x " + Number(heightMm) + " mm";
}

}  // namespace

std::string NothingToPlot() { return "aucun dessin ou aucune présentation à tracer"; }

std::string SheetEntityLimit(unsigned long long limit) {
  return "la feuille demande plus de " + std::to_string(limit) +
         " entités tracées (références de blocs imbriquées trop nombreuses ?) ; tracé abandonné";
}

std::string SheetCancelled() { return "tracé interrompu à la demande de l'utilisateur"; }

std::string InvalidPaper(double widthMm, double heightMm) {
  return "format de papier invalide : " + Size(widthMm, heightMm);
}

std::string NoGuiApplication() {
  return "le tracé demande une application graphique Qt, une autre application est déjà active";
}

std::string FileCannotCreate(const std::string& format, const std::string& path) {
  return "impossible de créer le fichier " + format + " : " + path;
}

std::string FileCannotWrite(const std::string& format, const std::string& path) {
  return "impossible d'écrire le fichier " + format + " : " + path;
}

std::string FileCannotRead(const std::string& format, const std::string& path,
                           const std::string& reason) {
  return "impossible de lire le fichier " + format + " : " + path +
         (reason.empty() ? "" : " (" + reason + ")");
}

std::string FileNotOurs(const std::string& format, const std::string& path) {
  return "le fichier " + format + " est tronqué ou n'a pas été écrit par Sheafwork : " + path;
}

std::string ImageTooLarge(long long widthPx, long long heightPx, int dpi) {
  return "image trop grande : " + std::to_string(widthPx) + " x " + std::to_string(heightPx) +
         " pixels à " + std::to_string(dpi) +
         " points par pouce ; réduisez la résolution du périphérique";
}

std::string ImageNoMemory(long long widthPx, long long heightPx) {
  return "mémoire insuffisante pour une image de " + std::to_string(widthPx) + " x " +
         std::to_string(heightPx) + " pixels ; réduisez la résolution du périphérique";
}

std::string PrinterNotFound(const std::string& name) { return "imprimante introuvable : " + name; }

std::string PrinterRefusesPaper(const std::string& name, double widthMm, double heightMm) {
  return "l'imprimante " + name + " refuse le format " + Size(widthMm, heightMm);
}

std::string PrinterCannotStart(const std::string& name) {
  return "impossible de démarrer l'impression sur l'imprimante " + name;
}

std::string PrinterCannotFinish(const std::string& name) {
  return "l'impression sur l'imprimante " + name + " n'a pas pu être terminée";
}

std::string PaintedOutputMissing(const std::string& output) {
#ifdef _WIN32
  // The Windows program is built without Qt, which paints these outputs.
  return output +
         " est indisponible : la version Windows de ce programme est construite sans Qt, qui "
         "dessine les sorties PNG et SVG et l'impression sur les imprimantes du système ; seules "
         "les sorties PDF et HP-GL/2 y sont disponibles";
#else
  return output + " est indisponible : ce programme n'a pas de module de dessin";
#endif
}

std::string PaintedOutputOutOfMemory() { return "mémoire insuffisante pour le dessin"; }

std::string PaintedOutputUnknownFailure() { return "le dessin a échoué pour une raison inconnue"; }

std::string PaintedOutputNotLoaded(const std::string& output, const std::string& module,
                                   const std::string& reason) {
  return output + " est indisponible : le module de dessin " + module +
         " n'a pas pu être chargé (" + reason + ")";
}

}  // namespace sheafwork::embedded::render_messages
