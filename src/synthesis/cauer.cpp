// Placeholder: replaced by the elliptic prototype.
#include "core/runtime_error.h"
#include "synthesis/prototypes.h"
namespace drenik {
void Cauer(DesignRecord& d, Platform& platform) {
  if (d.Order < 3) {
    platform.ShowMessage("The Cauer family requires a minimum order of three");
    return;
  }
  throw RunTimeError("The Cauer family is not available yet.");
}
}  // namespace drenik
