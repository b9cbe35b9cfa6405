#pragma once
// The ladder schematic: source, elements with their value texts and the load,
// drawn on a canvas in page units. X runs left to right, Y is the upper rail
// and the ground rail lies 1040 below it. Every symbol routine advances d.X
// past what it drew. The label row (d.ValueMode: 1 to 4) chooses colour and
// height of the value texts.

#include "core/design_record.h"
#include "plot/canvas.h"

namespace drenik {

// 1380 for source and load plus the width of each element at 1..Stages.
float ComputeSchematicWidth(DesignRecord& d);

void DrawWireStep(DesignRecord& d, Canvas& canvas);
void DrawSource(DesignRecord& d, Canvas& canvas);
void DrawLoad(DesignRecord& d, Canvas& canvas);
// One element of kind `type` (1, 2, 3, 4, 6, 7) with its values; a negative
// or zero value prints no text. Kinds 5, 8 and others draw nothing. In the
// chosen parts' row an inductor of `turns` whole turns says so.
void DrawElement(DesignRecord& d, Canvas& canvas, int type, float l, float c,
                 bool withValues = true, int turns = 0);
// Source, elements 1..Stages and load from the current pen position.
void DrawLadder(DesignRecord& d, Canvas& canvas);
// The design page's strip: clears (1,1)..(12090,3500), centres the ladder on
// X = 5000 at Y = 1400, label row 1.
void RedrawSchematic(DesignRecord& d, Canvas& canvas);
// The display page's schematic in the label row of d.ValueMode, drawn over
// what is there.
void DrawDisplaySchematic(DesignRecord& d, Canvas& canvas);
// The opening page's sample ladder without values, from X = 3400, Y = 2500.
void DrawSampleLadder(DesignRecord& d, Canvas& canvas);

}  // namespace drenik
