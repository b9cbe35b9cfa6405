// The Pallis filter file: "* " label lines, each followed by its values. A
// real value is its value text (' 50 ', ' .01 ', '-.5 '), an integer its
// integer text (' 0 '); the values of one line are run together.
//
// When the writing fails part-way (a zero Rsource cannot give the resistance
// ratio, a full disk) nothing of the new file appears and an old file of that
// name stays as it was.

#include "export/pallis_file.h"
#include "core/atomic_file.h"
#include "core/element_kinds.h"
#include "core/number_text.h"
#include "export/writable_parts.h"
#include "export/writers.h"
#include "synthesis/topologies.h"

namespace drenik {
namespace {

// The topology's letter; empty for a text that names no topology.
std::string PallisTopologyLetter(const std::string& topology) {
  const TopologyInfo* t = FindTopology(topology);
  return t ? t->letter : "";
}

// 0 without resonant branches, else 1, 2, 3 for Cauer type A, B, C (1 for
// any other letter).
int PallisCauerNumber(const DesignRecord& d) {
  if (d.CauerFlag == 0) return 0;
  if (d.CauerType == "B") return 2;
  if (d.CauerType == "C") return 3;
  return 1;
}

// Writes every line; false when the writing has to stop.
bool WritePallisLines(const DesignRecord& d, Platform& platform, AtomicFile& file) {
  const auto line = [&file](const std::string& text) { file.Line(text); };
  const auto v = [](float value) { return ValueText(value); };

  line("Pallis file written by Drenikfilter");
  line("Drenik File");
  line(platform.TodayShort());
  line("* Expansion:");
  line(" (Expansion)");
  line("* Family, order, stages, topology, Cauer:");
  line(IntegerText(11) + IntegerText(d.Stages) + IntegerText(d.Stages) +
       PallisTopologyLetter(d.Topology) + IntegerText(PallisCauerNumber(d)));
  line("* Width, center, Fstop normalized:");
  // A band design's centre, the geometric one; 0 for a lowpass or highpass.
  const bool band = IsBandDesign(d) && d.Center > 0;
  line(v(d.Width) + (band ? v(d.Center) : IntegerText(0)) + v(d.FstopNormalized));
  line("* Apass, Astop:");
  line(v(d.Apass) + v(d.Astop));
  line("* Rsource, Rload, Rratio, Rstandard:");
  if (d.Rsource == 0) return false;  // the ratio cannot be formed
  line(v(d.Rsource) + v(d.Rload) + v(static_cast<float>(double{d.Rload} / d.Rsource)) +
       v(d.Rstandard));
  line("* Qind, Qcap:");
  line(v(d.Qind) + v(d.Qcap));
  line("* Gj, Hj:");
  const int stages = d.Stages;
  if (!PallisCannotHold(d).empty()) return false;  // beyond the prototype arrays
  for (int j = 1; j <= stages; ++j) line(v(d.G[j]) + v(d.H[j]));
  line("* Element type, L, Ltolerance, C, Ctolerance");
  for (int k = 1; k <= stages; ++k) {
    const int16_t type = d.ElementType[k];
    if (!CarriesParts(type)) continue;
    line(v(static_cast<float>(type)) + v(d.L[k]) + IntegerText(0) + v(d.C[k]) + IntegerText(0));
  }
  line("* Lin or log, Fstart, Fstop, Fstep or NrIntervals:");
  line(IntegerText(2) + v(d.Fstart) + v(d.Fstop) + IntegerText(d.NrIntervals));
  line("* Graph scales:");
  line(v(60) + IntegerText(0) + v(1) + v(1) + v(d.GraphScale) + v(120) + v(10) + v(6));
  line("* Limits Y/N:");
  line("N");
  return true;
}

}  // namespace

std::string PallisCannotHold(const DesignRecord& d) {
  if (d.Stages <= kPrototypePositions) return {};
  return "the Pallis file holds ladders of up to " + std::to_string(kPrototypePositions) +
         " positions; this design has " + std::to_string(d.Stages);
}

bool WritePallisFile(const DesignRecord& d, const std::string& path, Platform& platform) {
  if (!PartsWritable(d, platform, kPallisFailure)) return false;
  AtomicFile file(path);
  const bool written = file.IsOpen() && WritePallisLines(d, platform, file) && file.Commit();
  if (!written) platform.ShowMessage(kPallisFailure);
  return written;
}

}  // namespace drenik
