#include "pages/spice_page.h"

#include "export/ltspice_file.h"
#include "export/writers.h"

namespace drenik {
namespace {

// Joins two texts that carry their own blanks: one blank where they meet,
// none at the ends.
std::string Join(const std::string& first, const std::string& second) {
  std::string text = first + second;
  std::string joined;
  for (char c : text) {
    if (c == ' ' && (joined.empty() || joined.back() == ' ')) continue;
    joined += c;
  }
  if (!joined.empty() && joined.back() == ' ') joined.pop_back();
  return joined;
}

}  // namespace

SpicePage::SpicePage(DesignRecord& d, Platform& platform)
    : d_(d),
      platform_(platform),
      caption_(Join("Pallis ", " - Write Spice schematic")),
      heading_(Join(" Write an LTspice", " schematic file")) {}

std::string SpicePage::ProposedName(const std::string& fileName) {
  if (fileName.empty()) return "Default.ASC";
  return fileName.substr(0, fileName.size() > 4 ? fileName.size() - 4 : 0) + ".ASC";
}

void SpicePage::cmdDraw_Click() {
  if (d_.SchematicWidth < kMinSheetWidth) d_.SchematicWidth = kMinSheetWidth;
  d_.FileName = platform_.SaveFileDialog(
      "Pallis - write Spice schematic", "LTspice files (*.ASC) | *.ASC", ProposedName(d_.FileName));
  WriteLtspiceFile(d_, d_.FileName, platform_);
}

}  // namespace drenik
