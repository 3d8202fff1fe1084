#pragma once
// The options that set the fields of a list row on the command line: the
// same for `list add`, `list edit` and `plot DRAWING...`.

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace sheafwork {

struct BatchEntry;

/// The fields the options give; an option not given leaves its field as it
/// is (a new row's default: empty or false).
struct EntryFieldOptions {
  std::optional<std::string> layout;
  std::optional<std::string> setup;
  std::optional<std::string> device;
  std::optional<std::string> layers;
  std::optional<std::string> area;   ///< a readable word or a list-file code
  std::optional<std::string> scale;  ///< a readable scale or a list-file code
  /// Given: empty for the bare flag (`--scale` holds a custom scale), else
  /// the custom scale "N:M".
  std::optional<std::string> customScale;
  std::optional<bool> scaleLineweights;
  std::optional<std::string> plotFile;

  /// True when any option was given.
  bool Any() const;
};

/// Adds an option whose text goes into `target`.
void AddText(CLI::App* command, const std::string& name, std::optional<std::string>& target,
             const std::string& help);

/// Adds the options to `command`, filling `fields`.
void AddRowOptions(CLI::App& command, EntryFieldOptions& fields);

/// Sets the fields the options give on `entry`, the readable plot area and
/// scale turned into the list file's codes. Changes nothing and returns the
/// reason, in French, when a value is not one the row can hold; empty when
/// done.
std::string ApplyRowOptions(const EntryFieldOptions& fields, BatchEntry& entry);

}  // namespace sheafwork
