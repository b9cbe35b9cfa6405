// Placeholder: replaced by the prototype implementation.
#include "synthesis/prototypes.h"
namespace drenik {
void Butterworth(DesignRecord&) {}
void Chebyshev(DesignRecord&) {}
void Bessel(DesignRecord&) {}
void Zelmar(DesignRecord&) {}
void DesignPrototype(DesignRecord&, Platform&) {}
}  // namespace drenik
