#pragma once
// Turns the bytes of a string value into UTF-8 text, by the file's release:
// Windows-1252 before release 2007, UTF-8 from it on. Older files name their
// code page in $DWGCODEPAGE; every one of them is read as Windows-1252 for
// now, which is what Western European drawings use (a wrong code page only
// changes accented letters, never the structure).
// \U+XXXX escapes become their character in every release; every other
// special sequence (%%d, MTEXT formatting codes, carets) is kept as stored
// for the renderer.

#include <string>
#include <string_view>

namespace sheafwork::embedded {

class TextDecoder {
 public:
  /// "AC1021" and later are UTF-8.
  void SetVersion(std::string_view acadVer);

  std::string Decode(std::string_view raw) const;

 private:
  bool utf8_ = false;
};

}  // namespace sheafwork::embedded
