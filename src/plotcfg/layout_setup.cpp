#include "plotcfg/layout_setup.h"

#include "host/error.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

bool IsAllLayouts(const std::string& layout) { return layout == CachedText<ids::kLayoutAll>(); }
bool IsCurrentTab(const std::string& layout) {
  return layout == CachedText<ids::kLayoutCurrentTab>();
}
bool IsModelTab(const std::string& layout) { return layout == CachedText<ids::kLayoutModelTab>(); }
bool IsLastActiveLayout(const std::string& layout) {
  return layout == CachedText<ids::kLayoutLastActive>();
}
bool IsSpecialLayout(const std::string& layout) {
  return IsAllLayouts(layout) || IsCurrentTab(layout) || IsModelTab(layout) ||
         IsLastActiveLayout(layout);
}

const std::string& ModelTabName() { return CachedText<ids::kModelTabName>(); }

bool SetupLayout(HostSession& host, const std::string& layoutName, ErrorOutput out) {
  // The caller hands each layout of "all layouts" over in a call of its own.
  if (IsAllLayouts(layoutName)) return true;
  try {
    if (IsCurrentTab(layoutName)) return true;
    host::Document& doc = host.Doc();
    if (IsModelTab(layoutName)) {
      if (doc.ActiveSpace() == 0) doc.SetActiveSpace(1);
      return true;
    }
    if (IsLastActiveLayout(layoutName)) {
      // Paper space shows the layout that was last active there.
      if (doc.ActiveSpace() == 1) doc.SetActiveSpace(0);
      return true;
    }
    auto layouts = doc.GetLayouts();
    const std::int32_t count = layouts->Count();
    for (std::int32_t i = 0; i < count; ++i) {
      auto layout = layouts->Item(i);
      if (layout->Name() == layoutName) {
        doc.SetActiveLayout(layout);
        return true;
      }
    }
    return false;
  } catch (const host::Error& error) {
    out.Report(LoadResourceText(ids::kLayoutProblem) + error.description(), error.description());
    return false;
  }
}

}  // namespace sheafwork
