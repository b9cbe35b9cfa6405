#pragma once
// The desktop as the command line sees it: messages are collected for the
// caller to print, dialogs are cancelled, nothing is opened.

#include <string>
#include <vector>

#include "core/platform.h"

namespace drenik::cli {

class ConsolePlatform : public NullPlatform {
 public:
  using Platform::ShowMessage;
  void ShowMessage(const std::string& text, const std::string& title, MessageIcon) override {
    messages.push_back(title.empty() ? text : title + ": " + text);
  }
  std::string TodayShort() override;

  std::vector<std::string> messages;
};

}  // namespace drenik::cli
