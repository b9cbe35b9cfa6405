#pragma once
// The two figures by which the stock-part chooser judges a set of values:
// the worst return loss in the passband and the least attenuation in the
// stopband, both in dB and positive for a passive ladder.

#include <span>
#include <vector>

#include "analysis/ladder.h"
#include "core/design_record.h"

namespace drenik {

// Where the bands lie, Hz. The passband runs up to the cutoff in a lowpass
// and from it in a highpass. A Cauer stopband starts at its edge (Width
// times FstopNormalized, divided in a highpass); any other family's at an
// octave from the cutoff, where its attenuation has clearly set in.
struct Bands {
  bool highpass = false;
  double cutoff = 0;
  double stopEdge = 0;
  // A band design: the passband f1..f2 and the stopbands below stopLow and
  // above stopHigh (a bandpass), or the reverse (a bandstop).
  bool band = false, bandstop = false;
  double f1 = 0, f2 = 0, stopLow = 0, stopHigh = 0;
};
Bands BandsOf(const DesignRecord& d);
bool InPassband(const Bands& bands, double f);
bool InStopband(const Bands& bands, double f);

struct Figures {
  double returnLoss = 0;  // worst passband return loss, dB
  // Least stopband attenuation, dB; NaN for a probe without stopband points.
  double stopband = 0;
};

// The frequencies at which a candidate set is measured: a subset of the
// display sweep's points in each band (Hz, as the sweep stores them) and
// the bands' own frequencies beyond it.
struct Probe {
  std::vector<float> passband;
  std::vector<float> stopband;
};

// Each band's own frequencies (analysis/band_frequencies.h) that lie
// beyond the record's sweep (points 0..NrIntervals); for a band design swept
// other than its own way, its own sweep's points in each band
// (synthesis/design_edges.h).
Probe BeyondSweep(const DesignRecord& d, const Bands& bands);

// From the record's analysed sweep (points 0..NrIntervals) and, where a band
// reaches past it, the kernel at the band's own frequencies there: a Cauer
// stopband that starts beyond the sweep's end still has its figure.
Figures FiguresOf(const DesignRecord& analysed, const Bands& bands);

// A ladder's response at the probe's points: the return loss at each
// passband point and the attenuation at each stopband point, dB.
struct ProbeResponse {
  std::vector<double> returnLoss;
  std::vector<double> attenuation;
  // The worst of each; a NaN stopband figure when there are no stopband points.
  Figures Worst() const;
};

// The response of every ladder at the probe's frequencies, through the
// batch form of the shared ladder kernel: the single place where the
// chooser evaluates value sets. The ladders share one shape (kinds,
// terminations, Qs).
void MeasureLadders(std::span<const Ladder> ladders, const Probe& probe,
                    std::span<ProbeResponse> out);

}  // namespace drenik
