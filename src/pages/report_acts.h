#pragma once
// How the pages show what an engine routine reported, as the program always
// has: the alert sound once for each alert owed, a message box for a notice,
// and for a fault the run-time error that ends the page's event (its text in
// the "Run-time error" box).

#include "core/engine_report.h"
#include "pages/controls.h"

namespace drenik {

// Within a page's load the notice and the fault are the load's to show
// (ControlSet::RunLoad).
void Act(const EngineReport& report, ControlSet& controls);

}  // namespace drenik
