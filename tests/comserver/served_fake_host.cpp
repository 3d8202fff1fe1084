#include "comserver/served_application.h"
#include "fakes/fake_host.h"

namespace sheafwork::comserver {

namespace {

class ServedFakeHost : public ServedApplication {
 public:
  std::shared_ptr<host::Application> App() override { return host_.App(); }
  std::string Kind() const override { return "fake"; }
  bool Configure(std::string_view line) override {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (true) {
      const std::size_t end = line.find('|', start);
      parts.emplace_back(line.substr(start, end - start));
      if (end == std::string_view::npos) break;
      start = end + 1;
    }
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
