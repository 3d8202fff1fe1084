// GetFileStatus: a search for an ordinary file matching a path whose last
// component may hold the wildcards "*" and "?".

#include <string>

#include "log/paths.h"

#ifdef _WIN32
#include <windows.h>

#include "log/wide_path.h"
#else
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <cerrno>

#include <memory>
#include <vector>

#include "text/utf8.h"
#endif

namespace sheafwork {

#ifdef _WIN32

namespace {

std::int16_t StatusFromError(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_NO_MORE_FILES:
      return kFileNotFound;
    case ERROR_NOT_READY:
      return kDiskNotReady;
    case ERROR_DEV_NOT_EXIST:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_UNEXP_NET_ERR:
      return kDeviceUnavailable;
    default:
      return kFileStatusError;
  }
}

}  // namespace

std::int16_t GetFileStatus(std::string_view path) {
  if (path.empty()) return kFileNotFound;
  const auto wide = WidePath(path);
  if (!wide) return kFileStatusError;
  WIN32_FIND_DATAW data;
  HANDLE find =
      FindFirstFileExW(wide->c_str(), FindExInfoBasic, &data, FindExSearchNameMatch, nullptr, 0);
  if (find == INVALID_HANDLE_VALUE) return StatusFromError(GetLastError());
  constexpr DWORD kSkipped =
      FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  std::int16_t status = kFileNotFound;
  do {
    if ((data.dwFileAttributes & kSkipped) == 0) {
      status = kFileFound;
      break;
    }
  } while (FindNextFileW(find, &data));
  if (status != kFileFound && GetLastError() != ERROR_NO_MORE_FILES) {
    status = StatusFromError(GetLastError());
  }
  FindClose(find);
  return status;
}

#else  // POSIX

namespace {

std::int16_t StatusFromErrno(int error) {
  switch (error) {
    case ENOENT:
      return kFileNotFound;
#ifdef ENOMEDIUM
    case ENOMEDIUM:
#endif
    case EIO:
      return kDiskNotReady;
    case ENODEV:
    case ENXIO:
    case ENOTCONN:  // a network or FUSE mount whose server went away
      return kDeviceUnavailable;
    default:
      return kFileStatusError;
  }
}

// A character of a name or a pattern; a malformed UTF-8 byte is kept apart
// from every real code point so that it only equals the same byte.
std::vector<char32_t> Characters(std::string_view s) {
  std::vector<char32_t> out;
  for (std::size_t pos = 0; pos < s.size();) {
    const DecodedChar d = DecodeUtf8(s, pos);
    out.push_back(d.valid ? d.codePoint : kMalformedByte + d.codePoint);
    pos += d.length;
  }
  return out;
}

// "*" matches any run of characters, "?" exactly one, everything else itself
// (letter case counts). On a mismatch only the last "*" needs to take one more
// character: earlier stars can never do better.
bool MatchesPattern(const std::vector<char32_t>& name, const std::vector<char32_t>& pattern) {
  std::size_t n = 0;
  std::size_t p = 0;
  bool haveStar = false;
  std::size_t afterStar = 0;  // pattern position after the last '*'
  std::size_t starFrom = 0;   // name position where that '*' ends for now
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == U'*') {
      haveStar = true;
      afterStar = ++p;
      starFrom = n;
    } else if (p < pattern.size() && (pattern[p] == U'?' || pattern[p] == name[n])) {
      ++p;
      ++n;
    } else if (haveStar) {
      p = afterStar;
      n = ++starFrom;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == U'*') ++p;
  return p == pattern.size();
}

bool IsHidden(std::string_view name) { return !name.empty() && name.front() == '.'; }

struct DirCloser {
  void operator()(DIR* d) const { closedir(d); }
};

std::int16_t SearchFolder(const std::string& folder, std::string_view pattern) {
  std::unique_ptr<DIR, DirCloser> dir(opendir(folder.c_str()));
  if (!dir) return StatusFromErrno(errno);
  const std::vector<char32_t> wanted = Characters(pattern);
  while (true) {
    errno = 0;
    const dirent* entry = readdir(dir.get());
    if (entry == nullptr) return errno == 0 ? std::int16_t{kFileNotFound} : StatusFromErrno(errno);
    const std::string_view name = entry->d_name;
    if (IsHidden(name) || !MatchesPattern(Characters(name), wanted)) continue;
    // The entry's type decides, following a symbolic link; an entry that
    // cannot be examined (a dangling link) is no file.
    struct stat info {};
    if (fstatat(dirfd(dir.get()), entry->d_name, &info, 0) == 0 && S_ISREG(info.st_mode)) {
      return kFileFound;
    }
  }
}

}  // namespace

std::int16_t GetFileStatus(std::string_view path) {
  if (path.empty()) return kFileNotFound;
  const std::size_t sep = path.rfind('/');
  const std::string_view name = sep == std::string_view::npos ? path : path.substr(sep + 1);
  if (name.find_first_of("*?") != std::string_view::npos) {
    std::string folder = sep == std::string_view::npos ? "." : std::string(path.substr(0, sep + 1));
    return SearchFolder(folder, name);
  }
  const std::string file(path);
  struct stat info {};
  if (stat(file.c_str(), &info) != 0) return StatusFromErrno(errno);
  return S_ISREG(info.st_mode) && !IsHidden(name) ? kFileFound : kFileNotFound;
}

#endif

}  // namespace sheafwork
