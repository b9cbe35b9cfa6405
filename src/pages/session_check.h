#pragma once
// Whether the choices read from the last-session file are ones the
// program can design from. The opening page treats a file that fails like
// one it cannot read: every choice takes its first-start default, quietly.
//
// A usable session has a family and a topology of the registries, an order
// the family takes (or one of the page's buttons, 3..7), a bandwidth and an impedance within what
// the design page's boxes take (0.1 Hz to 10 GHz, 0.1 ohm to 1 Mohm), a finite Q of at least 2 and
// a finite ripple and depth of zero or more (a zero takes the page's default); and the family's
// prototype, the scaling into parts and the ladder the display page analyses work out with them (a
// Cauer ripple above its stopband depth cannot). A band's centre is 0 (none kept: the page's
// default centre) or within the bandwidth box's range, its resonator
// inductance 0 to what the page's box takes. Values
// that pass but match no option stay as the file has them: a ripple of
// 0.015 dB keeps 0.015 with no ripple option selected.

#include "core/design_record.h"

namespace drenik {

bool IsUsableSession(const DesignRecord& session);

}  // namespace drenik
