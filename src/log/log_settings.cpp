#include "log/log_settings.h"

#include "log/paths.h"

namespace sheafwork {

LogSettings DefaultLogSettings(std::string_view folder) {
  // Plain concatenation: a folder that already ends with a separator (the
  // root of a drive) gives a doubled one, as the list files have always had.
  const std::string prefix = std::string(folder) + FolderSeparator();
  LogSettings settings;
  settings.JournalLogFileName = prefix + "QXJOURNL.LOG";
  settings.ErrorLogFileName = prefix + "QXERROR.LOG";
  return settings;
}

}  // namespace sheafwork
