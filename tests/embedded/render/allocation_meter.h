#pragma once
// How many bytes the program holds on the heap at most while a piece of
// code runs: the test binary counts every operator new and delete.

#include <cstddef>

namespace sheafwork::embedded::testing {

/// From construction, the highest number of bytes held beyond those held
/// then (blocks from operator new, at their usable size).
class AllocationMeter {
 public:
  AllocationMeter();
  std::size_t PeakBytes() const;

 private:
  std::size_t start_;
};

}  // namespace sheafwork::embedded::testing
