#include "fakes/test_data.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace sheafwork::testing {

std::string TestData(std::string_view relative) {
#ifdef _WIN32
  // Under Wine the source tree is on drive Z:.
  return std::string("Z:") + SHEAFWORK_SOURCE_DIR + "/tests/data/" + std::string(relative);
#else
  return std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/" + std::string(relative);
#endif
}

std::string ReadTestData(std::string_view relative) {
  const std::string path = TestData(relative);
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    ADD_FAILURE() << "cannot read the fixture " << path;
    return {};
  }
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace sheafwork::testing
