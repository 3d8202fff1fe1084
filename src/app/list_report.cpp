#include "app/list_report.h"

#include <nlohmann/json.hpp>

#include "batch/list_row.h"
#include "batch/plot_values.h"
#include "batch/session.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using Json = nlohmann::ordered_json;

// A caption of the string table without its accelerator mark and the colon.
std::string Label(int id) {
  std::string text = LoadResourceText(id);
  std::string out;
  for (char c : text) {
    if (c != '&') out.push_back(c);
  }
  while (!out.empty() && (out.back() == ':' || out.back() == ' ')) out.pop_back();
  return out;
}

}  // namespace

std::string ListToJson(const Session& session) {
  const LogSettings& log = session.Log;
  Json entries = Json::array();
  for (const BatchEntry& e : session.List) {
    entries.push_back({{"FileName", e.FileName},
                       {"Layout", e.Layout},
                       {"PlotSetup", e.PlotSetup},
                       {"PlotDevice", e.PlotDevice},
                       {"Layers", e.Layers},
                       {"PlotArea", e.PlotArea},
                       {"PlotScale", e.PlotScale},
                       {"ScaleCustom", e.ScaleCustom},
                       {"ScaleLW", e.ScaleLW},
                       {"PlotFile", e.PlotFile}});
  }
  const Json doc = {{"name", session.ListName},
                    {"winSize", session.WinSize},
                    {"log",
                     {{"JournalLogOn", log.JournalLogOn},
                      {"JournalLogFileName", log.JournalLogFileName},
                      {"JournalHeader", log.JournalHeader},
                      {"JournalUserComment", log.JournalUserComment},
                      {"JournalAppend", log.JournalAppend},
                      {"ErrorLogOn", log.ErrorLogOn},
                      {"ErrorLogFileName", log.ErrorLogFileName},
                      {"ErrorHeader", log.ErrorHeader},
                      {"ErrorAppend", log.ErrorAppend}}},
                    {"entries", entries}};
  // Invalid UTF-8 cannot come from the reader, which decodes every byte.
  return doc.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

// The labels are the captions of the logging dialog (ids 172 to 186) and of
// the plot settings dialog (230 to 257), so that the report reads like them.
std::string ListToText(const Session& session) {
  const LogSettings& log = session.Log;
  std::string out;
  const auto line = [&out](const std::string& label, const std::string& value) {
    out += label + " : " + value + "\n";
  };
  const auto onOff = [](bool on) { return LoadResourceText(on ? 253 : 254); };
  const auto mode = [](bool append) { return Label(append ? 177 : 176); };

  out += Session::CaptionFor(session.ListName) + "\n";
  out += "\n" + Label(172) + " : " + onOff(log.JournalLogOn) + "\n";
  line("  " + Label(174), log.JournalLogFileName + " (" + mode(log.JournalAppend) + ")");
  line("  " + Label(178), log.JournalHeader);
  line("  " + Label(179), log.JournalUserComment);
  out += Label(180) + " : " + onOff(log.ErrorLogOn) + "\n";
  line("  " + Label(182), log.ErrorLogFileName + " (" + mode(log.ErrorAppend) + ")");
  line("  " + Label(186), log.ErrorHeader);

  int n = 0;
  for (const BatchEntry& e : session.List) {
    const auto row = ListRowTexts(e);
    out += "\n" + std::to_string(++n) + ". " + row[0] + "\n";
    for (int column = 1; column < kListColumns; ++column) {
      line("   " + ListColumnTitle(column), row[column]);
    }
    if (!e.Layers.empty()) line("   " + Label(230), e.Layers);
    if (!e.PlotArea.empty())
      line("   " + Label(238), e.PlotArea + " (" + PlotAreaName(e.PlotArea) + ")");
    if (!e.PlotScale.empty() || e.ScaleCustom) {
      std::string meaning = PlotScaleName(e.PlotScale, e.ScaleCustom);
      if (e.ScaleCustom) meaning += (meaning.empty() ? "" : ", ") + Label(257);
      line("   " + Label(244), e.PlotScale + " (" + meaning + ")");
    }
    if (e.ScaleLW) line("   " + Label(249), onOff(true));
    if (!e.PlotFile.empty()) line("   " + Label(250), e.PlotFile);
  }
  return out;
}

}  // namespace sheafwork
