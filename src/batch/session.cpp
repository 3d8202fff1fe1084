#include "batch/session.h"

#include <utility>

#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

HostWindow::~HostWindow() = default;
ListObserver::~ListObserver() = default;

Session::Session(std::string defaultLogFolder)
    : Log(DefaultLogSettings(defaultLogFolder)),
      Caption(CaptionFor({})),
      defaultLogFolder_(std::move(defaultLogFolder)) {}

void Session::ResetLogSettings() {
  Log = DefaultLogSettings(defaultLogFolder_);
  ListName.clear();
  List.Clear();
}

void Session::ReloadMainListview(bool modified, bool keepSelection) {
  ListModified = modified;
  if (View) View->ListReloaded(keepSelection);
}

std::string Session::CaptionFor(const std::string& path) {
  if (path.empty()) return LoadResourceText(ids::kAppTitle);
  return LoadResourceText(ids::kCaptionPrefix) + path;
}

}  // namespace sheafwork
