#include "qt/mask_places.h"

#include <string>

namespace drenik {

float AddMaskPlaces(std::vector<ControlPlace>& p, bool band, float top) {
  // A label and its box on one row of the frame.
  auto row = [&p](const char* label, const char* box, float y) {
    p.push_back({label, 300, y, 2200, y + 330, 8, "frmMask"});
    p.push_back({box, 2250, y, 3200, y + 330, 8, "frmMask"});
  };
  // A band's mask is one row taller: its upper edge under the lower one.
  const float extra = band ? 360 : 0;
  const float bottom = top + 2890 + extra;
  p.push_back({"frmMask", 150, top, 3350, bottom});
  row("lblPassEdge", "txtPassEdge", top + 260);
  if (band) row("lblPassEdge2", "txtPassEdge2", top + 620);
  row("lblPassRl", "txtPassRl", top + 620 + extra);
  row("lblPassIl", "txtPassIl", top + 980 + extra);
  // A band's stopbands have a from and a to side by side where a lowpass's
  // frequency has the whole width.
  const float fromRight = band ? 1250 : 2200;
  const float head = top + 1380 + extra;
  p.push_back({"lblStop", 300, head, band ? 1290.f : 2200.f, head + 320, 8, "frmMask"});
  if (band) p.push_back({"lblStopTo", 1300, head, 2200, head + 320, 8, "frmMask"});
  p.push_back({"lblStopDepth", 2250, head, 3250, head + 320, 8, "frmMask"});
  for (int k = 1; k <= 3; ++k) {
    const float y = head - 40 + 360.f * k;
    const std::string n = std::to_string(k);
    p.push_back({"txtStopFreq" + n, 300, y, fromRight, y + 330, 8, "frmMask"});
    if (band) p.push_back({"txtStopTo" + n, 1300, y, 2200, y + 330, 8, "frmMask"});
    p.push_back({"txtStopDepth" + n, 2250, y, 3200, y + 330, 8, "frmMask"});
  }
  return bottom;
}

}  // namespace drenik
