#pragma once
// The fixtures under tests/data/ of the source tree: drawings, lists,
// plotter configurations and other files the tests read.

#include <string>
#include <string_view>

namespace sheafwork::testing {

/// The full path of tests/data/`relative`.
std::string TestData(std::string_view relative);

/// The bytes of tests/data/`relative`; fails the test that asks when the
/// file cannot be read.
std::string ReadTestData(std::string_view relative);

}  // namespace sheafwork::testing
