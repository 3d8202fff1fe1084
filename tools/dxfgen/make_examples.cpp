// Writes the example drawings, or a large drawing for measurements.
//
//   make_examples FOLDER              the drawings of examples/plans
//   make_examples --large N FILE      a drawing of N model-space entities

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

#include "dxfgen/house.h"
#include "dxfgen/large_drawing.h"

namespace {

bool WriteFile(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out) {
    std::cerr << "make_examples: " << path.string() << ": cannot write\n";
    return false;
  }
  return true;
}

int Usage() {
  std::cerr << "usage: make_examples FOLDER\n"
               "       make_examples --large ENTITY_COUNT FILE\n";
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace sheafwork::dxfgen;
  if (argc == 4 && std::string_view(argv[1]) == "--large") {
    const std::string_view countText(argv[2]);
    std::size_t count = 0;
    const auto parsed =
        std::from_chars(countText.data(), countText.data() + countText.size(), count);
    if (parsed.ec != std::errc() || parsed.ptr != countText.data() + countText.size())
      return Usage();
    return WriteFile(argv[3], WriteDxf(LargeDrawing(count))) ? 0 : 1;
  }
  if (argc != 2 || std::string_view(argv[1]).starts_with("-")) return Usage();
  const std::filesystem::path folder(argv[1]);
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  for (const auto& example : HouseExamples()) {
    if (!WriteFile(folder / example.name, example.bytes)) return 1;
  }
  return 0;
}
