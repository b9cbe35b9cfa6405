#include "core/element_kinds.h"

#include <algorithm>

namespace drenik {
namespace {

// --- Schematic value texts (drawing units from the element's left edge) ---
// Series values above the upper rail, shunt values under the ground rail
// (1040 below), series capacitors just under the upper rail. Row 4 (the
// chosen parts) continues each column where there is room: above the top
// row, under the lowest one, or between the rails.
constexpr LabelPlace kSeriesLLabel{{40, 40, 40, 40}, {-330, -530, -730, -930}, 1000};
// The shunt boxes end on the element's right edge: a third row reaches down
// into the first resonance row of a neighbouring branch.
constexpr LabelPlace kShuntLLabel{{-80, -80, -80, -80}, {1080, 1280, 1480, 1680}, 720};
constexpr LabelPlace kSeriesCLabel{{30, 30, 30, 30}, {150, 350, 550, 750}, 620};
constexpr LabelPlace kShuntCLabel{{10, 10, 10, 10}, {1100, 1300, 1480, 1680}, 620};
// The trap's inductance stands right of its coil, within the element; under
// the ground rail the resonance rows follow the second capacitance row, so
// the third stands right of the plates (its box stops short of the rail).
// A trap has no room left between its rails or under them for a fourth
// inductance and capacitance: those stand above its upper rail, one and two
// rows up. A neighbouring series inductor prints its own rows there, on the
// same lines: the trap's stand midway between theirs, well apart from both.
constexpr LabelPlace kTrapLLabel{{300, 300, 300, 40}, {250, 450, 650, -530}, 660};
constexpr LabelPlace kTrapCLabel{{40, 40, 300, 40}, {1100, 1300, 830, -330}, 620};
// The tank's inductance under the capacitor path on the left, its
// capacitance on the right. A tank's neighbours are shunt arms, whose values
// stand under the ground rail on the tank's rows: the fourth row has no room
// between the rails and stands above the upper rail, where they print
// nothing.
constexpr LabelPlace kTankLLabel{{-320, -320, -320, 40}, {440, 640, 840, -530}, 680};
constexpr LabelPlace kTankCLabel{{370, 370, 370, 40}, {400, 600, 800, -330}, 620};
// The series L-C branch: the inductance above its coil, the capacitance
// under the rail beside its plates. The tank of a band design: both values
// under the ground rail, the inductance reaching left under the wire step
// (its neighbours print nothing there), the capacitance beside it.
constexpr LabelPlace kSeriesLCCLabel{{560, 560, 560, 560}, {150, 350, 550, 750}, 560};
constexpr LabelPlace kShuntLCLLabel{{-240, -240, -240, -240}, {1080, 1280, 1480, 1680}, 640};
constexpr LabelPlace kShuntLCCLabel{{420, 420, 420, 420}, {1080, 1280, 1480, 1680}, 520};
constexpr LabelPlace kResonanceLabel{{10, 10, 10, 10}, {1600, 1800, 2000, 2200}, 940};

// --- LTspice blocks (grid units; the ground rail is 256 below the rail) ---
constexpr AscSymbol kSeriesLSym[] = {{'L', 16, 16, "R270"}};
constexpr AscWire kSeriesLWires[] = {{0, 0, 32, 0}, {112, 0, 144, 0}, {0, 256, 144, 256}};
constexpr AscBlock kSeriesLAsc{kSeriesLSym, kSeriesLWires, 72, 144};

constexpr AscSymbol kShuntLSym[] = {{'L', 32, 64, "R0"}};
constexpr AscWire kShuntLWires[] = {
    {0, 0, 96, 0}, {48, 0, 48, 80}, {48, 160, 48, 256}, {0, 256, 96, 256}};
constexpr AscBlock kShuntLAsc{kShuntLSym, kShuntLWires, 48, 96};

constexpr AscSymbol kSeriesCSym[] = {{'C', 112, -16, "R90"}};
constexpr AscWire kSeriesCWires[] = {{0, 0, 48, 0}, {112, 0, 144, 0}, {0, 256, 144, 256}};
constexpr AscBlock kSeriesCAsc{kSeriesCSym, kSeriesCWires, 76, 144};

constexpr AscSymbol kShuntCSym[] = {{'C', 32, 80, "R0"}};
constexpr AscWire kShuntCWires[] = {
    {0, 0, 112, 0}, {48, 0, 48, 80}, {48, 144, 48, 256}, {0, 256, 112, 256}};
constexpr AscBlock kShuntCAsc{kShuntCSym, kShuntCWires, 48, 112};

constexpr AscSymbol kSeriesLCSym[] = {{'L', 16, 16, "R270"}, {'C', 224, -16, "R90"}};
constexpr AscWire kSeriesLCWires[] = {
    {0, 0, 32, 0}, {112, 0, 160, 0}, {224, 0, 256, 0}, {0, 256, 256, 256}};
constexpr AscBlock kSeriesLCAsc{kSeriesLCSym, kSeriesLCWires, 128, 256};

// L above C, from the rail to ground.
constexpr AscSymbol kTrapSym[] = {{'L', 32, 32, "R0"}, {'C', 32, 160, "R0"}};
constexpr AscWire kTrapWires[] = {
    {0, 0, 176, 0}, {48, 0, 48, 48}, {48, 128, 48, 160}, {48, 224, 48, 256}, {0, 256, 176, 256}};
constexpr AscBlock kTrapAsc{kTrapSym, kTrapWires, 88, 176};

// L in the rail, C in a path under it.
constexpr AscSymbol kTankSym[] = {{'L', 48, 16, "R270"}, {'C', 128, 80, "R90"}};
constexpr AscWire kTankWires[] = {{0, 0, 64, 0},      {32, 0, 32, 96},   {32, 96, 64, 96},
                                  {128, 96, 176, 96}, {176, 96, 176, 0}, {144, 0, 208, 0},
                                  {0, 256, 208, 256}};
constexpr AscBlock kTankAsc{kTankSym, kTankWires, 104, 208};

constexpr AscSymbol kShuntLCSym[] = {{'L', 32, 64, "R0"}, {'C', 208, 80, "R0"}};
constexpr AscWire kShuntLCWires[] = {{0, 0, 352, 0},    {48, 0, 48, 80},      {48, 160, 48, 256},
                                     {224, 0, 224, 80}, {224, 144, 224, 256}, {0, 256, 352, 256}};
constexpr AscBlock kShuntLCAsc{kShuntLCSym, kShuntLCWires, 176, 352};

using enum ElementKind;
constexpr ElementFacts kKinds[] = {
    {SeriesL, "series L", Arm::Series, true, false, Joining::Single, true, 960, &kSeriesLLabel,
     nullptr, nullptr, &kSeriesLAsc},
    {ShuntL, "shunt L", Arm::Shunt, true, false, Joining::Single, true, 640, &kShuntLLabel, nullptr,
     nullptr, &kShuntLAsc},
    {SeriesC, "series C", Arm::Series, false, true, Joining::Single, true, 680, nullptr,
     &kSeriesCLabel, nullptr, &kSeriesCAsc},
    {ShuntC, "shunt C", Arm::Shunt, false, true, Joining::Single, true, 640, nullptr, &kShuntCLabel,
     nullptr, &kShuntCAsc},
    // Codes 5 and 8 come only from band designs; only there are they analysed.
    {SeriesLC, "series L-C", Arm::Series, true, true, Joining::InSeries, false, 1120,
     &kSeriesLLabel, &kSeriesLCCLabel, nullptr, &kSeriesLCAsc, true},
    {ShuntTrap, "shunt series LC", Arm::Shunt, true, true, Joining::InSeries, true, 960,
     &kTrapLLabel, &kTrapCLabel, &kResonanceLabel, &kTrapAsc},
    {SeriesTank, "series parallel LC", Arm::Series, true, true, Joining::Parallel, true, 960,
     &kTankLLabel, &kTankCLabel, &kResonanceLabel, &kTankAsc},
    {ShuntLC, "shunt L, C", Arm::Shunt, true, true, Joining::Separate, false, 720, &kShuntLCLLabel,
     &kShuntLCCLabel, nullptr, &kShuntLCAsc, true},
    {Empty, "empty", Arm::Series, false, false, Joining::Single, false, 0, nullptr, nullptr,
     nullptr, nullptr},
};

}  // namespace

std::span<const ElementFacts> ElementKinds() {
  return kKinds;
}

const ElementFacts* FactsOf(int16_t code) {
  const auto* it = std::find_if(std::begin(kKinds), std::end(kKinds),
                                [code](const ElementFacts& f) { return CodeOf(f.kind) == code; });
  return it == std::end(kKinds) ? nullptr : it;
}

}  // namespace drenik
