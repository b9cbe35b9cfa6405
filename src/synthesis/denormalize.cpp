// Placeholder: replaced by the denormalization.
#include "synthesis/denormalize.h"
namespace drenik {
void Denormalize(DesignRecord&) {}
}  // namespace drenik
