// The analysed sweep as CSV: a header line, then one row per point
// 0..NrIntervals, lines ended by CR LF as RFC 4180 has them.

#include <string>

#include "core/atomic_file.h"
#include "core/number_text.h"
#include "export/touchstone.h"
#include "export/writable_parts.h"
#include "export/writers.h"

namespace drenik {

bool WriteSweepCsv(const DesignRecord& d, const std::string& path, Platform& platform) {
  if (!PartsWritable(d, platform, kSweepCsvFailure)) return false;
  AtomicFile file(path);
  bool written = file.IsOpen() && d.NrIntervals >= 0 && d.NrIntervals < kSweepSlots;
  if (written) {
    file.Line(kSweepCsvHeader);
    for (int i = 0; i <= d.NrIntervals; ++i) {
      file.Line(RoundTripText(d.Freq[i]) + "," + RoundTripText(d.Transmission[i]) + "," +
                RoundTripText(d.Reflection[i]) + "," + RoundTripText(d.VSWR[i]) + "," +
                RoundTripText(d.Delay[i]) + "," + RoundTripText(d.Phase[i]));
    }
    written = file.Commit();
  }
  if (!written) platform.ShowMessage(kSweepCsvFailure);
  return written;
}

}  // namespace drenik
