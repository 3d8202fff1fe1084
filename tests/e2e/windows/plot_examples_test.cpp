// sheafwork.exe plots a list of the example drawings with the embedded host:
// a journal line per plotted row, the failing rows named in the error log,
// PDF sheets of the sizes the drawings give; in a plain folder, in one
// whose name has accents, and in one whose name Windows-1252 cannot hold
// (the list keeps its short name).

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fakes/log_lines.h"
#include "fakes/native_path.h"
#include "fakes/temp_folder.h"
#include "log/wide_path.h"
#include "platform/code_page_path.h"
#include "platform/windows_text.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::testing {
namespace {

namespace fs = std::filesystem;

struct ProgramRun {
  DWORD status = 0;
  std::string out, err;
};

// Runs the program with `args`, its output and errors into files of
// `scratch`, and waits for it.
ProgramRun Sheafwork(const std::vector<std::string>& args, const fs::path& scratch,
                     const std::string& program = SHEAFWORK_EXE_FOR_TESTS) {
  std::wstring line;
  AppendCommandLineArgument(line, L"sheafwork.exe");
  for (const std::string& a : args) AppendCommandLineArgument(line, WideFromUtf8(a));
  SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
  // Files of their own for each run: the program's output and errors.
  static int runs = 0;
  const std::string n = std::to_string(++runs);
  const fs::path outFile = scratch / ("stdout-" + n + ".txt");
  const fs::path errFile = scratch / ("stderr-" + n + ".txt");
  constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE;
  HANDLE out =
      CreateFileW(outFile.c_str(), GENERIC_WRITE, kShare, &inherit, CREATE_NEW, 0, nullptr);
  HANDLE err =
      CreateFileW(errFile.c_str(), GENERIC_WRITE, kShare, &inherit, CREATE_NEW, 0, nullptr);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = nullptr;
  startup.hStdOutput = out;
  startup.hStdError = err;
  PROCESS_INFORMATION process{};
  const std::wstring exe = WideFromUtf8(program);
  ProgramRun run;
  if (CreateProcessW(exe.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                     nullptr, &startup, &process)) {
    if (WaitForSingleObject(process.hProcess, 120000) != WAIT_OBJECT_0) {
      TerminateProcess(process.hProcess, 99);
      ADD_FAILURE() << "sheafwork.exe did not end within two minutes";
    }
    GetExitCodeProcess(process.hProcess, &run.status);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  } else {
    ADD_FAILURE() << "cannot start " << program << ": " << GetLastError();
  }
  CloseHandle(out);
  CloseHandle(err);
  run.out = TempFolder::Read(PathText(outFile));
  run.err = TempFolder::Read(PathText(errFile));
  return run;
}

// Width and height in points of each page's /MediaBox: our writer puts one
// "/MediaBox [0 0 W H]" in each page object.
std::vector<std::pair<double, double>> MediaBoxes(const std::string& path) {
  const std::string pdf = TempFolder::Read(path);
  std::vector<std::pair<double, double>> boxes;
  for (std::size_t at = pdf.find("/MediaBox ["); at != std::string::npos;
       at = pdf.find("/MediaBox [", at + 1)) {
    double x0 = 0, y0 = 0, w = 0, h = 0;
    if (std::sscanf(pdf.c_str() + at + 11, "%lf %lf %lf %lf", &x0, &y0, &w, &h) == 4)
      boxes.emplace_back(w - x0, h - y0);
  }
  return boxes;
}

double Points(double mm) { return mm / 25.4 * 72; }

struct Sheet {
  const char* file;  ///< in the output folder; ".pdf" added when missing
  double widthMm, heightMm;
};

class PlotExamples : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    plans_ = PathText(folder_.path() / FsPath(GetParam()));
    out_ = plans_ + "\\sorties";
    fs::create_directories(FsPath(out_));
    for (const auto& entry : fs::directory_iterator(FsPath(SHEAFWORK_EXAMPLES_FOR_TESTS))) {
      fs::copy_file(entry.path(), FsPath(plans_) / entry.path().filename());
    }
  }

  std::string Plan(const std::string& name) const { return plans_ + "\\" + name; }

  void List(std::vector<std::string> args) {
    args.insert(args.begin(), "list");
    const ProgramRun run = Sheafwork(args, folder_.path());
    ASSERT_EQ(run.status, 0u) << run.err;
  }

  // The list of the checks below, its sheets going to `out`: a drawing that is
  // not there, PDF sheets of several sizes (an all-layouts row, an external
  // page setup), an HP-GL/2 file and a PNG row.
  void MakeList(const std::string& list, const std::string& out, const std::string& journal,
                const std::string& errors) {
    const std::string rdc = Plan("rez-de-chaussee.dxf");
    fs::create_directories(FsPath(out));
    List({"new", list, Plan("sous-sol.dxf")});  // fails on purpose: no such drawing
    List({"add", list, rdc, "--layout", "Plan A3", "--device", "PDF.pc3", "--plot-file",
          out + "\\rdc-a3.pdf"});
    List({"add", list, rdc, "--layout", "Plan A1", "--plot-file", out + "\\rdc-a1.pdf"});
    List({"add", list, Plan("etage.dxf"), "--layout", "Toutes les présentations", "--plot-file",
          out + "\\etage.pdf"});
    List({"add", list, Plan("facades.dxf"), "--layout", "Façade sud", "--setup",
          rdc + "|A1 paysage", "--plot-file", out + "\\sud-a1.pdf"});
    List({"add", list, rdc, "--layout", "Plan A3", "--device", "HPGL2.pc3", "--plot-file",
          out + "\\rdc.plt"});
    // Painted with Qt on Linux; refused here with a message, the run going on.
    List({"add", list, rdc, "--layout", "Plan A3", "--device", "PNG.pc3"});
    List({"set", list, "--journal", "on", "--journal-file", journal, "--journal-mode", "overwrite",
          "--error-log", "on", "--error-file", errors, "--error-mode", "overwrite"});
  }

  // The journal's lines of plotted rows and the error log's lines, checked as
  // on Linux; the sheets' sizes, in points, by file.
  std::map<std::string, std::pair<double, double>> CheckRun(const std::string& out,
                                                            const std::string& journal,
                                                            const std::string& errors) {
    // Paths as the list holds them: in a folder whose name Windows-1252
    // cannot hold, by the folder's short name.
    const std::string rdc = CodePagePath(Plan("rez-de-chaussee.dxf"));
    const std::string missing = CodePagePath(Plan("sous-sol.dxf"));
    std::vector<std::string> plotted;
    for (const std::string& line : ReadLogLines(journal)) {
      if (line.find(".dxf, ") != std::string::npos) plotted.push_back(line);
    }
    EXPECT_EQ(plotted.size(), 5u) << TempFolder::Read(journal);
    if (plotted.size() == 5u) {
      const std::string folder = rdc.substr(0, rdc.find_last_of('\\'));
      EXPECT_EQ(plotted[0].rfind("rez-de-chaussee.dxf, " + folder, 0), 0u) << plotted[0];
      EXPECT_NE(plotted[0].find(", Plan A3, , PDF.pc3, "), std::string::npos) << plotted[0];
      EXPECT_EQ(plotted[2].rfind("etage.dxf, ", 0), 0u) << plotted[2];
    }
    EXPECT_THAT(ReadLogLines(errors),
                ::testing::IsSupersetOf({LoadResourceText(ids::kCannotOpenDrawing) + missing,
                                         LoadResourceText(ids::kPlotFailed) + missing,
                                         LoadResourceText(ids::kPlotFailed) + rdc}));  // PNG row

    const Sheet sheets[] = {
        {"rdc-a3.pdf", 420, 297},
        {"rdc-a1.pdf", 841, 594},
        {"sud-a1.pdf", 841, 594},
        {"etage-Plan étage", 420, 297},
        {"etage-Détail chambres", 420, 297},
        {"etage-Détail salle de bains", 210, 297},
    };
    std::map<std::string, std::pair<double, double>> sizes;
    for (const Sheet& sheet : sheets) {
      SCOPED_TRACE(sheet.file);
      std::string file = out + "\\" + sheet.file;
      if (!fs::exists(FsPath(file))) file += ".pdf";
      const auto boxes = MediaBoxes(file);
      EXPECT_EQ(boxes.size(), 1u);
      if (boxes.size() != 1u) continue;
      EXPECT_NEAR(boxes[0].first, Points(sheet.widthMm), 1.5);
      EXPECT_NEAR(boxes[0].second, Points(sheet.heightMm), 1.5);
      sizes[sheet.file] = boxes[0];
    }
    const std::string hpgl = TempFolder::Read(out + "\\rdc.plt");
    EXPECT_NE(hpgl.find("IN;"), std::string::npos) << hpgl.substr(0, 80);
    return sizes;
  }

  TempFolder folder_;
  std::string plans_, out_;
};

