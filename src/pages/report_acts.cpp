#include "pages/report_acts.h"

#include "core/runtime_error.h"

namespace drenik {

void Act(const EngineReport& report, Platform& platform) {
  for (int i = 0; i < report.alerts; ++i) platform.Beep();
  if (!report.notice.empty()) platform.ShowMessage(report.notice);
  if (!report.Ok()) throw RunTimeError(report.fault);
}

}  // namespace drenik
