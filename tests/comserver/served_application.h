#pragma once
// The application the test server serves: the embedded host when the build
// has it, else the scripted fake host of the tests.

#include <memory>
#include <string>
#include <string_view>

#include "host/automation.h"

namespace sheafwork::comserver {

class ServedApplication {
 public:
  virtual ~ServedApplication() = default;
  virtual std::shared_ptr<host::Application> App() = 0;
  /// "fake" or "embarque": which host is served, for checks that hold for
  /// one of them only.
  virtual std::string Kind() const = 0;
  /// Reads a control line meant for this application; false when it is
  /// none of its own. The fake host reads
  ///   drawing|<full path>|<layout>|<layout>...
  /// (a drawing it serves, with its paper-space layouts); the embedded host
  /// takes such lines and ignores them, since it reads the files.
  virtual bool Configure(std::string_view line) = 0;
};

std::unique_ptr<ServedApplication> MakeServedApplication();

}  // namespace sheafwork::comserver
