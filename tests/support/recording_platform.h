#pragma once
// A platform for tests: records every message, beep, URL and dialog, and
// answers file dialogs with a path the test sets beforehand.

#include <string>
#include <vector>

#include "core/platform.h"

namespace drenik::testing {

struct RecordedMessage {
  std::string text;
  std::string title;
  MessageIcon icon;
};

class RecordingPlatform : public Platform {
 public:
  using Platform::ShowMessage;
  void ShowMessage(const std::string& text, const std::string& title, MessageIcon icon) override {
    messages.push_back({text, title, icon});
  }
  std::string SaveFileDialog(const std::string& title, const std::string& filter,
                             const std::string& proposedName) override {
    dialogs.push_back({title, filter, proposedName});
    return dialogAnswer;
  }
  std::string OpenFileDialog(const std::string& title, const std::string& filter,
                             const std::string& proposedName) override {
    dialogs.push_back({title, filter, proposedName});
    return dialogAnswer;
  }
  bool OpenUrl(const std::string& url) override {
    urls.push_back(url);
    return browser;
  }
  void Beep() override { ++beeps; }
  std::string TodayShort() override { return today; }
  void EndProgram() override { ended = true; }

  struct Dialog {
    std::string title, filter, proposedName;
  };
  std::vector<RecordedMessage> messages;
  std::vector<Dialog> dialogs;
  std::vector<std::string> urls;
  bool browser = true;       // whether OpenUrl finds a browser
  std::string dialogAnswer;  // empty: the user cancels
  std::string today = "21.11.2026";
  int beeps = 0;
  bool ended = false;
};

}  // namespace drenik::testing
