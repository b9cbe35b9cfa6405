// Placeholder: replaced by the last-session implementation.
#include "core/last_session.h"
namespace drenik {
void WriteLastSession(const DesignRecord&, Platform&, const std::string&) {}
void ReadLastSession(DesignRecord& d, const std::string&) { SetLastSessionDefaults(d); }
std::string LastSessionLine(const DesignRecord&) { return {}; }
bool ParseLastSession(std::string_view, DesignRecord&) { return false; }
void SetLastSessionDefaults(DesignRecord& d) {
  d.Order = 5; d.Width = 4200000; d.Family = 2; d.Apass = 0.044f; d.Astop = 40;
  d.Topology = "Cinlowpass"; d.Rsource = 50; d.Qind = 1e6f;
}
}  // namespace drenik
