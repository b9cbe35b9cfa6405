#pragma once
// The design as a readable table: the choices, the terminations, the cutoff,
// the passband and stopband figures and every ladder position with its exact
// and chosen values as the schematic shows them.

#include <ostream>
#include <string>

#include "core/design_record.h"

namespace drenik::cli {

// `chosenTitle` names the columns of the chosen values ("5% C values").
void WriteDesignTable(const DesignRecord& exact, const DesignRecord& chosen,
                      const std::string& chosenTitle, std::ostream& out);

const char* ElementKindName(int code);

}  // namespace drenik::cli
