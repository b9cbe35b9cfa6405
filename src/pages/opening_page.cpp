#include "pages/opening_page.h"

#include <cmath>

#include "core/last_session.h"
#include "pages/schematic.h"
#include "pages/session_check.h"
#include "pages/user_guide.h"

namespace drenik {

void SetProgramConstants(DesignRecord& d) {
  d.ProgramTitle = kProgramTitle;
  d.Version = kProgramVersion;
  SetCircleConstants(d);
}

OpeningPage::OpeningPage(DesignRecord& d, Platform& platform, Canvas& canvas, PageHost& host,
                         std::string sessionPath)
    : d_(d),
      platform_(platform),
      canvas_(canvas),
      host_(host),
      sessionPath_(std::move(sessionPath)),
      controls_(platform) {
  controls_.AddLabel("lblHeading1", "");
  controls_.AddLabel("lblHeading2",
                     "Quick design and analysis of lumped-element lowpass and highpass "
                     "filters with parts rounded to standard 5% values");
  controls_.AddLabel("lblVersion", "");
  controls_.AddLabel("lblNotice", "");
  controls_.AddLabel("lblVisit", "User guide");
  controls_.AddButton("cmdStart", "Start").SetHandler([this] { host_.ShowDesignPage(); });
  controls_.AddButton("cmdExit", "Exit").SetHandler([this] { host_.EndProgram(false); });
  controls_.AddButton("cmdFromMask", "Design from a mask...").SetHandler([this] {
    host_.ShowSynthPage();
  });
}

void OpeningPage::Load() {
  controls_.RunEvent([this] {
    controls_.ResetToDefaults();
    SetProgramConstants(d_);
    if (sessionPath_.empty()) {
      SetLastSessionDefaults(d_);
    } else {
      ReadLastSession(d_, sessionPath_);
      if (!IsUsableSession(d_)) SetLastSessionDefaults(d_);
    }
    controls_.FindLabel("lblHeading1")->SetCaption(d_.ProgramTitle);
    controls_.FindLabel("lblVersion")->SetCaption("Version " + d_.Version);
    controls_.FindLabel("lblNotice")
        ->SetCaption(d_.ProgramTitle +
                     " is free software from Zelmar Software, "
                     "offered without any warranty.");
    canvas_.Clear();
    DrawSampleLadder(d_, canvas_);
  });
}

void OpeningPage::VisitUserGuide() {
  controls_.RunEvent([this] { OpenUserGuide(platform_, host_.UserGuideUrl()); });
}

}  // namespace drenik
