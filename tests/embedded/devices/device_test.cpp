#include "embedded/devices/device.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "fakes/temp_folder.h"

namespace sheafwork::embedded {
namespace {

constexpr const char* kPdf = "driver = pdf\npaper = A | 10 x 10\n";

class DeviceLookupTest : public ::testing::Test {
 protected:
  DeviceLookupTest() {
    std::filesystem::create_directories(folder.path() / "un");
    std::filesystem::create_directories(folder.path() / "deux");
    searchPath = " " + folder.File("vide") + " ;" + folder.File("un") + ";;" + folder.File("deux");
  }
  std::string Write(const std::string& name, const std::string& text = kPdf) {
    return folder.Write(name, text);
  }

  testing::TempFolder folder;
  std::string searchPath;
  std::vector<PrinterInfo> printers = {{"Bureau-HP", "HP LaserJet 4", "ipp://bureau"}};
};

TEST_F(DeviceLookupTest, OtherNamesArePrintersOfTheSystem) {
  const auto printer = FindPlotDevice("Bureau-HP", searchPath, printers);
  ASSERT_TRUE(printer);
  EXPECT_FALSE(printer->WritesFiles());
  EXPECT_EQ(printer->PrinterName(), "Bureau-HP");
  EXPECT_EQ(printer->config.papers, StandardPrinterPapers());
  EXPECT_EQ(printer->config.description, "HP LaserJet 4");
  EXPECT_FALSE(FindPlotDevice("bureau-hp", searchPath, printers));
  EXPECT_FALSE(FindPlotDevice("", searchPath, printers));

  Write("un/Salle.pc3", "driver = printer\nprinter = Bureau-HP\n");
  const auto configured = FindPlotDevice("Salle.pc3", searchPath, printers);
  ASSERT_TRUE(configured);
  EXPECT_FALSE(configured->WritesFiles());
  EXPECT_EQ(configured->PrinterName(), "Bureau-HP");
}

}  // namespace
}  // namespace sheafwork::embedded
