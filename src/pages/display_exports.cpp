// The display page's export buttons.
#include "export/writers.h"
#include "pages/display_page.h"

namespace drenik {

void DisplayPage::SaveWithDialog(const std::string& title, const std::string& filter,
                                 bool (*writer)(const DesignRecord&, const std::string&,
                                                Platform&)) {
  controls_.RunEvent([&] {
    std::string name = platform_.SaveFileDialog(title, filter, d_.FileName);
    if (name.empty()) return;
    d_.FileName = name;
    writer(d_, name, platform_);
  });
}

void DisplayPage::NotAvailableYet(const std::string& what) {
  platform_.ShowMessage(what + " is not available yet.", "", MessageIcon::Information);
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
  SaveWithDialog("Save SPICE netlist", "SPICE netlists (*.cir)|*.cir", &WriteSpiceNetlist);
}

void DisplayPage::OnExportTouchstone() {
  SaveWithDialog("Save Touchstone file", "Touchstone files (*.s2p)|*.s2p", &WriteTouchstone);
}

void DisplayPage::OnExportCsv() {
  SaveWithDialog("Save sweep as CSV", "CSV files (*.csv)|*.csv", &WriteSweepCsv);
}

// TODO(exports): the LTspice export page.
void DisplayPage::OnSpice() {
  NotAvailableYet("The LTspice export");
}
// TODO(exports): printing the page.
void DisplayPage::OnPrint() {
  NotAvailableYet("Printing");
}
// TODO(exports): the overlay files Data.S21, Data.S11 and Data.SWR.
void DisplayPage::OnSaveOverlay() {
  NotAvailableYet("Saving an overlay");
}
void DisplayPage::OnGetOverlay() {
  NotAvailableYet("Loading an overlay");
}

}  // namespace drenik
