#include "plotcfg/devices.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#include "fakes/fake_host.h"
#include "fakes/system_doubles.h"
#include "fakes/temp_folder.h"

namespace sheafwork {
namespace {

// A file is looked for in every piece of a search path. Without a printer but
// the pseudo-printer (named exactly), any file but a hidden one in a
// configuration folder is a device.
TEST(DeviceFilesTest, SearchPathPiecesAndTheDeviceCount) {
  const testing::TempFolder folder;
  for (const char* dir : {"vide", "un", "notes", "cache/sous-dossier"}) {
    std::filesystem::create_directories(folder.path() / dir);
  }
  for (const char* file : {"un/Traceur.pc3", "notes/lisez-moi.txt", "cache/.verrou"}) {
    folder.Write(file, "");
  }
  const std::string empty = folder.File("vide"), one = folder.File("un");
  const std::string notes = folder.File("notes"), hidden = folder.File("cache");
  const std::pair<std::string, bool> paths[] = {
      {empty + ";", false},
      {empty + ";" + one + ";", true},   // found before a trailing ";"
      {empty + "; " + one + " ", true},  // in the final piece, trimmed
      {one + "/", true},
      {" ", false},
  };
  for (const auto& [path, found] : paths) {
    EXPECT_EQ(FindFileWithExtendedPaths("Traceur.pc3", path), found) << path;
  }
  EXPECT_FALSE(FindFileWithExtendedPaths("Autre.pc3", one));
  EXPECT_FALSE(FindFileWithExtendedPaths(" ", one));

  const PrinterInfo kdx{"Phantom Ole to KDX Printer", "", ""};
  // printers, configuration path, no device, path read
  using Case = std::tuple<std::vector<PrinterInfo>, std::string, bool, bool>;
  const Case cases[] = {
      {{}, "", true, true},
      {{kdx}, empty + ";" + folder.File("absent") + ";", true, true},
      {{kdx}, empty + "; " + notes, false, true},
      {{kdx}, hidden, true, true},
      {{{"phantom ole to kdx printer", "", ""}}, empty, false, false},
  };
  for (const auto& [list, configPath, none, readsPath] : cases) {
    testing::FakeHost host;
    host.printerConfigPath = configPath;
    testing::ListedPrinters printers;
    printers.printers = list;
    EXPECT_EQ(NoDevicesAvailable(*host.App()->GetPreferences(), printers), none) << configPath;
    EXPECT_EQ(host.Calls("PrinterConfigPath").size(), readsPath ? 1u : 0u) << configPath;
  }
}

}  // namespace
}  // namespace sheafwork
