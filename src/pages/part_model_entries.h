#pragma once
// The display page's part models as the user edits them: the inductor Q
// law, and the capacitor Q, winding capacitance and lead inductance as typed
// (prefix letters as in every box of the program), with the winding the
// chooser takes its whole-turn inductors from.

#include <optional>
#include <string>

#include "core/design_record.h"
#include "winding/winding.h"

namespace drenik {

struct PartModelEntries {
  QLaw law = QLaw::Constant;
  std::string capacitorQ;          // "inf" or a Q above 0; empty: ideal
  std::string windingCapacitance;  // farads across each inductor, e.g. "0.5p"; empty: none
  std::string capacitorEsl;        // henries in series with each capacitor, e.g. "2n"; empty: none
  std::optional<Former> former;    // nothing: no winding chosen
};

// The entries that show what the record and the winding hold now.
PartModelEntries EntriesOf(const DesignRecord& d, const std::optional<Former>& former);

// Reads the entries into the record's part models and the winding. An entry
// the program cannot read, or a negative value, changes nothing: the
// result then names each such entry, one line each; it is empty otherwise.
std::string ReadEntries(const PartModelEntries& entries, DesignRecord& d,
                        std::optional<Former>& former);

}  // namespace drenik
