#pragma once
// Files for other programs. Each writer shows its own failure message through
// the platform and returns false; true when the file was written whole.

#include <string>

#include "core/design_record.h"
#include "core/platform.h"

namespace drenik {

// The Pallis filter file (.LCT). Failure: "We did not write an Pallis file."
bool WritePallisFile(const DesignRecord& d, const std::string& path, Platform& platform);
// The LTspice schematic (.ASC). Failure: "We could not write the LTspice file"
bool WriteLtspiceFile(DesignRecord& d, const std::string& path, Platform& platform);
// A SPICE netlist (.cir) with an .ac dec line over the sweep, for ngspice and
// LTspice.
std::string SpiceNetlistText(const DesignRecord& d);
bool WriteSpiceNetlist(const DesignRecord& d, const std::string& path, Platform& platform);
// Touchstone 2.0 (.s2p) of the analysed sweep, ports referred to Rsource and
// Rload.
bool WriteTouchstone(const DesignRecord& d, const std::string& path, Platform& platform);
// A KiCad 6 schematic (.kicad_sch, file version 20211123) of the ladder's
// inductors and capacitors. Failure: "We could not write the KiCad schematic"
std::string KicadSchematicText(const DesignRecord& d);
bool WriteKicadSchematic(const DesignRecord& d, const std::string& path, Platform& platform);
// CSV of the sweep: frequency, transmission, reflection, VSWR, delay, phase.
bool WriteSweepCsv(const DesignRecord& d, const std::string& path, Platform& platform);

}  // namespace drenik
