#include "pages/report_acts.h"

#include "core/runtime_error.h"

namespace drenik {

void Act(const EngineReport& report, ControlSet& controls) {
  for (int i = 0; i < report.alerts; ++i) controls.GetPlatform().Beep();
  if (!report.notice.empty()) controls.ShowNotice(report.notice);
  if (!report.Ok()) throw RunTimeError(report.fault);
}

}  // namespace drenik
