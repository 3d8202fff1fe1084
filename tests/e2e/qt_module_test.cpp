// The program and its Qt module: the program links no Qt of its own and
// plots PDF without the module; painted rows and the desktop name the
// module and why it did not load.

#include <elf.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "e2e/program.h"
#include "fakes/temp_folder.h"

namespace sheafwork::e2e {
namespace {

namespace fs = std::filesystem;

// The DT_NEEDED entries of the 64-bit ELF file `path`: the libraries the
// dynamic loader maps with it.
std::vector<std::string> NeededLibraries(const std::string& path) {
  const std::string image = testing::TempFolder::Read(path);
  const auto at = [&image](std::size_t offset, std::size_t size) {
    if (offset > image.size() || size > image.size() - offset) {
      ADD_FAILURE() << "truncated ELF file";
      return static_cast<const char*>(nullptr);
    }
    return image.data() + offset;
  };
  Elf64_Ehdr header;
  const char* h = at(0, sizeof header);
  if (h == nullptr || std::memcmp(h, ELFMAG, SELFMAG) != 0 || h[EI_CLASS] != ELFCLASS64) {
    ADD_FAILURE() << path << " is not a 64-bit ELF file";
    return {};
  }
  std::memcpy(&header, h, sizeof header);
  std::vector<Elf64_Shdr> sections(header.e_shnum);
  const char* table = at(header.e_shoff, sizeof(Elf64_Shdr) * sections.size());
  if (table == nullptr) return {};
  std::memcpy(sections.data(), table, sizeof(Elf64_Shdr) * sections.size());
  std::vector<std::string> needed;
  for (const Elf64_Shdr& dynamic : sections) {
    if (dynamic.sh_type != SHT_DYNAMIC || dynamic.sh_link >= sections.size()) continue;
    const Elf64_Shdr& strings = sections[dynamic.sh_link];
    const std::size_t count = dynamic.sh_size / sizeof(Elf64_Dyn);
    const char* entries = at(dynamic.sh_offset, count * sizeof(Elf64_Dyn));
    if (entries == nullptr) return {};
    for (std::size_t i = 0; i < count; ++i) {
      Elf64_Dyn entry;
      std::memcpy(&entry, entries + i * sizeof entry, sizeof entry);
      if (entry.d_tag != DT_NEEDED || entry.d_un.d_val >= strings.sh_size) continue;
      needed.emplace_back(image.c_str() + strings.sh_offset + entry.d_un.d_val);
    }
  }
  return needed;
}

std::string ModuleBeside(const std::string& exe) {
  return (fs::path(exe).parent_path() / "sheafwork-qt.so").string();
}

bool Contains(const std::vector<std::string>& names, const std::string& name) {
  for (const std::string& n : names) {
    if (n == name) return true;
  }
  return false;
}

// Every library the program needs is loaded at each start, a plot or not:
// Qt lives in the module, libcups, fontconfig and HarfBuzz are opened when
// first used.
TEST(QtModuleTest, TheProgramLinksNoQtItsModuleDoes) {
  const std::vector<std::string> program = NeededLibraries(SHEAFWORK_EXE);
  const std::vector<std::string> module = NeededLibraries(ModuleBeside(SHEAFWORK_EXE));
  ASSERT_FALSE(program.empty());
  for (const char* library : {"libQt6Widgets.so.6", "libQt6PrintSupport.so.6", "libQt6Svg.so.6"}) {
    EXPECT_TRUE(Contains(module, library)) << library;
  }
  for (const std::string& library : program) {
    for (const char* opened : {"libQt6", "libcups", "libfontconfig", "libharfbuzz"}) {
      EXPECT_NE(library.rfind(opened, 0), 0u) << library;
    }
  }
}

// A copy of the built program with its data files, without the module.
class WithoutModule : public ExampleListTest {
 protected:
  WithoutModule() {
    const fs::path built = fs::path(SHEAFWORK_EXE).parent_path();
    const fs::path copy = folder_.path() / "programme";
    fs::create_directories(copy);
    for (const auto& entry : fs::directory_iterator(built)) {
      if (entry.is_directory() && entry.path().filename() != "CMakeFiles") {
        fs::copy(entry.path(), copy / entry.path().filename(), fs::copy_options::recursive);
      }
    }
    fs::copy_file(SHEAFWORK_EXE, copy / "sheafwork");
    exe_ = (copy / "sheafwork").string();
    module_ = (copy / "sheafwork-qt.so").string();
  }

  ProgramRun Run(const std::string& args) { return RunProgram(exe_, args, folder_); }

  std::string exe_, module_;
};

TEST_F(WithoutModule, PaintedRowsFailByNameWhilePdfRowsOfTheSameListPlot) {
  const std::string rdc = Plan("rez-de-chaussee.dxf");
  AddRow(rdc, " --layout 'Plan A3' --device PNG.pc3 --plot-file " + Quoted(Out("rdc.png")));
  AddRow(rdc, " --layout 'Plan A3' --device PDF.pc3 --plot-file " + Quoted(Out("rdc.pdf")));
  const ProgramRun run = Run("plot " + Quoted(list_));
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_FALSE(PlotOutput(Out("rdc.pdf")).empty()) << run.err;
  EXPECT_TRUE(PlotOutput(Out("rdc.png")).empty());
  // The embedded host reports why the row failed.
  EXPECT_NE(
      run.err.find("la sortie PNG est indisponible : le module de dessin " + module_ +
                   " n'a pas pu être chargé (" + module_ + ": cannot open shared object file"),
      std::string::npos)
      << run.err;
}

TEST_F(WithoutModule, TheDesktopDoesNotStartAndSaysWhichFileIsMissing) {
  const ProgramRun run = Run("");
  EXPECT_NE(run.status, 0);
  EXPECT_NE(run.err.find("sheafwork: l'application de bureau ne peut pas démarrer : le module " +
                         module_ + " n'a pas pu être chargé (" + module_ +
                         ": cannot open shared object file"),
            std::string::npos)
      << run.err;
}

}  // namespace
}  // namespace sheafwork::e2e
