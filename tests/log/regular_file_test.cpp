// Input files are read only when they are regular files within their size
// limit: a FIFO does not block, a device is not read until memory runs out.

#include "log/regular_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "fakes/temp_folder.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using testing::TempFolder;

TEST(RegularFileTest, OnlyRegularFilesWithinTheLimitAreRead) {
  TempFolder folder;
  const std::string plain = folder.Write("plan.dxf", "0\nEOF\n");
  const std::string fifo = folder.File("tube.dxf");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0) << std::strerror(errno);
  // A sparse file just over the limit: no disk space taken.
  const std::string huge = folder.Write("huge.qx3", "");
  ASSERT_EQ(::truncate(huge.c_str(), static_cast<off_t>(kTextInputLimit + 1)), 0);

  struct Case {
    std::string path;
    std::uint64_t limit;
    std::string reason;  ///< empty: read
  };
  const std::string notRegular = LoadResourceText(ids::kNotRegularFile);
  const Case cases[] = {
      {plain, kTextInputLimit, ""},
      {plain, 3, LoadResourceText(ids::kFileTooLarge)},
      {fifo, kNoSizeLimit, notRegular},
      {"/dev/zero", kNoSizeLimit, notRegular},
      {huge, kTextInputLimit, LoadResourceText(ids::kFileTooLarge) + "64 Mo)"},
      {folder.path().string(), kNoSizeLimit, std::strerror(EISDIR)},
      {folder.File("absent.qx3"), kNoSizeLimit, std::strerror(ENOENT)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    const RegularFileRead read = ReadRegularFile(c.path, c.limit);
    EXPECT_EQ(read.ok, c.reason.empty()) << read.reason;
    if (c.reason.empty()) {
      EXPECT_EQ(read.bytes, "0\nEOF\n");
    } else {
      EXPECT_EQ(read.reason.rfind(c.reason, 0), 0u) << read.reason;
    }
  }
}

}  // namespace
}  // namespace sheafwork
