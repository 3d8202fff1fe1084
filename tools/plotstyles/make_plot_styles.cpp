// Writes the plot style tables the program ships into a folder:
//
//   make_plot_styles <repository>/data/plotstyles
//
// A test checks that the committed files are what this writes.

#include <exception>
#include <filesystem>
#include <iostream>

#include "embedded/plotstyle/plot_style_file.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_plot_styles <folder>\n";
    return 2;
  }
  namespace se = sheafwork::embedded;
  try {
    const std::filesystem::path folder(argv[1]);
    std::filesystem::create_directories(folder);
    se::WritePlotStyleFile(se::MonochromePlotStyleTable(), (folder / "monochrome.ctb").string());
  } catch (const std::exception& error) {
    std::cerr << "make_plot_styles: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
