// The display page's export buttons: printing, the overlay files, the Pallis
// file, the LTspice page, and the netlist, Touchstone and CSV files.
#include <filesystem>

#include "export/writers.h"
#include "pages/display_page.h"
#include "parts/parts_list.h"
#include "plot/overlay.h"

namespace drenik {

namespace {

// The last file's name with the writer's extension, else "Default" with it.
std::string ProposedName(const std::string& fileName, const std::string& extension) {
  if (fileName.empty()) return "Default" + extension;
  return std::filesystem::path(fileName).replace_extension(extension).string();
}

}  // namespace

void DisplayPage::SaveWithDialog(const std::string& title, const std::string& filter,
                                 const std::string& extension,
                                 bool (*writer)(const DesignRecord&, const std::string&,
                                                Platform&)) {
  controls_.RunEvent([&] {
    std::string name =
        platform_.SaveFileDialog(title, filter, ProposedName(d_.FileName, extension));
    if (name.empty()) return;
    d_.FileName = name;
    writer(d_, name, platform_);
  });
}

void DisplayPage::OnWritePallis() {
  controls_.RunEvent([this] {
    std::string name =
        platform_.SaveFileDialog("Save Pallis file", "Pallis files (*.LCT)|*.LCT", d_.FileName);
    if (name.empty()) {
      platform_.ShowMessage("We did not write an Pallis file.");
      return;
    }
    d_.FileName = name;
    WritePallisFile(d_, name, platform_);
  });
}

void DisplayPage::OnExportNetlist() {
  SaveWithDialog("Save SPICE netlist", "SPICE netlist (*.cir)|*.cir", ".cir", &WriteSpiceNetlist);
}

void DisplayPage::OnExportTouchstone() {
  SaveWithDialog("Save Touchstone file", "Touchstone file (*.s2p)|*.s2p", ".s2p", &WriteTouchstone);
}

void DisplayPage::OnExportCsv() {
  SaveWithDialog("Save sweep as CSV", "CSV file (*.csv)|*.csv", ".csv", &WriteSweepCsv);
}

void DisplayPage::OnPartsList() {
  controls_.RunEvent([this] {
    if (!chosen_) ChosenPartsStage();
    std::string name = platform_.SaveFileDialog("Save parts list", "CSV file (*.csv)|*.csv",
                                                ProposedName(d_.FileName, ".csv"));
    if (name.empty()) return;
    d_.FileName = name;
    WritePartsList(*chosen_, name, platform_);
  });
}

void DisplayPage::OnSpice() {
  controls_.RunEvent([this] { host_.ShowSpicePage(); });
}

void DisplayPage::OnPrint() {
  controls_.RunEvent([this] {
    if (!host_.PrintDisplayPage()) {
      platform_.ShowMessage("Printing is available in the designer window.");
    }
  });
}

void DisplayPage::OnSaveOverlay() {
  controls_.RunEvent([this] { SaveOverlay(d_, platform_); });
}

void DisplayPage::OnGetOverlay() {
  controls_.RunEvent([this] { GetOverlay(d_, canvas_, platform_); });
}

}  // namespace drenik
