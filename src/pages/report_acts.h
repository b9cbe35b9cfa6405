#pragma once
// How the pages show what an engine routine reported: the alert sound once
// for each alert owed, a message box for a notice, and for a fault the
// run-time error that ends the page's event (its text in the "Run-time error"
// box). One event shows one message at most (ControlSet).

#include "core/engine_report.h"
#include "pages/controls.h"

namespace drenik {

void Act(const EngineReport& report, ControlSet& controls);

}  // namespace drenik
