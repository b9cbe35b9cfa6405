// Placeholder: replaced by the number-text implementation.
#include "core/number_text.h"
namespace drenik {
std::string ShortestText(float) { return {}; }
std::string ValueText(float) { return {}; }
std::string IntegerText(long) { return {}; }
}  // namespace drenik
