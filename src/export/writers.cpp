// Placeholder: replaced by the file writers.
#include "export/writers.h"
namespace drenik {
bool WritePallisFile(const DesignRecord&, const std::string&, Platform&) { return false; }
bool WriteLtspiceFile(DesignRecord&, const std::string&, Platform&) { return false; }
bool WriteTouchstone(const DesignRecord&, const std::string&, Platform&) { return false; }
bool WriteSweepCsv(const DesignRecord&, const std::string&, Platform&) { return false; }
}  // namespace drenik
