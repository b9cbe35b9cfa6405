#pragma once
// The chosen parts' series, pairs and winding as the last-session file keeps
// them in the record (DesignRecord::Kept...), and back: a series by its
// count of values per decade, a winding by the text the command line takes
// ("T50-6", or "6:0.8" for an air-core form and wire in mm).

#include "core/design_record.h"
#include "parts/chooser.h"

namespace drenik {

// The request the record keeps; a count that names no series, or a winding
// that names no core or air-core form, gives the chooser's default for it.
PartsRequest KeptPartsRequest(const DesignRecord& d);

// The request into the record's kept fields (0 and "" for the defaults).
void KeepPartsRequest(const PartsRequest& request, DesignRecord& d);

}  // namespace drenik