// In the folder whose name has accents, the same list also goes through the
// COM host, against the test automation server serving the embedded host in
// a process of its own: the same logs and the same sheets as the embedded
// host in the program's own process. One server for the whole test program:
// that check runs once.
TEST_P(PlotExamples, PlotsTheListWithItsLogsAndSheets) {
  const std::string journal = Plan("journal.log"), errors = Plan("erreurs.log");
  MakeList(Plan("liste.qx3"), out_, journal, errors);
  const ProgramRun run = Sheafwork({"plot", Plan("liste.qx3")}, folder_.path());
  EXPECT_EQ(run.status, 1u) << run.err;
  EXPECT_NE(run.err.find("la sortie PNG est indisponible"), std::string::npos)
      << run.err << run.out;
  const auto sheets = CheckRun(out_, journal, errors);
  if (std::string_view(GetParam()) != "Plans été") return;

  const ProgramRun registered =
      Sheafwork({"/RegServer"}, folder_.path(), SHEAFWORK_EMBEDDED_SERVER_FOR_TESTS);
  ASSERT_EQ(registered.status, 0u) << registered.err;
  const std::string com = out_ + "\\com";
  const std::string comJournal = Plan("journal-com.log"), comErrors = Plan("erreurs-com.log");
  MakeList(Plan("com.qx3"), com, comJournal, comErrors);
  const ProgramRun comRun = Sheafwork(
      {"plot", Plan("com.qx3"), "--host", "com", "--progid", "Sheafwork.TestEmbeddedHost.1"},
      folder_.path());
  EXPECT_EQ(comRun.status, 1u) << comRun.err << comRun.out;
  EXPECT_EQ(CheckRun(com, comJournal, comErrors), sheets);
  EXPECT_EQ(sheets.size(), 6u);
}

std::string FolderKind(const ::testing::TestParamInfo<const char*>& info) {
  const char* const names[] = {"Plain", "Accented", "BeyondWindows1252"};
  return names[info.index];
}

INSTANTIATE_TEST_SUITE_P(Folders, PlotExamples,
                         ::testing::Values("plans", "Plans été", "Plans été Ω"), FolderKind);

}  // namespace
}  // namespace sheafwork::testing
