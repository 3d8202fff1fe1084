// How the embedded host runs a DWG converter: the stand-in converters of
// tests/data/dwg/converters in place of tools/dwg2dxf.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "embedded/automation/dwg_converter.h"
#include "embedded/automation/plot_run_fixture.h"

namespace sheafwork::embedded {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

std::string Converter(const std::string& name) {
  return std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/dwg/converters/" + name;
}

// Sets an environment variable for the life of the object.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::string& value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    setenv(name, value.c_str(), 1);
  }
  ~ScopedVariable() {
    if (old_) {
      setenv(name_, old_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

struct Failure {
  const char* converter;
  int timeLimitMs;
  const char* reason;  ///< what the error says between parentheses
};

class DwgConverterFailure : public EmbeddedHostTest,
                            public ::testing::WithParamInterface<Failure> {};

TEST_P(DwgConverterFailure, FailsTheOpenWithTheReasonOnTheDisplayAndInTheHostLog) {
  const Failure& failure = GetParam();
  options.dwgConverter = Converter(failure.converter);
  options.dwgTimeLimit = std::chrono::milliseconds(failure.timeLimitMs);
  Host()->GetPreferences()->SetLogFileOn(true);
  const std::string dwg = AddDrawing("Plan.dwg");

  const auto start = std::chrono::steady_clock::now();
  const host::Error error = ErrorOf([&] { Open(dwg); });
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  const std::string expected =
      "la conversion DWG a échoué (" + std::string(failure.reason) + ") : " + dwg;
  EXPECT_EQ(error.description(), expected);
  EXPECT_EQ(display->failures, std::vector<std::string>{expected});
  EXPECT_THAT(PlanLog(), HasSubstr(expected));
  EXPECT_EQ(Host()->GetDocuments()->Count(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Converters, DwgConverterFailure,
    ::testing::Values(Failure{"reason.sh", 10000, "dwg2dxf: fichier abîmé (section des objets)"},
                      Failure{"no-output.sh", 10000,
                              "le convertisseur n'a pas écrit de fichier DXF"},
                      Failure{"hangs.sh", 300, "le convertisseur a été arrêté au bout de 1 s"}));

TEST_F(EmbeddedHostTest, AnUnreadableConversionNamesTheDrawingNotTheTemporaryFile) {
  options.dwgConverter = Converter("unreadable-output.sh");
  options.reader = [](const std::string& path) { return ReadDxfFile(path); };
  const std::string dwg = AddDrawing("Plan.dwg");
  const host::Error error = ErrorOf([&] { Open(dwg); });
  EXPECT_EQ(error.description(), "le DXF converti de ce dessin DWG est illisible (ligne 1 : " +
                                     std::string("section TABLES sans ENDSEC) : ") + dwg);
}

TEST_F(EmbeddedHostTest, AConverterRunByNodeSaysWhatToInstallWhenNodeIsMissing) {
  testing::TempFolder emptyPath;
  options.dwgConverter = (data.path() / "dwg2dxf" / "dwg2dxf.js").string();
  const std::string dwg = AddDrawing("Plan.dwg");
  ScopedVariable path("PATH", emptyPath.path().string());
  const host::Error error = ErrorOf([&] { Open(dwg); });
  EXPECT_THAT(error.description(), HasSubstr("Node.js est introuvable"));
  EXPECT_THAT(error.description(), HasSubstr("installez le paquet nodejs"));
  EXPECT_THAT(error.description(), HasSubstr(dwg));
}

TEST_F(EmbeddedHostTest, TheConverterBesideTheDataIsTheDefaultAndTheEnvironmentOverridesIt) {
  const auto converterOf = [&] {
    options.dwgConverter.reset();
    return std::dynamic_pointer_cast<EmbeddedPreferences>(
               MakeEmbeddedHost(options)->GetPreferences())
        ->DwgConverter();
  };
  ScopedVariable none("SHEAFWORK_DWG_CONVERTER", "");
  EXPECT_EQ(converterOf(), "");  // not installed

  const std::string bundled = Put(data, "dwg2dxf/dwg2dxf.js", "");
  EXPECT_EQ(bundled, BundledDwgConverter(data.path().string()));
  EXPECT_EQ(converterOf(), bundled);

  ScopedVariable named("SHEAFWORK_DWG_CONVERTER", "/opt/convertir");
  EXPECT_EQ(converterOf(), "/opt/convertir");
}

class DwgRunTest : public EmbeddedRunTest {
 protected:
  DwgRunTest() { options.dwgConverter = Converter("counting.sh"); }

  // The outputs the converter was run for, in order.
  std::vector<std::string> Runs() const { return testing::ReadLogLines(runs.File("runs")); }

  testing::TempFolder runs;
  ScopedVariable runsVariable{"RUNS", runs.File("runs")};
};

TEST_F(DwgRunTest, ARunConvertsEachDrawingOnceAndRemovesTheConversionsAtItsEnd) {
  const std::string dwg = AddDrawing("Plan.dwg");
  Row(dwg, "Toutes les présentations");
  Row(dwg, "Présentation1");
  const RunResult result = Run();
  EXPECT_EQ(result.totalPlots, 3);
  // The counting pass and both rows used one conversion.
  ASSERT_THAT(Runs(), SizeIs(1));
  EXPECT_FALSE(fs::exists(fs::path(Runs().front()).parent_path()));

  // The next run converts again, as does a drawing changed since.
  Run();
  EXPECT_THAT(Runs(), SizeIs(2));
  auto doc = Open(dwg);
  doc->Close(false);
  files.Write("Plan.dwg", "Plan.dwg ");
  drawings["Plan.dwg "] = SampleDrawing();
  Open(dwg);
  EXPECT_THAT(Runs(), SizeIs(4));
  EXPECT_TRUE(fs::exists(Runs().back()));
  Host()->Quit();
  EXPECT_FALSE(fs::exists(Runs().back()));
}

}  // namespace
}  // namespace sheafwork::embedded
