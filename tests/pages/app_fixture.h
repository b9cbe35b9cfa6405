#pragma once
// An application over a recording platform, with its last-session file in a
// fresh temporary folder.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "pages/application.h"
#include "plot/recording_canvas.h"
#include "support/recording_platform.h"

namespace drenik::testing {

class AppTest : public ::testing::Test {
 protected:
  AppTest() {
    folder_ = std::filesystem::temp_directory_path() /
              ("drenik_pages_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
               "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    session_ = (folder_ / "Drenikfilter.dat").string();
  }
  ~AppTest() override { std::filesystem::remove_all(folder_); }

  Application& App() {
    if (!app_) {
      app_ = std::make_unique<Application>(platform, ApplicationOptions{session_, "guide.html"});
    }
    return *app_;
  }
  DesignRecord& D() { return App().Record(); }
  DesignPage& Design() { return App().Design(); }
  DisplayPage& Display() { return App().Display(); }

  void WriteSession(const std::string& line) { std::ofstream(session_) << line << "\r\n"; }
  std::string ReadSession() const {
    std::ifstream in(session_, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }

  // Opening page, then "Start".
  DesignPage& StartDesign() {
    App().Start();
    App().Opening().Controls().FindButton("cmdStart")->Click();
    return Design();
  }

  // Texts printed on a canvas at one place.
  static const DrawOp* TextAt(const RecordingCanvas& canvas, const std::string& text, float x,
                              float y) {
    for (const DrawOp& op : canvas.Ops()) {
      if (op.kind == DrawOp::Kind::Text && op.text == text && op.x1 == x && op.y1 == y) return &op;
    }
    return nullptr;
  }

  RecordingPlatform platform;
  std::filesystem::path folder_;
  std::string session_;
  std::unique_ptr<Application> app_;
};

}  // namespace drenik::testing
