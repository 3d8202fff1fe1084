#pragma once
// A CUPS print queue made for one test: every job's PDF goes to a file, on
// the sheet the job asks for, each copy a set of pages. Needs a CUPS server
// that allows file devices (scripts/setup.sh configures it, scripts/test.sh
// starts it).

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace sheafwork::testing {

/// Why no test queue can be made on this machine; empty when one can.
std::string CupsUnavailable();

/// Skips the test when no CUPS server can be used, or fails it when the
/// environment variable CI is set (CI must print for real).
#define SHEAFWORK_REQUIRE_CUPS()                                             \
  do {                                                                       \
    const std::string cupsMissing = ::sheafwork::testing::CupsUnavailable(); \
    if (!cupsMissing.empty()) {                                              \
      if (std::getenv("CI") != nullptr) FAIL() << cupsMissing;               \
      GTEST_SKIP() << cupsMissing;                                           \
    }                                                                        \
  } while (false)

class CupsQueue {
 public:
  /// Adds a queue named after `stem` and this process (see Name()) that
  /// writes to `outputFile`. Error() says why when it could not be added.
  CupsQueue(const std::string& stem, std::string outputFile);
  ~CupsQueue();
  CupsQueue(const CupsQueue&) = delete;
  CupsQueue& operator=(const CupsQueue&) = delete;

  const std::string& Name() const { return name_; }
  const std::string& Error() const { return error_; }

  /// Waits until the queue holds no job left to print and the output file
  /// is there; false after `timeout`, with Error() saying what was seen.
  bool WaitUntilPrinted(std::chrono::seconds timeout);

 private:
  std::string name_;
  std::string output_;
  std::string error_;
  bool added_ = false;
};

/// What `pdfinfo` says about a PDF's pages: the width and height of each
/// page in points, in page order (rotation not applied). Empty when the file
/// is not a readable PDF.
std::vector<std::pair<double, double>> PdfPageSizes(const std::string& path);

}  // namespace sheafwork::testing
