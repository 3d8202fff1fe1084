#include "comserver/served_host.h"
#include "comserver/served_object.h"
#include "fakes/fake_host.h"

namespace sheafwork::comserver {

namespace {

class ServedFakeHost : public ServedApplication {
 public:
  std::shared_ptr<host::Application> App() override { return host_.App(); }
  std::string Kind() const override { return "fake"; }
  bool Configure(std::string_view line) override {
    const std::vector<std::string> parts = ControlFields(line);
    if (parts.size() < 2 || parts[0] != "drawing") return false;
    auto& drawing = host_.AddDrawingAt(parts[1]);
    for (std::size_t i = 2; i < parts.size(); ++i) drawing.AddLayout(parts[i]);
    return true;
  }

 private:
  testing::FakeHost host_;
};

}  // namespace

std::unique_ptr<ServedApplication> MakeServedApplication() {
  return std::make_unique<ServedFakeHost>();
}

}  // namespace sheafwork::comserver
