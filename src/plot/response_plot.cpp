// Placeholder: replaced by the response plot.
#include "plot/response_plot.h"
namespace drenik {
void BuildGridFrequencies(DesignRecord&) {}
void DrawXlines(DesignRecord&, Canvas&) {}
void DrawMainPlot(DesignRecord&, Canvas&) {}
void DrawVswrPlot(DesignRecord&, Canvas&) {}
void DrawDelayPlot(DesignRecord&, Canvas&) {}
}  // namespace drenik
