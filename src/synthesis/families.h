#pragma once
// The filter families: every fact the program keeps about each one, read by
// the design page, its load, the display page, the print title, the command
// line and its table. A new family is one row here and its prototype
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
// The family of a first start.
inline constexpr int16_t kDefaultFamily = kFirstStartFamily;
static_assert(kDefaultFamily == kChebyshev);

struct FamilyInfo {
  int16_t code;
  const char* name;         // "Butterworth"
  const char* cliWord;      // --family butterworth
  const char* optionName;   // the design page's option button
  const char* cutoffLabel;  // which edge the bandwidth means, beside the bandwidth box
  // Option groups of the design page that the family enables.
  bool orderChoice, rippleChoice, stopbandChoice;
  // The passband has a ripple (the command-line table shows it).
  bool hasRipple;
  // The ripple the cutoff label names, when it is fixed (the printed title
  // shows it instead of Apass); 0 when the chosen ripple applies.
  double labelRipple;
  // Resonant arms in the ladder: CauerFlag 1, with H holding the arm's own
  // element and G its partner.
  bool resonantArms;
  // A fixed design of one order: the page sets the order, clears the ripple
  // options and terminates it in Rsource. 0 when the user chooses the order.
  int16_t fixedOrder;
  // The Cauer sub-type letter the page sets, or nullptr.
  const char* cauerType;
  // The design page's ReadDesignInputs runs just before the prototype.
  bool readsDesignInputs;
  // The display page's load computes the prototype again (otherwise it uses
  // the one the design page left).
  bool redesignOnDisplay;
  // The load equals the source whatever the prototype's normalized load.
  bool loadIsSource;
  // Writes G, H, Apass, Astop, CauerFlag, RloadNormalized (and for some
  // families Rload, FstopNormalized).
  EngineReport (*prototype)(DesignRecord&);
};

inline constexpr FamilyInfo kFamilies[] = {
    {kButterworth, "Butterworth", "butterworth", "optButterworth", "(3 dB)", true, false, false,
     false, 0, false, 0, nullptr, false, true, true, &MaximallyFlatPrototype},
    {kChebyshev, "Chebyshev", "chebyshev", "optChebycheff", "(ripple)", true, true, false, true, 0,
     false, 0, nullptr, false, true, false, &EqualRipplePrototype},
    {kCauer, "Cauer", "cauer", "optCauer", "(ripple)", true, true, true, true, 0, true, 0, "C",
     true, true, false, &EllipticPrototype},
    {kZelmar, "Zelmar", "zelmar", "optZelmar", "(0.2 dB)", false, false, false, true, 0.2, true, 5,
     nullptr, false, true, false, &ZelmarPrototype},
    {kBessel, "Bessel", "bessel", "optBessel", "(3 dB)", true, false, false, false, 0, false, 0,
     nullptr, false, false, false, &LinearPhasePrototype},
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
