// Placeholder: replaced by the sweep analysis.
#include "analysis/sweep.h"
namespace drenik {
PointResult AnalyzePoint(const DesignRecord&, float, double, double, Platform&) { return {}; }
void AnalyzeSweep(DesignRecord&, Platform&) {}
}  // namespace drenik
