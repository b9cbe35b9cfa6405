// Placeholder: replaced by the schematic drawing.
#include "pages/schematic.h"
namespace drenik {
float ComputeSchematicWidth(DesignRecord&) { return 1380; }
void DrawWireStep(DesignRecord&, Canvas&) {}
void DrawSource(DesignRecord&, Canvas&) {}
void DrawLoad(DesignRecord&, Canvas&) {}
void DrawElement(DesignRecord&, Canvas&, int, float, float, bool) {}
void DrawLadder(DesignRecord&, Canvas&) {}
void RedrawSchematic(DesignRecord&, Canvas&) {}
void DrawDisplaySchematic(DesignRecord&, Canvas&) {}
void DrawSampleLadder(DesignRecord&, Canvas&) {}
}  // namespace drenik
