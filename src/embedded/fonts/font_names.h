#pragma once
// What a TrueType or OpenType file says about its faces: the family each
// belongs to, whether it is bold or slants, and the numbers text layout
// needs from its tables. Read from the file's own tables ('name', 'OS/2',
// 'head', 'hhea'), without any font library, where the system has none
// that indexes fonts.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace sheafwork::embedded {

struct FontFaceNames {
  std::string family;        ///< typographic family when given, else the family ("DejaVu Sans")
  std::string legacyFamily;  ///< the family of at most four styles ("DejaVu Sans Condensed")
  int index = 0;             ///< the face within a collection (.ttc)
  bool bold = false;
  bool italic = false;
  int weight = 400;  ///< OS/2 weight class, 400 when the face does not say
  int unitsPerEm = 0;
  int capHeight = 0;  ///< 0 when the face does not say
  int descent = 0;    ///< below the baseline, positive
  int ascent = 0;
};

/// Reads `size` bytes at `offset` of the file into `out`; false when the
/// file is shorter or unreadable.
using FontFileReader =
    std::function<bool(std::uint64_t offset, std::size_t size, std::string& out)>;

/// Every face of the file `read` reads (one, or each face of a collection);
/// empty when it is no TrueType or OpenType file or a face lacks the tables
/// named above. Only the tables' directories and those tables are read.
std::vector<FontFaceNames> ReadFontFaceNames(const FontFileReader& read);

/// The faces of the font file at `path` (UTF-8); empty when it cannot be
/// read or is no font file.
std::vector<FontFaceNames> ReadFontFileFaceNames(const std::string& path);

/// `name` without its spaces and letter case, as family names are compared.
std::string FamilyKey(std::string_view name);

}  // namespace sheafwork::embedded
