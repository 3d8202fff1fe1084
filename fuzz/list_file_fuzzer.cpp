// Feeds arbitrary bytes to the list-file reader in both modes. When a plain
// ASCII file reads into a non-empty list, the list must survive being written
// out and read back.

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "batch/list_file.h"
#include "batch/session.h"

namespace {

using sheafwork::BatchEntry;
using sheafwork::ListFileResult;
using sheafwork::ReadListFile;
using sheafwork::Session;

constexpr const char* kLogFolder = "/logs/";
// Longer lists cost seconds to write and read back and test nothing new.
constexpr int kMaxRoundTripEntries = 512;

// A file in the temporary folder owned by this process, removed at exit.
class TempFile {
 public:
  explicit TempFile(std::string_view tag)
      : path_((std::filesystem::temp_directory_path() /
               ("sheafwork-fuzz-" + std::to_string(::getpid()) + "-" + std::string(tag) + ".qx3"))
                  .string()) {}
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;
  ~TempFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  const std::string& Write(std::string_view bytes) const {
    std::ofstream out(path_, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) Fail("cannot write the temporary file");
    return path_;
  }

 private:
  [[noreturn]] static void Fail(const char* what) {
    std::fprintf(stderr, "list_file_fuzzer: %s\n", what);
    std::abort();
  }
  std::string path_;
};

bool IsAscii(std::string_view s) {
  return std::all_of(s.begin(), s.end(), [](char c) { return (c & 0x80) == 0; });
}

// Double quotes cannot be written inside a value, so a session holding one
// does not survive a round trip.
bool HoldsNoQuote(const Session& s) {
  const auto clean = [](const std::string& t) { return t.find('"') == std::string::npos; };
  const sheafwork::LogSettings& log = s.Log;
  if (!clean(s.ListName) || !clean(s.WinSize) || !clean(log.JournalLogFileName) ||
      !clean(log.JournalHeader) || !clean(log.JournalUserComment) || !clean(log.ErrorLogFileName) ||
      !clean(log.ErrorHeader)) {
    return false;
  }
  return std::all_of(s.List.begin(), s.List.end(), [&](const BatchEntry& e) {
    return clean(e.FileName) && clean(e.Layout) && clean(e.PlotSetup) && clean(e.PlotDevice) &&
           clean(e.Layers) && clean(e.PlotArea) && clean(e.PlotScale) && clean(e.PlotFile);
  });
}

void CheckRoundTrip(const Session& read, const TempFile& scratch) {
  const std::string bytes = sheafwork::FormatListFile(read, read.ListName, read.WinSize);
  Session again(kLogFolder);
  const ListFileResult r = ReadListFile(again, scratch.Write(bytes), false);
  if (!r.ok() || !(again.List == read.List)) {
    std::fprintf(stderr,
                 "list_file_fuzzer: the list did not survive a round trip "
                 "(status %d, line %d, %d entries read back of %d)\n",
                 static_cast<int>(r.status), r.line, again.List.EntryCount(),
                 read.List.EntryCount());
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const TempFile input("input");
  static const TempFile scratch("again");
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::string& path = input.Write(bytes);

  Session replaced(kLogFolder);
  const ListFileResult r = ReadListFile(replaced, path, false);

  // Appending twice: the second time the file's entries land behind its own.
  Session appended(kLogFolder);
  if (ReadListFile(appended, path, true).ok()) ReadListFile(appended, path, true);

  if (r.ok() && !replaced.List.Empty() && replaced.List.EntryCount() <= kMaxRoundTripEntries &&
      IsAscii(bytes) && HoldsNoQuote(replaced)) {
    CheckRoundTrip(replaced, scratch);
  }
  return 0;
}
