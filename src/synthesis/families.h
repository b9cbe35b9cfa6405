#pragma once
// The filter families: every fact the program keeps about each one, read by
// the design page, its load and its "Other order and ripple" dialog, the
// display page, the print title, the command line, its help and its table,
// and the last-session check. A new family is one row here and its prototype
// routine (prototypes.h).

#include <cstdint>
#include <span>

#include "core/design_record.h"
#include "core/engine_report.h"
#include "core/last_session.h"
#include "synthesis/prototypes.h"

namespace drenik {

// Family codes as the design record and the last-session file keep them.
inline constexpr int16_t kButterworth = 1;
inline constexpr int16_t kChebyshev = 2;
inline constexpr int16_t kCauer = 3;
inline constexpr int16_t kZelmar = 4;
inline constexpr int16_t kBessel = 5;
inline constexpr int16_t kLegendre = 6;
// The family of a first start.
inline constexpr int16_t kDefaultFamily = kFirstStartFamily;
static_assert(kDefaultFamily == kChebyshev);

// A closed range of values a family accepts; an empty one (high 0) means the
// family takes no such choice.
struct ChoiceRange {
  double low = 0, high = 0;
  bool Offered() const { return high > 0; }
  bool Holds(double v) const { return v >= low && v <= high; }
};

struct FamilyInfo {
  int16_t code;
  const char* name;         // "Butterworth"
  const char* cliWord;      // --family butterworth
  const char* optionName;   // the design page's option button
  const char* cutoffLabel;  // which edge the bandwidth means, beside the bandwidth box
  // Option groups of the design page that the family enables.
  bool orderChoice = true, rippleChoice = false, stopbandChoice = false;
  // The passband has a ripple (the command-line table shows it).
  bool hasRipple = false;
  // The ripple the cutoff label names, when it is fixed (the printed title
  // shows it instead of Apass); 0 when the chosen ripple applies.
  double labelRipple = 0;
  // Resonant arms in the ladder: CauerFlag 1, with H holding the arm's own
  // element and G its partner.
  bool resonantArms = false;
  // A fixed design of one order: the page sets the order, clears the ripple
  // options and terminates it in Rsource. 0 when the user chooses the order.
  int16_t fixedOrder = 0;
  // The Cauer sub-type letter the page sets, or nullptr.
  const char* cauerType = nullptr;
  // The design page's ReadDesignInputs runs just before the prototype.
  bool readsDesignInputs = false;
  // The display page's load computes the prototype again (otherwise it uses
  // the one the design page left).
  bool redesignOnDisplay = true;
  // The load equals the source whatever the prototype's normalized load.
  bool loadIsSource = false;
  // What the prototype takes, on the page's buttons or beyond them: the
  // orders, the passband ripple (dB) and the stopband depth (dB).
  int16_t minOrder = 2, maxOrder = kMaxOrder;
  ChoiceRange ripple{}, depth{};
  // Writes G, H, Apass, Astop, CauerFlag, RloadNormalized (and for some
  // families Rload, FstopNormalized).
  EngineReport (*prototype)(DesignRecord&);
};

// Any ripple the equal-ripple families take, dB: from a hundredth of the
// page's smallest to a response 3 dB down at its ripple peaks.
inline constexpr ChoiceRange kAnyRipple{.low = 0.001, .high = 3};

inline constexpr FamilyInfo kFamilies[] = {
    {.code = kButterworth,
     .name = "Butterworth",
     .cliWord = "butterworth",
     .optionName = "optButterworth",
     .cutoffLabel = "(3 dB)",
     .loadIsSource = true,
     .prototype = &MaximallyFlatPrototype},
    {.code = kChebyshev,
     .name = "Chebyshev",
     .cliWord = "chebyshev",
     .optionName = "optChebycheff",
     .cutoffLabel = "(ripple)",
     .rippleChoice = true,
     .hasRipple = true,
     .ripple = kAnyRipple,
     .prototype = &EqualRipplePrototype},
    {.code = kCauer,
     .name = "Cauer",
     .cliWord = "cauer",
     .optionName = "optCauer",
     .cutoffLabel = "(ripple)",
     .rippleChoice = true,
     .stopbandChoice = true,
     .hasRipple = true,
     .resonantArms = true,
     .cauerType = "C",
     .readsDesignInputs = true,
     .minOrder = 3,
     .ripple = kAnyRipple,
     .depth = {.low = 15, .high = 120},
     .prototype = &EllipticPrototype},
    {.code = kZelmar,
     .name = "Zelmar",
     .cliWord = "zelmar",
     .optionName = "optZelmar",
     .cutoffLabel = "(0.2 dB)",
     .orderChoice = false,
     .hasRipple = true,
     .labelRipple = 0.2,
     .resonantArms = true,
     .fixedOrder = 5,
     .minOrder = 5,
     .maxOrder = 5,
     .prototype = &ZelmarPrototype},
    {.code = kBessel,
     .name = "Bessel",
     .cliWord = "bessel",
     .optionName = "optBessel",
     .cutoffLabel = "(3 dB)",
     .redesignOnDisplay = false,
     .prototype = &LinearPhasePrototype},
    {.code = kLegendre,
     .name = "Legendre",
     .cliWord = "legendre",
     .optionName = "optLegendre",
     .cutoffLabel = "(3 dB)",
     .loadIsSource = true,
     .prototype = &OptimumMonotonicPrototype},
};

inline std::span<const FamilyInfo> Families() {
  return kFamilies;
}

// The family of a record's code; nullptr for a code that names none.
inline const FamilyInfo* FindFamily(int code) {
  for (const FamilyInfo& f : kFamilies)
    if (f.code == code) return &f;
  return nullptr;
}

// The family's name, or "unknown".
inline const char* FamilyName(int code) {
  const FamilyInfo* f = FindFamily(code);
  return f ? f->name : "unknown";
}

// Runs the prototype routine of d.Family; any other code computes nothing.
[[nodiscard]] inline EngineReport DesignPrototype(DesignRecord& d) {
  const FamilyInfo* f = FindFamily(d.Family);
  return f ? f->prototype(d) : EngineReport{};
}

}  // namespace drenik
