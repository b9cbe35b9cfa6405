#pragma once
// The opening page: sets the program's title, version and constants, reads
// the last session and shows a sample ladder with "Start" and "Exit".

#include <string>

#include "core/design_record.h"
#include "core/platform.h"
#include "pages/controls.h"
#include "pages/page_host.h"
#include "plot/canvas.h"

namespace drenik {

inline constexpr const char* kProgramTitle = "Drenik Filter Designer";
inline constexpr const char* kProgramVersion = "2.12";

// Title, version, Pi and TwoPi (4 and 8 times atan 1, in single precision).
void SetProgramConstants(DesignRecord& d);

class OpeningPage {
 public:
  // sessionPath empty: the last-session file is not read and the choices
  // take the first-start defaults (the command line works this way).
  OpeningPage(DesignRecord& d, Platform& platform, Canvas& canvas, PageHost& host,
              std::string sessionPath);

  ControlSet& Controls() { return controls_; }
  const std::string& Caption() const { return caption_; }
  void Load();
  // A click on lblVisit: opens the user guide.
  void VisitUserGuide();

 private:
  DesignRecord& d_;
  Platform& platform_;
  Canvas& canvas_;
  PageHost& host_;
  std::string sessionPath_;
  ControlSet controls_;
  std::string caption_ = std::string(kProgramTitle) + " - Opening";
};

}  // namespace drenik
