#pragma once
// Plan.dwg, a drawing open in the scripted host as the session's current
// document, and a real error log to read back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/fake_host.h"
#include "fakes/log_lines.h"
#include "fakes/temp_folder.h"
#include "host/host_session.h"
#include "log/log_file.h"
#include "res/string_table.h"

namespace sheafwork {

class PlotcfgTest : public ::testing::Test {
 protected:
  void SetUp() override {
    plan_.AddLayout("Présentation1");
    ASSERT_TRUE(errorLog_.Open(logPath_, false));
  }

  /// Opens Plan.dwg in model space (1) or on Présentation1 in paper space (0)
  /// and forgets the host calls made so far.
  testing::FakeDocument& OpenPlan(std::int16_t space) {
    plan_.activeSpace = space;
    plan_.activeLayout = space == 0 ? 1 : 0;
    const OpenResult opened = session_.OpenDrawing(plan_.path);
    EXPECT_TRUE(opened.ok) << opened.description;
    host_.ClearCalls();
    return *host_.LastOpened(plan_.path);
  }
  static testing::FakeLayoutData& Active(testing::FakeDocument& doc) {
    return doc.data.layouts.at(doc.data.activeLayout);
  }

  /// The lines of the error log, back in UTF-8.
  std::vector<std::string> LogLines() const { return testing::ReadLogLines(logPath_); }

  static std::string Text(int id) { return LoadResourceText(id); }

  testing::FakeHost host_;
  HostSession session_{host_.App(), host_.Folder().path().string()};
  testing::FakeDrawing& plan_ = host_.AddDrawing("Plan.dwg");  ///< Objet, Présentation1
  testing::TempFolder logDir_;
  const std::string logPath_ = logDir_.File("QXERROR.LOG");
  LogFile errorLog_;
};

}  // namespace sheafwork
