// Whatever a session file holds, parsing must not fault, and a line that
// parses must come out of the writer's text the same way again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/last_session.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  drenik::DesignRecord d;
  if (!drenik::ParseLastSession(text, d)) return 0;
  // Topologies with quotes or line ends cannot be written back as one line.
  if (d.Topology.find_first_of("\"\r\n") != std::string::npos) return 0;
  drenik::DesignRecord again;
  if (!drenik::ParseLastSession(drenik::LastSessionLine(d), again)) std::abort();
  if (again.Order != d.Order || again.Family != d.Family || again.Width != d.Width ||
      again.Apass != d.Apass || again.Astop != d.Astop || again.Rsource != d.Rsource ||
      again.Qind != d.Qind)
    std::abort();
  return 0;
}
