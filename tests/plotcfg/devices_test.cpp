#include "plotcfg/devices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "fakes/fake_host.h"
#include "fakes/temp_folder.h"
#include "host/error.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(DeviceNamesTest, DefaultDeviceAndPlotterFiles) {
  for (const char* yes : {"Par défaut", "PAR DÉFAUT", "par défaut"}) {
    EXPECT_TRUE(IsDefaultDevice(yes)) << yes;
  }
  for (const char* no : {" Par défaut", "Par defaut", ""}) EXPECT_FALSE(IsDefaultDevice(no)) << no;
  for (const char* yes : {"Traceur.pc3", " /cfg/TRACEUR.PC3 "}) {
    EXPECT_TRUE(IsPlotterConfigFile(yes)) << yes;
  }
  for (const char* no : {"Traceurpc3", "Traceur.pc3x", "HP LaserJet"}) {
    EXPECT_FALSE(IsPlotterConfigFile(no)) << no;
  }
}

TEST(DeviceNamesTest, SearchPathPiecesAreTrimmedAndEmptyOnesSkipped) {
  EXPECT_THAT(SplitSearchPath(" /a ; ;/b c;"), ElementsAre("/a", "/b c"));
  EXPECT_THAT(SplitSearchPath("/seul"), ElementsAre("/seul"));
  EXPECT_THAT(SplitSearchPath(";; "), IsEmpty());
}

class DeviceFilesTest : public ::testing::Test {
 protected:
  std::string Dir(const std::string& name) {
    std::filesystem::create_directories(folder_.path() / name);
    return folder_.File(name);
  }
  testing::TempFolder folder_;
};

TEST_F(DeviceFilesTest, FindFileWalksEveryPieceOfThePath) {
  const std::string empty = Dir("vide");
  const std::string one = Dir("un");
  const std::string two = Dir("deux");
  folder_.Write("un/Traceur.pc3", "");
  folder_.Write("deux/Traceur.pc3", "");
  struct Case {
    std::string file;
    std::string path;
    bool found;
  };
  const Case cases[] = {
      {"Traceur.pc3", one, true},
      {"Traceur.pc3", empty, false},
      {"Traceur.pc3", empty + ";", false},
      {"Traceur.pc3", empty + ";" + one + ";", true},
      {"Traceur.pc3", empty + "; " + two + " ", true},
      {"Traceur.pc3", one + ";" + two, true},
      {"Traceur.pc3", one + "/", true},
      {"Autre.pc3", one + ";" + two, false},
      {"Traceur.pc3", " ", false},
      {" ", one, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FindFileWithExtendedPaths(c.file, c.path), c.found) << c.file << " in " << c.path;
  }
}

class FixedPrinters : public PrinterCatalog {
 public:
  explicit FixedPrinters(std::vector<std::string> names) {
    for (auto& name : names) printers_.push_back({name, "pilote", "usb://" + name});
  }
  std::vector<PrinterInfo> Printers() override { return printers_; }

 private:
  std::vector<PrinterInfo> printers_;
};

TEST_F(DeviceFilesTest, NoDevicesCountsPrintersThenAnyFileOfTheConfigFolders) {
  const std::string kdx = "Phantom Ole to KDX Printer";
  const std::string empty = Dir("vide");
  const std::string notes = Dir("notes");
  folder_.Write("notes/lisez-moi.txt", "");
  const std::string hidden = Dir("cache");
  folder_.Write("cache/.verrou", "");
  Dir("cache/sous-dossier");
  struct Case {
    std::vector<std::string> printers;
    std::string configPath;
    bool none;
    bool readsPath;  // a usable printer settles it without the preferences
  };
  const Case cases[] = {
      {{}, "", true, true},
      {{kdx}, empty + ";" + folder_.File("absent") + ";", true, true},
      {{kdx}, empty + "; " + notes, false, true},
      {{kdx}, hidden, true, true},
      {{kdx, "HP"}, notes, false, false},
      {{"phantom ole to kdx printer", kdx}, empty, false, false},
  };
  for (const Case& c : cases) {
    testing::FakeHost host;
    host.printerConfigPath = c.configPath;
    FixedPrinters printers(c.printers);
    EXPECT_EQ(NoDevicesAvailable(*host.App()->GetPreferences(), printers), c.none)
        << c.printers.size() << " printers, " << c.configPath;
    EXPECT_EQ(host.Calls("PrinterConfigPath").size(), c.readsPath ? 1u : 0u);
  }

  testing::FakeHost host;
  host.FailOn("PrinterConfigPath");
  FixedPrinters onlyKdx({kdx});
  EXPECT_THROW(NoDevicesAvailable(*host.App()->GetPreferences(), onlyKdx), host::Error);
}

}  // namespace
}  // namespace sheafwork
