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

std::array<std::string, kListColumns> ListRowTexts(const BatchEntry& entry) {
  return {FileNameFromPath(entry.FileName), FolderFromPath(entry.FileName),
          OrDefault(entry.Layout, ids::kLayoutCurrentTab),
          OrDefault(entry.PlotSetup, ids::kDefault), OrDefault(entry.PlotDevice, ids::kDefault)};
}

std::string ListColumnTitle(int column) { return LoadResourceText(ids::kColumnFirst + column); }

}  // namespace sheafwork
