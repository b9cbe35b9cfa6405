#pragma once
// What can stand at a ladder position, and every fact the program keeps
// about it: which arm it sits in, which parts it carries, what the analysis
// makes of it, how the schematic and the LTspice file draw it and what the
// command-line table calls it. The design record keeps 16-bit codes in
// ElementType (the filter file and the other programs speak in them); code
// converts at the edges with KindOf() and reads FactsOf() instead of
// switching on numbers.

#include <cstdint>
#include <span>

namespace drenik {

// The enumerator values are the element codes of the design record.
enum class ElementKind : int16_t {
  SeriesL = 1,     // inductor in the series arm
  ShuntL = 2,      // inductor from the line to ground
  SeriesC = 3,     // capacitor in the series arm
  ShuntC = 4,      // capacitor from the line to ground
  SeriesLC = 5,    // inductor then capacitor in the series arm (band designs)
  ShuntTrap = 6,   // inductor and capacitor in series, line to ground (series-resonant)
  SeriesTank = 7,  // inductor and capacitor in parallel in the series arm (parallel-resonant)
  ShuntLC = 8,     // a shunt inductor and a shunt capacitor side by side (band designs)
  Empty = 17,      // a position without parts
};

enum class Arm : uint8_t { Series, Shunt };

// How the parts of a two-part position are joined.
enum class Joining : uint8_t {
  Single,    // one part
  InSeries,  // L then C along one path
  Parallel,  // L and C across the same two nodes
  Separate,  // each part on its own path
};

// A value text beside a part in the schematic, relative to the element's
// left edge and the upper rail (positive y is down), for label rows 1 to 4,
// with the width of the white box cleared behind it (drawing units).
inline constexpr int kLabelRows = 4;
struct LabelPlace {
  float dx[kLabelRows];
  float dy[kLabelRows];
  float box;
};

// One symbol of an LTspice block, at (X + dx, Y + dy) from the pen.
struct AscSymbol {
  char part;  // 'L' or 'C'
  float dx, dy;
  const char* rotation;
};
// A wire from (X + x1, Y + y1) to (X + x2, Y + y2); the ground rail is 256
// below the upper rail.
struct AscWire {
  float x1, y1, x2, y2;
};
struct AscBlock {
  std::span<const AscSymbol> symbols;
  std::span<const AscWire> wires;
  float labelDx;  // the stage number's comment
  float advance;
};

struct ElementFacts {
  ElementKind kind;
  const char* name;  // in the command-line table
  Arm arm;
  bool hasL, hasC;
  Joining joining;
  // The analysis has a model for it; any other position is taken as a wire
  // (and the alert sounds).
  bool analysed;
  // Schematic: the advance of the pen (drawing units) and where the values
  // go; positions without a value text have no place.
  float drawWidth;
  const LabelPlace* lLabel;
  const LabelPlace* cLabel;
  const LabelPlace* resonanceLabel;
  // LTspice block; nullptr for a position that is not written.
  const AscBlock* asc;
  // Analysed as its real branch in a band design only (codes 5 and 8,
  // which no lowpass or highpass design contains).
  bool bandBranch = false;
};

// Every kind, in code order.
std::span<const ElementFacts> ElementKinds();

// The facts of a record's element code; nullptr for a code that names no
// kind (0, 9, -1, ...).
const ElementFacts* FactsOf(int16_t code);
inline const ElementFacts* FactsOf(ElementKind kind) {
  return FactsOf(static_cast<int16_t>(kind));
}

// The code as a kind. Codes that name no kind are kept as they are, so that
// the analysis can still report them.
constexpr ElementKind KindOf(int16_t code) {
  return static_cast<ElementKind>(code);
}
constexpr int16_t CodeOf(ElementKind kind) {
  return static_cast<int16_t>(kind);
}

// Whether the analysis models a kind: always, or in band designs only. Any
// other position is a wire there.
inline bool Modelled(const ElementFacts* f, bool bandDesign) {
  return f && (f->analysed || (f->bandBranch && bandDesign));
}

// Codes 1 to 8 carry parts (the filter file lists exactly those).
inline bool CarriesParts(int16_t code) {
  const ElementFacts* f = FactsOf(code);
  return f && (f->hasL || f->hasC);
}

}  // namespace drenik
