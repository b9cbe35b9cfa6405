#pragma once
// Where the mask's boxes (pages/mask_boxes.h) sit in a window's left
// column: the frame "frmMask" from `top`, 3200 page units wide from x = 150.

#include <vector>

#include "qt/control_page_view.h"

namespace drenik {

// A band's mask has a second passband edge and a "to" for each stopband, in
// a frame one row taller; a lowpass's or highpass's places leave those out.
// Returns the frame's bottom.
float AddMaskPlaces(std::vector<ControlPlace>& places, bool band, float top);

}  // namespace drenik
