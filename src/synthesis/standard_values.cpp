// Placeholder: replaced by the standard-value rounding.
#include "synthesis/standard_values.h"
namespace drenik {
float NearestStandard(float v) { return v; }
void NearestParts(DesignRecord&) {}
void CapsRetuneInductors(DesignRecord&) {}
void Inductors(DesignRecord&) {}
}  // namespace drenik
