#pragma once
// What lives for the whole run of the program: the batch list and its
// selection, the list file's name and state, the log settings, and the host
// window whose size the list file keeps. Commands are operations on a Session
// (see list_commands.h), shared by the desktop application and the command line.

#include <cstdint>
#include <string>

#include "batch/batch_list.h"
#include "batch/selection_cache.h"
#include "log/log_settings.h"

namespace sheafwork {

/// The host's main window, as far as the list file is concerned. Members may
/// throw when the host refuses a value.
class HostWindow {
 public:
  virtual ~HostWindow();
  virtual std::int32_t Width() = 0;
  virtual std::int32_t Height() = 0;
  virtual void SetWidth(std::int32_t width) = 0;
  virtual void SetHeight(std::int32_t height) = 0;
};

/// A view of the list (the main window's list view) follows the session
/// through these notifications. Row n of the view always shows entry n.
class ListObserver {
 public:
  virtual ~ListObserver();
  /// The whole list changed; rebuild every row. With keepSelection, select
  /// again the rows at the positions that were selected.
  virtual void ListReloaded(bool keepSelection) = 0;
  /// Entry n was appended at the end of the list.
  virtual void EntryAppended(int n) = 0;
  /// Entry n was removed; the rows after it moved up by one.
  virtual void EntryRemoved(int n) = 0;
};

class Session {
 public:
  /// The size a new list records when no host window is attached.
  static constexpr const char* kDefaultWinSize = "1024,768";

  /// `defaultLogFolder` is where the logs go unless a list says otherwise.
  explicit Session(std::string defaultLogFolder);

  BatchList List;
  SelectionCache Selection;
  std::string ListName;  ///< the list file's full path as last read or saved; empty: unnamed
  bool ListModified = false;
  LogSettings Log;
  std::string Caption;  ///< the main window's caption

  /// The host window; null when no host is attached. Not owned.
  HostWindow* Host = nullptr;
  /// The window size ("width,height", two 16-bit numbers) that lists read
  /// without a host carry, and that saving writes when no host is attached;
  /// a list whose value is not such a size leaves it unchanged.
  std::string WinSize = kDefaultWinSize;

  /// The view following the list; may be null. Not owned.
  ListObserver* View = nullptr;

  const std::string& DefaultLogFolder() const { return defaultLogFolder_; }

  /// Sets the log settings to their defaults, empties the list name and the
  /// list.
  void ResetLogSettings();

  /// Tells the view to rebuild every row and sets ListModified.
  void ReloadMainListview(bool modified, bool keepSelection);

  /// The caption for the list file at `path`, or the plain title when empty.
  static std::string CaptionFor(const std::string& path);

 private:
  std::string defaultLogFolder_;
};

}  // namespace sheafwork
