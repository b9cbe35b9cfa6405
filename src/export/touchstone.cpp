// Touchstone 2.0 two-port file of the analysed sweep: real and imaginary
// parts of S11, S21, S12, S22 at the sweep's frequencies, port 1 referred to
// Rsource and port 2 to Rload, so that |S21| squared is the transmission and
// |S11| the reflection of the analysis.

#include <string>

#include "analysis/ladder.h"
#include "core/atomic_file.h"
#include "core/number_text.h"
#include "export/touchstone.h"
#include "export/writable_parts.h"
#include "export/writers.h"

namespace drenik {
namespace {

std::string Pair(std::complex<double> value) {
  return " " + RoundTripText(value.real()) + " " + RoundTripText(value.imag());
}

bool WriteTouchstoneLines(const DesignRecord& d, AtomicFile& file) {
  if (d.NrIntervals < 0 || d.NrIntervals >= kSweepSlots || !(d.Rsource > 0) || !(d.Rload > 0) ||
      d.Stages < 0 || d.Stages > kMaxPositions) {
    return false;
  }
  const Ladder ladder = LadderOf(d);
  const std::string rs = RoundTripText(d.Rsource), rl = RoundTripText(d.Rload);
  file.Line("! " +
            (d.ProgramTitle.empty() ? std::string("Drenik Filter Designer") : d.ProgramTitle) +
            ": the analysed ladder, port 1 at the source, port 2 at the load");
  file.Line("[Version] 2.0");
  file.Line("# Hz S RI R " + rs);
  file.Line("[Number of Ports] 2");
  file.Line("[Two-Port Data Order] 21_12");
  file.Line("[Number of Frequencies] " + std::to_string(d.NrIntervals + 1));
  file.Line("[Reference] " + rs + " " + rl);
  file.Line("[Network Data]");
  file.Line("! Hz  S11 (re im)  S21 (re im)  S12 (re im)  S22 (re im)");
  for (int i = 0; i <= d.NrIntervals; ++i) {
    const SParameters s = LadderSParameters(ladder, d.Freq[i]);
    file.Line(RoundTripText(d.Freq[i]) + Pair(s.S11) + Pair(s.S21) + Pair(s.S12) + Pair(s.S22));
  }
  file.Line("[End]");
  return true;
}

}  // namespace

bool WriteTouchstone(const DesignRecord& d, const std::string& path, Platform& platform) {
  if (!PartsWritable(d, platform, kTouchstoneFailure)) return false;
  AtomicFile file(path);
  if (!file.IsOpen() || !WriteTouchstoneLines(d, file) || !file.Commit()) {
    platform.ShowMessage(kTouchstoneFailure);
    return false;
  }
  return true;
}

}  // namespace drenik
