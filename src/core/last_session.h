#pragma once
// The last design, kept between runs in "Drenikfilter.dat" in the working
// folder: one line of eight comma-separated fields
//   Order,Width,Family,Apass,Astop,"Topology",Rsource,Qind
// and after them groups of fields, each written only when it or a later
// group is needed (zero-filled then), in this order:
// - for a band design, its geometric centre (Hz) and the coupled
//   resonators' inductance (H, 0 for the design's own choice; 0,0 for a
//   lowpass or highpass)
//     ...,Qind,Center,ResonatorL
// - when the display page's part models are not the ideal parts: the
//   inductor's Q law (0 constant, 1 sqrt, 2 linear), the capacitors' Q, the
//   winding capacitance (F) and the capacitors' lead inductance (H)
//     ...,ResonatorL,QLaw,CapacitorQ,WindingCapacitance,CapacitorEsl
// - when the chosen parts' series or winding or the tolerance window's own
//   mask were set, eighteen: the capacitor series and the inductor series by
//   their counts (12 for E12; 0 the defaults, E24 and wound to value), 1 for
//   pairs, the winding in quotes ("T50-6", or "6:0.8" for an air-core form
//   and wire in mm; "" or 0 for none), and the mask: its shape (1 lowpass or
//   highpass, 2 bandpass, 3 bandstop; 0 none) and the window's thirteen mask
//   boxes in order (0 for an empty box)
//     ...,CapacitorEsl,CSeries,LSeries,Pairs,"Winding",Shape,Edge,Edge2,Rl,Il,
//         From1,To1,Depth1,From2,To2,Depth2,From3,To3,Depth3
// - when a ripple or depth was chosen beyond the design page's buttons:
//   those two (dB, 0 where a button holds it), kept as they are rather than
//   snapped onto the nearest button, whatever family the line ends on
//     ...,Depth3,ChosenRipple,ChosenDepth
// An order beyond the buttons needs nothing more: Order holds it. A lowpass
// or highpass line with ideal parts, nothing else kept and the buttons'
// ripple and depth is the eight fields alone, as it always was. Nonsense in
// the part models or the kept setup leaves that group at its defaults; the
// design still loads.

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
