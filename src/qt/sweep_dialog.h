#pragma once
// The display page's sweep dialog for a band design: the span k of a sweep
// from f0 / k to k f0, typed as the page's boxes are typed.

#include "pages/page_host.h"

class QWidget;

namespace drenik {

// Shows the dialog modally; on OK the entry takes what was typed.
bool AskSweep(SweepEntry& entry, QWidget* parent);

}  // namespace drenik
