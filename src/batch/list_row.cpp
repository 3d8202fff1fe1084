#include "batch/list_row.h"

#include "batch/batch_entry.h"
#include "log/paths.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

std::string OrDefault(const std::string& value, int defaultId) {
  return value.empty() ? LoadResourceText(defaultId) : value;
}

}  // namespace

BatchEntry EntryAsShown(const BatchEntry& entry) {
  BatchEntry shown = entry;
  shown.Layout = OrDefault(entry.Layout, ids::kLayoutCurrentTab);
  shown.PlotSetup = OrDefault(entry.PlotSetup, ids::kDefault);
  shown.PlotDevice = OrDefault(entry.PlotDevice, ids::kDefault);
  return shown;
}

std::array<std::string, kListColumns> ListRowTexts(const BatchEntry& entry) {
  const BatchEntry shown = EntryAsShown(entry);
  return {FileNameFromPath(entry.FileName), FolderFromPath(entry.FileName), shown.Layout,
          shown.PlotSetup, shown.PlotDevice};
}

std::string ListColumnTitle(int column) { return LoadResourceText(ids::kColumnFirst + column); }

}  // namespace sheafwork
