// The display page's file buttons: printing, the overlay files and the export
// formats.
#include <cctype>
#include <filesystem>

#include "export/formats.h"
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

void DisplayPage::OnExport(const ExportFormat& format) {
  controls_.RunEvent([&] {
    if (format.cannotHold) {
      if (std::string why = format.cannotHold(d_); !why.empty()) {
        why[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(why[0])));
        platform_.ShowMessage(why + ".", format.caption, MessageIcon::Exclamation);
        return;
      }
    }
    switch (format.route) {
      case SaveRoute::ExportPage:
        host_.ShowSpicePage();
        return;
      case SaveRoute::DialogKeepingName:
        d_.FileName = platform_.SaveFileDialog(format.dialogTitle, format.filter, d_.FileName);
        format.write(d_, d_.FileName, platform_);
        return;
      case SaveRoute::Dialog: {
        std::string name = platform_.SaveFileDialog(format.dialogTitle, format.filter,
                                                    ProposedName(d_.FileName, format.extension));
        if (name.empty()) return;
        d_.FileName = name;
        format.write(d_, name, platform_);
        return;
      }
    }
  });
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
