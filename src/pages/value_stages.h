#pragma once
// The display page's value stages of a design: the exact values, 5%
// capacitors with retuned inductors, 5% inductors as well, and the stock
// parts its chooser picked. The first three are made by the display page's
// own logic on a copy of the record, so an analysis that varies the design
// starts from exactly what the display page shows; the chosen parts depend
// on the series the user asked for, so only a record that the display page
// left at that stage (ValueMode 4) holds them.

#include <optional>
#include <string>

#include "core/design_record.h"

namespace drenik {

enum class ValueStage { Exact, FiveC, FiveL, Chosen };

// "Exact", "5% C", "5% L", "Chosen".
const char* ValueStageName(ValueStage stage);

struct ValueStages {
  DesignRecord exact, fiveC, fiveL;
  // The record itself when the display page left it at its chosen parts.
  std::optional<DesignRecord> chosen;
  std::string fault;  // what stopped the display page; empty when all three are made

  // One of the stages; Chosen without chosen parts is the 5% C stage.
  const DesignRecord& At(ValueStage stage) const;
};

// The stages of the design `d` holds (its choices, Width and prototype), and
// `d` as the chosen stage when it holds one (ValueMode 4); `d` itself is
// left as it is.
ValueStages MakeValueStages(const DesignRecord& d);

}  // namespace drenik
