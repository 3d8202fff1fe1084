// A worker reads what the run sends it (the list as a block, then row
// numbers) from a pipe, however the bytes arrive.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "plotrun/worker_process.h"

namespace sheafwork {
namespace {

TEST(RowSourceTest, ReadsTheListThenEachRowUntilTheRunCloses) {
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);
  const std::string list = "[Liste]\nplan.dxf\n\n";
  // Everything in one write: lines and the block share the reader's buffer.
  ASSERT_TRUE(WriteAllTo(fds[1], Block(list) + "3\n12\n"));
  close(fds[1]);
  RowSource rows(fds[0]);
  // A value left in errno by an earlier interrupted call is not a new one.
  errno = EINTR;
  std::string block;
  ASSERT_TRUE(rows.ReadBlock(block));
  EXPECT_EQ(block, list);
  EXPECT_EQ(rows.NextRow(), 3);
  EXPECT_EQ(rows.NextRow(), 12);
  EXPECT_EQ(rows.NextRow(), 0);
  close(fds[0]);

  // A size that is not a number is no block.
  ASSERT_EQ(pipe(fds), 0);
  ASSERT_TRUE(WriteAllTo(fds[1], "12x\nabc"));
  close(fds[1]);
  RowSource bad(fds[0]);
  EXPECT_FALSE(bad.ReadBlock(block));
  close(fds[0]);
}

}  // namespace
}  // namespace sheafwork
