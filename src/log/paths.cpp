#include "log/paths.h"

#include <cstddef>
#include <filesystem>
#include <system_error>

#include "log/wide_path.h"
#include "text/strings.h"
#include "text/utf8.h"

namespace sheafwork {

namespace {

// The folder separators FileNameFromPath and FolderFromPath know. All of them
// are ASCII, so a byte search never splits a UTF-8 character.
std::string_view FolderSeparators(PathStyle style) {
  return style == PathStyle::Windows ? std::string_view("\\:") : std::string_view("/");
}

// Number of characters of `s`; a malformed byte counts as one character.
std::size_t CountChars(std::string_view s) {
  std::size_t count = 0;
  for (std::size_t pos = 0; pos < s.size(); pos += DecodeUtf8(s, pos).length) ++count;
  return count;
}

}  // namespace

std::string FileNameFromPath(std::string_view path, PathStyle style) {
  const std::string_view s = TrimSpaces(path);
  const std::size_t sep = s.find_last_of(FolderSeparators(style));
  if (sep == std::string_view::npos) return std::string(s);
  return std::string(s.substr(sep + 1));
}

std::string FolderFromPath(std::string_view path, PathStyle style) {
  const std::string_view s = TrimSpaces(path);
  const std::size_t sep = s.find_last_of(FolderSeparators(style));
  // No separator, or one that ends the path: there is no folder part.
  if (sep == std::string_view::npos || sep + 1 == s.size()) return {};
  return std::string(s.substr(0, sep + 1));
}

std::string_view LastPathPart(std::string_view path) {
  const std::size_t slash = path.find_last_of("/\\");
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string StripExtension(std::string_view name) {
  for (std::size_t i = name.size(); i-- > 0;) {
    const char c = name[i];
    if (c == '.') return std::string(name.substr(0, i));
    if (c == '/' || c == '\\') break;
  }
  return std::string(TrimSpaces(name));
}

bool IsValidFileName(std::string_view name, PathStyle style) {
  const std::string_view s = TrimSpaces(name);
  if (s.find('?') != std::string_view::npos) return false;
  if (style == PathStyle::Windows) {
    // Only the first colon is looked at: it must be a drive's, the second
    // character of the name.
    const std::size_t colon = s.find(':');
    if (colon != std::string_view::npos && CountChars(s.substr(0, colon)) != 1) return false;
  }
  if (s.find_first_of("*<>|") != std::string_view::npos) return false;
  const std::size_t length = CountChars(s);
  if (length == 0 || length > 255) return false;
  return s.back() != '/' && s.back() != '\\';
}

char FolderSeparator(PathStyle style) { return style == PathStyle::Windows ? '\\' : '/'; }

std::vector<std::string> SplitSearchPath(const std::string& searchPath) {
  std::vector<std::string> folders;
  std::string_view rest = searchPath;
  while (true) {
    const auto bar = rest.find(';');
    const std::string_view folder = TrimSpaces(rest.substr(0, bar));
    if (!folder.empty()) folders.emplace_back(folder);
    if (bar == std::string_view::npos) break;
    rest.remove_prefix(bar + 1);
  }
  return folders;
}

std::string XrefLogName(std::string_view drawing) {
  return std::string(TrimSpaces(DropLastChars(drawing, 3))) + "xlg";
}

bool IsRegularFile(const std::filesystem::path& path) {
  std::error_code ec;
  return std::filesystem::is_regular_file(path, ec);
}

namespace {

std::optional<std::filesystem::path> InFolder(const std::filesystem::path& folder,
                                              const std::string& fileName) {
  const std::filesystem::path exact = folder / FsPath(fileName);
  if (IsRegularFile(exact)) return exact;
  std::error_code ec;
  std::filesystem::directory_iterator it(folder, ec);
  if (ec) return std::nullopt;
  std::optional<std::filesystem::path> found;
  for (; it != std::filesystem::directory_iterator(); it.increment(ec)) {
    if (ec) break;
    const std::filesystem::path candidate = it->path();
    // The first match in name order, so that the choice does not depend on
    // the order the folder lists its files in.
    if (EqualsIgnoreCase(PathText(candidate.filename()), fileName) && IsRegularFile(candidate) &&
        (!found || candidate.filename() < found->filename())) {
      found = candidate;
    }
  }
  return found;
}

}  // namespace

std::optional<std::string> FindFileAlongPath(const std::string& name,
                                             const std::string& searchPath) {
  const std::string bare(LastPathPart(name));
  if (bare.empty()) return std::nullopt;
  if (bare != name && IsRegularFile(std::filesystem::path(name))) return name;
  for (const std::string& folder : SplitSearchPath(searchPath)) {
    if (const auto found = InFolder(std::filesystem::path(folder), bare)) return found->string();
  }
  return std::nullopt;
}

}  // namespace sheafwork
