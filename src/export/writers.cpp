// Placeholder: replaced by the SPICE netlist writer.
#include "export/writers.h"
namespace drenik {
std::string SpiceNetlistText(const DesignRecord&) {
  return {};
}
bool WriteSpiceNetlist(const DesignRecord&, const std::string&, Platform&) {
  return false;
}
}  // namespace drenik
