#pragma once
// The files the program writes for other programs, one row each: the
// command line's option, the display page's button, how the page asks for
// the file name, and the writer. A new export format is one row here and
// its writer (writers.h).

#include <span>
#include <string>
#include <string_view>

#include "core/design_record.h"
#include "core/platform.h"
#include "export/pallis_file.h"
#include "export/writers.h"

namespace drenik {

// How the display page's button saves the file.
enum class SaveRoute {
  // A save dialog proposing the last file's name with the format's
  // extension ("Default" when there is none); a cancelled dialog writes
  // nothing and says nothing.
  Dialog,
  // A save dialog proposing the last file's name as it is; the answer is
  // kept even when cancelled, and the writer's own failure message tells
  // that nothing was written.
  DialogKeepingName,
  // The format has an export page of its own.
  ExportPage,
};

using ExportWriter = bool (*)(DesignRecord& d, const std::string& path, Platform& platform);

struct ExportFormat {
  const char* option;   // command line: --OPTION FILE
  const char* button;   // the display page's control
  const char* caption;  // its caption
  SaveRoute route;
  const char* dialogTitle;
  const char* filter;     // "Description (*.EXT)|*.EXT"
  const char* extension;  // proposed with the last file's name (Dialog route)
  ExportWriter write;
  // Why the format cannot hold the design, or empty; nullptr when it holds
  // every design.
  std::string (*cannotHold)(const DesignRecord& d) = nullptr;
};

inline constexpr ExportFormat kExportFormats[] = {
    {"lct", "cmdWritePallis", "Pallis file", SaveRoute::DialogKeepingName, "Save Pallis file",
     "Pallis files (*.LCT)|*.LCT", ".LCT",
     [](DesignRecord& d, const std::string& p, Platform& pl) { return WritePallisFile(d, p, pl); },
     &PallisCannotHold},
    {"asc", "cmdSpice", "LTspice", SaveRoute::ExportPage, nullptr, nullptr, ".ASC",
     [](DesignRecord& d, const std::string& p, Platform& pl) {
       return WriteLtspiceFile(d, p, pl);
     }},
    {"cir", "cmdNetlist", "SPICE netlist", SaveRoute::Dialog, "Save SPICE netlist",
     "SPICE netlist (*.cir)|*.cir", ".cir",
     [](DesignRecord& d, const std::string& p, Platform& pl) {
       return WriteSpiceNetlist(d, p, pl);
     }},
    {"s2p", "cmdTouchstone", "Touchstone", SaveRoute::Dialog, "Save Touchstone file",
     "Touchstone file (*.s2p)|*.s2p", ".s2p",
     [](DesignRecord& d, const std::string& p, Platform& pl) { return WriteTouchstone(d, p, pl); }},
    {"csv", "cmdCsv", "CSV", SaveRoute::Dialog, "Save sweep as CSV", "CSV file (*.csv)|*.csv",
     ".csv",
     [](DesignRecord& d, const std::string& p, Platform& pl) { return WriteSweepCsv(d, p, pl); }},
    {.option = "kicad",
     .button = "cmdKicad",
     .caption = "KiCad",
     .route = SaveRoute::Dialog,
     .dialogTitle = "Save KiCad schematic",
     .filter = "KiCad schematic (*.kicad_sch)|*.kicad_sch",
     .extension = ".kicad_sch",
     .write = [](DesignRecord& d, const std::string& p,
                 Platform& pl) { return WriteKicadSchematic(d, p, pl); }},
};

inline std::span<const ExportFormat> ExportFormats() {
  return kExportFormats;
}

// The format of a command-line option word ("cir"), or nullptr.
inline const ExportFormat* FindExportFormat(std::string_view option) {
  for (const ExportFormat& f : kExportFormats)
    if (option == f.option) return &f;
  return nullptr;
}

}  // namespace drenik
