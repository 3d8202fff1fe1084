#include "host/startup.h"

#include "batch/list_commands.h"
#include "host/error.h"
#include "log/paths.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"

namespace sheafwork {

namespace {

std::string Join(const std::string& folder, const std::string& name) {
  return folder + FolderSeparator() + name;
}

bool Exists(const std::string& path) { return GetFileStatus(path) == kFileFound; }

/// The folder the host reports, unless it is empty or on the network.
std::string LocalHostPath(const std::string& path) {
  if (path.empty() || path.starts_with("\\\\")) {
    return FolderSeparator() == '\\' ? "C:\\" : "/";
  }
  return path;
}

}  // namespace

AttachResult AttachHost(const HostFactory& factory, const ProgramFiles& files, Prompt& prompt) {
  AttachResult result;
  try {
    result.host = std::make_unique<HostSession>(factory(), files.writeFolder);
    HostSession& host = *result.host;
    host.HostStarted = true;
    host.App().SetVisible(true);
    host.HostPath = host.App().Path();
    host.objOrvaDoc = host.App().ActiveDocument();

    result.helpFilePath = Join(Join(host.HostPath, "Help"), "quirerun.hlp");
    if (!Exists(result.helpFilePath)) result.helpFilePath = Join(files.dataFolder, "quirerun.hlp");

    const std::string templateDrawing = Join(files.dataFolder, "QUIRERUN.DWG");
    if (Exists(templateDrawing)) host.OpenDrawing(templateDrawing);

    host.HostHeight = host.App().Height();
    host.HostWidth = host.App().Width();
    host.HostPath = LocalHostPath(host.HostPath);
    host.SetMainAppSysvars();
    host.objOrvaState = host.App().GetOrvaState();
    result.ok = true;
  } catch (const host::Error&) {
    prompt.Ask({LoadResourceText(ids::kHostLoadFailed), LoadResourceText(ids::kErrorTitle),
                PromptIcon::Critical, PromptButtons::Ok});
    result.ok = false;
  }
  return result;
}

bool LoadCommandLineList(Session& session, Prompt& prompt, const std::string& name) {
  if (name.empty() || !Exists(name) || !EndsWithIgnoreCase(name, "qx3")) return false;
  return LoadListFile(session, prompt, name);
}

bool ConfirmExit(Prompt& prompt, bool forcedExit) {
  if (forcedExit) return true;
  return prompt.Ask({LoadResourceText(ids::kConfirmExit), LoadResourceText(ids::kAppTitle),
                     PromptIcon::Question, PromptButtons::OkCancel}) == PromptAnswer::Ok;
}

void EndSession(Session& session, HostSession* host, Prompt& prompt) {
  if (session.ListModified && session.List.EntryCount() > 0) {
    const auto answer =
        prompt.Ask({LoadResourceText(ids::kSaveCurrentList), LoadResourceText(ids::kAppTitle),
                    PromptIcon::Information, PromptButtons::YesNo});
    if (answer == PromptAnswer::Yes) SaveList(session, prompt);
  }
  if (!host || !host->objOrvaApp) return;
  host->RestoreMainAppSysvars();
  try {
    host->App().SetWidth(host->HostWidth);
    host->App().SetHeight(host->HostHeight);
  } catch (const host::Error&) {
  }
  if (host->HostStarted) {
    try {
      host->App().Quit();
    } catch (const host::Error&) {
    }
  }
  host->objOrvaDoc.reset();
  host->objOrvaApp.reset();
}

}  // namespace sheafwork
