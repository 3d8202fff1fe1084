#include "embedded/dxf/messages.h"

#include <string>

#include "log/paths.h"
#include "text/windows1252.h"

namespace sheafwork::embedded::dxfmsg {
namespace {

std::string Where(const Place& at) {
  std::string s(ShownName(at.file));
  s += at.binary ? ", octet " : ", ligne ";
  s += std::to_string(at.position);
  s += " : ";
  return s;
}

// Text from the file, short and printable, between French quotes.
std::string Quoted(std::string_view found) {
  constexpr std::size_t kMaxShown = 40;
  std::string_view cut = found.substr(0, kMaxShown);
  std::string text = IsValidUtf8(cut) ? std::string(cut) : Windows1252ToUtf8(cut);
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20) c = '?';
  }
  if (found.size() > kMaxShown) text += "…";
  return "« " + text + " »";
}

}  // namespace

std::string_view ShownName(std::string_view path) { return LastPathPart(path); }

std::string EmptyFile(std::string_view file) {
  return std::string(ShownName(file)) + " : le fichier est vide";
}

std::string NotDxf(std::string_view file) {
  return std::string(ShownName(file)) + " : ce n'est pas un fichier DXF";
}

std::string CannotRead(std::string_view file, std::string_view reason) {
  return std::string(ShownName(file)) + " : lecture impossible (" + std::string(reason) + ")";
}

std::string CodeExpected(const Place& at, std::string_view found) {
  return Where(at) + "code de groupe attendu, " + Quoted(found) + " trouvé";
}

std::string ValueMissing(const Place& at, int code) {
  return Where(at) + "fin de fichier inattendue : valeur du code " + std::to_string(code) +
         " attendue";
}

std::string NumberExpected(const Place& at, int code, std::string_view found) {
  return Where(at) + "nombre attendu pour le code " + std::to_string(code) + ", " + Quoted(found) +
         " trouvé";
}

std::string UnknownBinaryCode(const Place& at, int code) {
  return Where(at) + "code de groupe " + std::to_string(code) + " inconnu";
}

std::string SectionExpected(const Place& at, std::string_view found) {
  return Where(at) + "SECTION attendue, " + Quoted(found) + " trouvé";
}

std::string SectionNameExpected(const Place& at) { return Where(at) + "nom de section attendu"; }

std::string SectionWithoutEnd(const Place& at, std::string_view section) {
  return Where(at) + "section " + std::string(section) + " sans ENDSEC";
}

std::string TableWithoutEnd(const Place& at, std::string_view table) {
  return Where(at) + "table " + std::string(table) + " sans ENDTAB";
}

std::string BlockWithoutEnd(const Place& at, std::string_view block) {
  return Where(at) + "bloc " + std::string(block) + " sans ENDBLK";
}

std::string LayoutBlockMissing(std::string_view file, std::string_view layout,
                               std::string_view record) {
  return std::string(ShownName(file)) + " : fichier endommagé, la présentation " + Quoted(layout) +
         " renvoie à l'enregistrement de bloc " + std::string(record) +
         ", absent du fichier ; son contenu est introuvable";
}

}  // namespace sheafwork::embedded::dxfmsg
