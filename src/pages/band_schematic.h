#pragma once
// The schematic of a band design. Its ladders run to 15 positions (a
// 7th-order coupled bandpass) and most positions carry two or three values,
// so the lowpass drawing, where each value stands beside its part at a fixed
// place, would print values over each other and run off the page. Here
// every value text gets a slot of its own in one of four bands of rows
// (above the upper rail, between the rails, and two under the ground rail),
// each slot wide enough for the longest value, and the parts are spaced
// just far enough apart that no two slots of a band meet: values stand over
// or under their part wherever the neighbours leave room, and a crowded
// stretch (two tanks in a row, a tank beside a shunt pair) is drawn wider.
// Within a slot the four label rows stand 150 apart, one line of text.

#include <cstdint>
#include <vector>

#include "core/design_record.h"
#include "plot/canvas.h"

namespace drenik {

enum class BandRegion : uint8_t { Above, Between, Below, Lowest };
inline constexpr int kBandRegions = 4;
// A slot's width: the longest value text, "0.888888uF" or "888.88MHz ",
// is 700 page units at the schematic's 6.5 point.
inline constexpr float kBandSlotWidth = 720;

// One value text's slot: the band of rows and the slot's left edge.
struct BandSlot {
  BandRegion region;
  float left;
};

struct BandPart {
  int16_t code;
  float x;  // left node on the upper rail
  // Slots of the inductance, capacitance and resonance texts (absent where
  // the kind has no such text).
  bool hasL = false, hasC = false, hasF = false;
  BandSlot l{}, c{}, f{};
};

// The ladder laid out with the source's circle at x = 0.
struct BandLayout {
  std::vector<BandPart> parts;  // positions 1..Stages in order, empty ones left out
  float loadX = 0;              // the load resistor
  float left = 0, right = 0;    // everything drawn, texts included
};

// Whether the record's ladder is drawn as a band ladder: a band topology
// with its centre set.
bool DrawsAsBand(const DesignRecord& d);

// Depends on the element kinds only, never on the values, so that every
// label row finds the same places.
BandLayout LayOutBandLadder(const DesignRecord& d);

// Where the ladder stands on the page: the source's circle at x0, the ladder
// centred on x = 5000 like the lowpass ladders, never left of the page's
// margin; a ladder wider than the page (a band design of high order) is
// drawn shrunk by `scale` about its top left corner so that it ends at the
// right margin, its texts in proportion.
struct BandPlacement {
  float x0;
  float scale;
};
// `right` is how far right the drawing may reach: the page's edge, or less
// where the display page lists self-resonances.
BandPlacement PlaceBandLadder(const BandLayout& layout, float right = kPageWidth);
// The page x where the drawing ends on the right, texts included.
float BandLadderRight(const BandLayout& layout, float right = kPageWidth);

// The upper rail of a band ladder on both pages: the top row of texts
// stands clear of the display page's file buttons (to y = 400) and the
// lowest under the ground rail ends above the VSWR plot's heading (its
// white box starts at y = 3440) and the band label over the main plot.
inline constexpr float kBandRailY = 1160;
// The top of the highest row of texts over the rail.
inline constexpr float kBandTop = 420;

// Draws the ladder at d.Y = kBandRailY as PlaceBandLadder places it, with the
// values of label row d.ValueMode.
void DrawBandLadder(DesignRecord& d, Canvas& canvas, float right = kPageWidth);

}  // namespace drenik
