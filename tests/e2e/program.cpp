#include "e2e/program.h"

#include <cstdlib>
#include <filesystem>

#include <sys/wait.h>

#include "fakes/cups_queue.h"
#include "fakes/test_data.h"

namespace sheafwork::e2e {

namespace fs = std::filesystem;

ProgramRun Sheafwork(const std::string& args, const testing::TempFolder& folder,
                     const std::string& env, const std::string& exe) {
  const std::string out = folder.File("stdout.txt");
  const std::string err = folder.File("stderr.txt");
  const std::string command = "env -u DISPLAY -u WAYLAND_DISPLAY -u SHEAFWORK_DWG_CONVERTER " +
                              env + " XDG_DATA_HOME=" + Quoted(folder.File("xdg")) + " " +
                              Quoted(exe) + " " + args + " </dev/null >" + Quoted(out) + " 2>" +
                              Quoted(err);
  ProgramRun run;
  const int raw = std::system(command.c_str());
  run.status = raw != -1 && WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  run.out = testing::TempFolder::Read(out);
  run.err = testing::TempFolder::Read(err);
  return run;
}

void ExpectPages(const std::string& file, const std::vector<SheetSize>& sheets) {
  SCOPED_TRACE(file);
  const auto pages = testing::PdfPageSizes(file);
  ASSERT_EQ(pages.size(), sheets.size());
  for (std::size_t i = 0; i < sheets.size(); ++i) {
    SCOPED_TRACE("page " + std::to_string(i + 1));
    EXPECT_NEAR(pages[i].first, Points(sheets[i].first), 1.5);
    EXPECT_NEAR(pages[i].second, Points(sheets[i].second), 1.5);
  }
}

std::string PlotOutput(const std::string& stem) {
  if (fs::is_regular_file(stem)) return stem;
  if (fs::is_regular_file(stem + ".pdf")) return stem + ".pdf";
  return {};
}

ExampleListTest::ExampleListTest()
    : plans_(folder_.File("plans")), out_(folder_.File("sorties")), list_(folder_.File("lot.qx3")) {
  fs::create_directories(out_);
  fs::copy(fs::path(SHEAFWORK_SOURCE_DIR) / "examples/plans", plans_);
}

std::string ExampleListTest::Fixture(const std::string& relative) const {
  const std::string copy = Plan(fs::path(relative).filename().string());
  fs::copy_file(testing::TestData(relative), copy, fs::copy_options::overwrite_existing);
  return copy;
}

void ExampleListTest::List(const std::string& args) {
  const ProgramRun run = Sheafwork("list " + args, folder_);
  ASSERT_EQ(run.status, 0) << args << "\n" << run.err;
}

}  // namespace sheafwork::e2e
