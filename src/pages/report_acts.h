#pragma once
// How the pages show what an engine routine reported, as the program always
// has: the alert sound once for each alert owed, a message box for a notice,
// and for a fault the run-time error that ends the page's event (its text in
// the "Run-time error" box).

#include "core/engine_report.h"
#include "core/platform.h"

namespace drenik {

void Act(const EngineReport& report, Platform& platform);

}  // namespace drenik
