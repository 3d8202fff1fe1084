#pragma once
// Which font file holds a face: the system's fonts as fontconfig indexes
// them.

#include <optional>
#include <string>
#include <string_view>

namespace sheafwork::embedded {

struct FaceFile {
  std::string path;
  int index = 0;        ///< the face within a collection (.ttc)
  bool italic = false;  ///< the face itself slants
  bool bold = false;    ///< the face itself is bold
};

/// The face of `family` closest to bold and italic as asked; none when the
/// system has no font of that family (the letter case and spaces of the
/// name do not matter).
std::optional<FaceFile> FindFamily(std::string_view family, bool bold, bool italic);

/// The font file named `fileName` (a name such as "arial.ttf", a folder in
/// front is ignored, so is the letter case); none when the system has no
/// such file.
std::optional<FaceFile> FindFontFile(std::string_view fileName);

/// Any face the system has, the closest to a plain sans-serif; none when
/// it has no font at all.
std::optional<FaceFile> FindAnyFace();

}  // namespace sheafwork::embedded
