#pragma once
// The last design, kept between runs in "Drenikfilter.dat" in the working
// folder: one line of eight comma-separated fields
//   Order,Width,Family,Apass,Astop,"Topology",Rsource,Qind
// and after them groups of fields, each written only when it or a later
// group is needed (with its defaults then), in this order:
// - for a band design, its geometric centre (Hz) and the coupled
//   resonators' inductance (H, 0 for the design's own choice)
//     ...,Qind,Center,ResonatorL
// - when the display page's part models are not the ideal parts: the
//   inductor's Q law (0 constant, 1 sqrt, 2 linear), the capacitors' Q, the
//   winding capacitance (F) and the capacitors' lead inductance (H)
//     ...,ResonatorL,QLaw,CapacitorQ,WindingCapacitance,CapacitorEsl
// - when a ripple or depth was chosen beyond the design page's buttons:
//   those two (dB, 0 where a button holds it), kept as they are rather than
//   snapped onto the nearest button, whatever family the line ends on
//     ...,CapacitorEsl,ChosenRipple,ChosenDepth
// An order beyond the buttons needs nothing more: Order holds it. A lowpass
// or highpass line with ideal parts and the buttons' ripple and depth is the
// eight fields alone, as it always was.

#include <string>
#include <string_view>

#include "core/design_record.h"
#include "core/platform.h"

namespace drenik {

inline constexpr const char* kLastSessionFile = "Drenikfilter.dat";
// The family code and topology of a first start (the design page's defaults
// too; the registries check that they name a real family and topology).
inline constexpr int16_t kFirstStartFamily = 2;
inline constexpr const char* kFirstStartTopology = "Cinlowpass";
// The ripple (dB) and stopband depth (dB) of a first start, which the design
// page's load also puts in place of a zero.
inline constexpr float kFirstStartRipple = 0.044f;
inline constexpr float kFirstStartDepth = 40;

// Writes the fields whole or not at all (core/atomic_file.h), so a
// failure never loses the previous session. On failure shows
// "We did not read the last-session file." (the established wording).
void WriteLastSession(const DesignRecord& d, Platform& platform,
                      const std::string& path = kLastSessionFile);
// Reads the fields; on any failure all take their defaults (order 5,
// 4.2 MHz, the first-start family and topology, 0.044 dB, 40 dB, 50 ohms,
// 1e6, no band, ideal parts, the buttons' ripple and depth).
void ReadLastSession(DesignRecord& d, const std::string& path = kLastSessionFile);

// The text of the session line (without the line end) and its parser.
std::string LastSessionLine(const DesignRecord& d);
// Returns false, leaving d untouched, when the text is not a valid line.
bool ParseLastSession(std::string_view text, DesignRecord& d);
void SetLastSessionDefaults(DesignRecord& d);

}  // namespace drenik
