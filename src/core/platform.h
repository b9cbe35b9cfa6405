#pragma once
// What the program asks of the desktop: message boxes, file dialogs, the web
// browser, the alert sound, today's date and ending the program. The window
// implements it with Qt, the command line with the console, tests with a
// recorder; the engine and the page logic only ever see this interface.

#include <string>

namespace drenik {

enum class MessageIcon { None, Information, Exclamation, Critical };

class Platform {
 public:
  virtual ~Platform() = default;

  // A message box with only an OK button. An empty title means the program's
  // own title.
  virtual void ShowMessage(const std::string& text, const std::string& title, MessageIcon icon) = 0;
  // File dialogs. The filter is in the "Description (*.EXT)|*.EXT" form.
  // An empty result means the user cancelled.
  virtual std::string SaveFileDialog(const std::string& title, const std::string& filter,
                                     const std::string& proposedName) = 0;
  virtual std::string OpenFileDialog(const std::string& title, const std::string& filter,
                                     const std::string& proposedName) = 0;
  // Shows a web page or file in the user's browser; false when none could
  // be started.
  virtual bool OpenUrl(const std::string& url) = 0;
  // The audible alert.
  virtual void Beep() = 0;
  // Today's date in the system's short form.
  virtual std::string TodayShort() = 0;
  virtual void EndProgram() = 0;

  void ShowMessage(const std::string& text) { ShowMessage(text, "", MessageIcon::None); }
};

// A platform that does nothing: no messages, dialogs always cancelled.
// For benchmarks and for callers that have no desktop.
class NullPlatform : public Platform {
 public:
  using Platform::ShowMessage;
  void ShowMessage(const std::string&, const std::string&, MessageIcon) override {}
  std::string SaveFileDialog(const std::string&, const std::string&, const std::string&) override {
    return {};
  }
  std::string OpenFileDialog(const std::string&, const std::string&, const std::string&) override {
    return {};
  }
  bool OpenUrl(const std::string&) override { return false; }
  void Beep() override {}
  std::string TodayShort() override { return {}; }
  void EndProgram() override {}
};

}  // namespace drenik
