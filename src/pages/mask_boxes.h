#pragma once
// The boxes a mask is typed into, as the tolerance window and the
// design-from-a-mask window both have them: the passband edge (a band's two
// edges), the least return loss or the most loss over the passband, and
// three rows of stopband checks (a band's with a from and a to). The page
// that holds them decides when they are read.

#include <string>
#include <vector>

#include "pages/controls.h"
#include "tolerance/mask.h"

namespace drenik {

// Which mask the boxes enter: a passband to or from one edge (a lowpass or
// highpass), or a band's: a bandpass's passband between two edges with a
// skirt either side, a bandstop's passbands below and above its notch.
enum class MaskShape { Edge, Bandpass, Bandstop };

inline constexpr int kMaskStopRows = 3;

// The frame "frmMask" with its labels and boxes, empty.
void AddMaskBoxes(ControlSet& controls);

// The captions of the shape (a highpass's stopband lies below its
// frequency); a lowpass's or highpass's boxes disable the band's.
void ShowMaskShape(ControlSet& controls, MaskShape shape, bool highpass);

// The boxes that show the mask (frequencies as the program writes them).
void FillMaskBoxes(ControlSet& controls, MaskShape shape, const Mask& mask);

// The boxes as a mask of the shape; the message naming the box that holds
// no usable value, or empty when they make a mask.
std::string ReadMaskBoxes(const ControlSet& controls, MaskShape shape, Mask& mask);

// The mask's boxes in the order the last-session file keeps them, and
// which of them hold decibels (the others hold frequencies).
std::vector<std::string> MaskBoxNames();
bool MaskDecibelBox(size_t k);

// A box's number as the program reads its boxes; false when it holds no
// digit (an empty box where a value may be left out).
bool ReadNumberBox(const ControlSet& controls, const std::string& box, double& value);

}  // namespace drenik
