#pragma once
// The hosts the program can drive, by name. Each host registers a factory;
// the command line's --host picks one, and the default is used otherwise.

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/automation.h"

namespace sheafwork {

/// Creates (or attaches to) a host application. Throws host::Error when the
/// host cannot be started.
using HostFactory = std::function<std::shared_ptr<host::Application>()>;

class HostRegistry {
 public:
  /// Adds or replaces the host `name`. The first host registered, or one
  /// registered with makeDefault, becomes the default.
  void Register(const std::string& name, HostFactory factory, bool makeDefault = false);

  /// The factory of `name`, or of the default host when `name` is empty;
  /// null when there is no such host.
  const HostFactory* Find(const std::string& name) const;

  const std::string& DefaultName() const { return default_; }
  std::vector<std::string> Names() const;

 private:
  std::map<std::string, HostFactory> factories_;
  std::string default_;
};

}  // namespace sheafwork
