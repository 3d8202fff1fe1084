#include "embedded/automation/variables.h"
#include "log/wide_path.h"

#include <filesystem>

namespace sheafwork::embedded {

namespace fs = std::filesystem;
namespace msg = host_messages;

namespace {

enum class Scope { Host, Document, TileMode, LogFileName, DwgName, DwgPrefix };

struct Variable {
  const char* name;
  Scope scope;
  bool text;  ///< a text, else a 16-bit integer
  int min;
  int max;
};

constexpr Variable kVariables[] = {
    {"SDI", Scope::Host, false, 0, 3},
    {"EXPERT", Scope::Host, false, 0, 5},
    {"PROXYNOTICE", Scope::Host, false, 0, 1},
    {"XREFCTL", Scope::Host, false, 0, 2},
    {"FILEDIA", Scope::Host, false, 0, 1},
    {"CMDECHO", Scope::Host, false, 0, 1},
    {"CMDDIA", Scope::Host, false, 0, 1},
    {"SHPNAME", Scope::Host, true, 0, 0},
    {"REGENMODE", Scope::Document, false, 0, 1},
    {"TILEMODE", Scope::TileMode, false, 0, 1},
    {"LOGFILENAME", Scope::LogFileName, true, 0, 0},
    {"DWGNAME", Scope::DwgName, true, 0, 0},
    {"DWGPREFIX", Scope::DwgPrefix, true, 0, 0},
};

std::string Upper(std::string name) {
  for (char& c : name) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return name;
}

const Variable& Find(const std::string& name) {
  const std::string key = Upper(name);
  for (const Variable& variable : kVariables) {
    if (key == variable.name) return variable;
  }
  throw host::Error(msg::kUnknownVariable, msg::UnknownVariable(name));
}

std::string FileName(const DocumentState& doc) { return PathText(FsPath(doc.fullName).filename()); }

std::string Folder(const HostCore& core, const DocumentState& doc) {
  const fs::path folder = FsPath(doc.fullName).parent_path();
  const std::string text = folder.empty() ? core.options.userFolder : PathText(folder);
  return text.ends_with('/') ? text : text + "/";
}

bool IsModel(const DocumentState& doc) { return doc.ActiveLayout().IsModel(); }

}  // namespace

std::map<std::string, host::SysVarValue> DefaultHostVariables() {
  return {{"SDI", std::int16_t{0}},         {"EXPERT", std::int16_t{0}},
          {"PROXYNOTICE", std::int16_t{1}}, {"XREFCTL", std::int16_t{0}},
          {"FILEDIA", std::int16_t{1}},     {"CMDECHO", std::int16_t{1}},
          {"CMDDIA", std::int16_t{1}},      {"SHPNAME", std::string()}};
}

std::map<std::string, host::SysVarValue> DefaultDocumentVariables() {
  return {{"REGENMODE", std::int16_t{1}}};
}

std::string HostLogFile(const HostCore& core, const std::string& drawingPath) {
  const std::string stem = PathText(FsPath(drawingPath).stem());
  return PathText(FsPath(core.logFilePath) / FsPath(stem + msg::kLogFileSuffix));
}

std::string HostLogFile(const HostCore& core, const DocumentState& doc) {
  return HostLogFile(core, doc.fullName);
}

host::SysVarValue GetVariable(HostCore& core, DocumentState& doc, const std::string& name) {
  const Variable& variable = Find(name);
  switch (variable.scope) {
    case Scope::Host:
      return core.hostVariables.at(variable.name);
    case Scope::Document:
      return doc.variables.at(variable.name);
    case Scope::TileMode:
      return std::int16_t{IsModel(doc) ? std::int16_t{1} : std::int16_t{0}};
    case Scope::LogFileName:
      return HostLogFile(core, doc);
    case Scope::DwgName:
      return FileName(doc);
    case Scope::DwgPrefix:
      return Folder(core, doc);
  }
  throw host::Error(msg::kUnknownVariable, msg::UnknownVariable(name));
}

void SetVariable(HostCore& core, DocumentState& doc, const std::string& name,
                 const host::SysVarValue& value) {
  const Variable& variable = Find(name);
  const bool readOnly = variable.scope == Scope::LogFileName || variable.scope == Scope::DwgName ||
                        variable.scope == Scope::DwgPrefix;
  if (readOnly) throw host::Error(msg::kReadOnlyVariable, msg::ReadOnlyVariable(variable.name));

  host::SysVarValue stored;
  if (variable.text) {
    if (!std::holds_alternative<std::string>(value)) {
      throw host::Error(msg::kTypeMismatch, msg::VariableType(variable.name));
    }
    stored = value;
  } else {
    std::int32_t number = 0;
    if (const auto* small = std::get_if<std::int16_t>(&value)) {
      number = *small;
    } else if (const auto* large = std::get_if<std::int32_t>(&value)) {
      number = *large;
    } else {
      throw host::Error(msg::kTypeMismatch, msg::VariableType(variable.name));
    }
    if (number < variable.min || number > variable.max) {
      throw host::Error(msg::kInvalidArgument,
                        msg::VariableRange(variable.name, variable.min, variable.max));
    }
    stored = static_cast<std::int16_t>(number);
  }

  switch (variable.scope) {
    case Scope::Host:
      core.hostVariables[variable.name] = stored;
      return;
    case Scope::Document:
      doc.variables[variable.name] = stored;
      return;
    case Scope::TileMode:
      SetSpace(doc, std::get<std::int16_t>(stored));
      return;
    case Scope::LogFileName:
    case Scope::DwgName:
    case Scope::DwgPrefix:
      return;
  }
}

void SetSpace(DocumentState& doc, int space) {
  if (space != 0 && space != 1) throw host::Error(msg::kInvalidArgument, msg::BadSpace(space));
  if ((space == 1) == IsModel(doc)) return;
  if (space == 1) {
    doc.Activate(doc.tabs.front());
    return;
  }
  if (!doc.lastPaperLayout) throw host::Error(msg::kInvalidArgument, msg::NoPaperLayout());
  doc.Activate(*doc.lastPaperLayout);
}

}  // namespace sheafwork::embedded
