#include "host/host_session.h"

#include "host/error.h"
#include "log/paths.h"
#include "text/strings.h"

namespace sheafwork {

HostSession::HostSession(std::shared_ptr<host::Application> app, std::string programFolder)
    : objOrvaApp(std::move(app)), ProgramFolder(std::move(programFolder)) {}

void HostSession::SetMainAppSysvars() {
  SavedProxyNotice.reset();
  SavedExpert.reset();
  try {
    auto doc = App().ActiveDocument();
    SavedProxyNotice = doc->GetVariable("PROXYNOTICE");
    SavedExpert = doc->GetVariable("EXPERT");
    doc->SetVariable("PROXYNOTICE", std::int16_t{0});
    doc->SetVariable("EXPERT", std::int16_t{2});
  } catch (const host::Error&) {
    // The session goes on with the host's own values; whatever was read is
    // put back at the end.
  }
}

void HostSession::RestoreMainAppSysvars() {
  auto restore = [this](const char* name, const std::optional<host::SysVarValue>& saved) {
    if (!saved) return;
    try {
      App().ActiveDocument()->SetVariable(name, *saved);
    } catch (const host::Error&) {
    }
  };
  restore("PROXYNOTICE", SavedProxyNotice);
  restore("EXPERT", SavedExpert);
}

std::string HostSession::ScratchDrawing() const {
  return ProgramFolder + FolderSeparator() + "QXTEMP.DWG";
}

OpenResult HostSession::OpenDrawing(const std::string& path, bool readOnly) {
  if (GetFileStatus(path) != kFileFound) {
    return {false, host::kFileNotFound, "Fichier introuvable: " + path};
  }
  try {
    auto documents = App().GetDocuments();
    if (documents->Count() == 1) {
      auto active = App().ActiveDocument();
      if (host::SysVarAsInteger(active->GetVariable("SDI")) > 0) {
        if (EqualsIgnoreCase(active->FullName(), path)) {
          objOrvaDoc = active;
          return {true, 0, {}};
        }
        // Single-document mode replaces the active drawing; saving it first
        // keeps the host from asking whether to save it.
        if (!active->ReadOnly()) active->SaveAs(ScratchDrawing());
      }
    }
    documents->Open(path, readOnly)->Activate();
    objOrvaDoc = App().ActiveDocument();
    objOrvaDoc->SetVariable("REGENMODE", std::int16_t{1});
    return {true, 0, {}};
  } catch (const host::HostGone& error) {
    return {false, error.number(), error.description(), true};
  } catch (const host::Error& error) {
    return {false, error.number(), error.description()};
  }
}

bool HostSession::CloseDrawing(const std::string& path) {
  try {
    auto documents = App().GetDocuments();
    const std::int32_t count = documents->Count();
    if (count < 2) return false;
    std::shared_ptr<host::Document> found;
    std::int32_t foundIndex = -1;
    for (std::int32_t i = 0; i < count; ++i) {
      auto doc = documents->Item(i);
      if (EqualsIgnoreCase(doc->FullName(), path)) {
        found = doc;
        foundIndex = i;
        break;
      }
    }
    if (!found) return false;
    documents->Item(foundIndex == 0 ? 1 : 0)->Activate();
    found->Close(false);
    objOrvaDoc = App().ActiveDocument();
    return true;
  } catch (const host::Error&) {
    return false;
  }
}

}  // namespace sheafwork
