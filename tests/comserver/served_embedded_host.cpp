#include "comserver/served_host.h"
#include "embedded/automation/embedded_host.h"

namespace sheafwork::comserver {

namespace {

class ServedEmbeddedHost : public ServedApplication {
 public:
  std::shared_ptr<host::Application> App() override { return app_; }
  std::string Kind() const override { return "embarque"; }
  bool Configure(std::string_view line) override { return line.starts_with("drawing|"); }

 private:
  std::shared_ptr<host::Application> app_ = embedded::MakeEmbeddedHost();
};

}  // namespace

std::unique_ptr<ServedApplication> MakeServedApplication() {
  return std::make_unique<ServedEmbeddedHost>();
}

}  // namespace sheafwork::comserver
