#pragma once
// An application over a recording platform, its session file in a new folder.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>

#include "pages/application.h"
#include "plot/recording_canvas.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik::testing {

class AppTest : public ::testing::Test {
 protected:
  AppTest() : folder_(temp_.Path()), session_((folder_ / "Drenikfilter.dat").string()) {}

  Application& App() {
    if (!app_) {
      app_ = std::make_unique<Application>(platform, ApplicationOptions{session_, "guide.html"});
    }
    return *app_;
  }
  DesignRecord& D() { return App().Record(); }
  DesignPage& Design() { return App().Design(); }
  DisplayPage& Display() { return App().Display(); }

  void WriteSession(const std::string& line) { WriteWhole(session_, line + "\r\n"); }
  std::string ReadSession() const { return ReadWhole(session_); }

  // Opening page, then "Start".
  DesignPage& StartDesign() {
    App().Start();
    App().Opening().Controls().FindButton("cmdStart")->Click();
    return Design();
  }

  // Whether the display page has a text printed at one place (or anywhere).
  bool Shows(const std::string& text, std::optional<float> x = {}, std::optional<float> y = {}) {
    const auto& ops = App().DisplayCanvas().Ops();
    return std::any_of(ops.begin(), ops.end(), [&](const DrawOp& op) {
      return op.kind == DrawOp::Kind::Text && op.text == text && (!x || op.x1 == *x) &&
             (!y || op.y1 == *y);
    });
  }

  RecordingPlatform platform;
  TempFolder temp_;
  std::filesystem::path folder_;
  std::string session_;
  std::unique_ptr<Application> app_;
};

}  // namespace drenik::testing
