#pragma once
// The display page's three value stages of a design: the exact values, 5%
// capacitors with retuned inductors, and 5% inductors as well. They are made
// by the display page's own logic on a copy of the record, so an analysis
// that varies the design starts from exactly what the display page shows.

#include <string>

#include "core/design_record.h"

namespace drenik {

enum class ValueStage { Exact, FiveC, FiveL };

// "Exact", "5% C", "5% L".
const char* ValueStageName(ValueStage stage);

struct ValueStages {
  DesignRecord exact, fiveC, fiveL;
  std::string fault;  // what stopped the display page; empty when all three are made

  const DesignRecord& At(ValueStage stage) const;
};

// The stages of the design `d` holds (its choices, Width and prototype); `d`
// itself is left as it is.
ValueStages MakeValueStages(const DesignRecord& d);

}  // namespace drenik
