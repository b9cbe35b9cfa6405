#include "analysis/sweep.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <initializer_list>

#include "core/runtime_error.h"
#include "support/recording_platform.h"

namespace drenik {
namespace {

using testing::RecordingPlatform;

constexpr double kPi = 3.14159265358979323846;

DesignRecord Bench(std::initializer_list<int16_t> codes = {}) {
  DesignRecord d;
  d.Pi = static_cast<float>(4 * std::atan(1.0));
  d.TwoPi = static_cast<float>(8 * std::atan(1.0));
  d.Rsource = 50;
  d.Rload = 50;
  d.Qind = kInfiniteQind;
  d.Qcap = kInfiniteQcap;
  d.Fstart = 1000;
  d.Fstop = 100000;
  d.NrIntervals = 400;
  int k = 0;
  for (int16_t c : codes) d.ElementType[++k] = c;
  d.Stages = static_cast<int16_t>(k);
  return d;
}

// Transducer gain in dB of a single series impedance z (ohms) or shunt
// admittance y (siemens) between equal 50-ohm terminations.
double SeriesDb(std::complex<double> z) {
  return -20 * std::log10(std::abs(1.0 + z / 100.0));
}
double ShuntDb(std::complex<double> y) {
  return -20 * std::log10(std::abs(1.0 + y * 25.0));
}

TEST(AnalyzeSweep, GridIsLogarithmicAndResetsTheReference) {
  DesignRecord d = Bench();
  d.Rstandard = 75;
  d.MaxDelay = 1;
  RecordingPlatform p;
  AnalyzeSweep(d, p);
  EXPECT_EQ(d.Freq[0], 1000.0f);
  EXPECT_FLOAT_EQ(d.Freq[200], 10000.0f);
  EXPECT_FLOAT_EQ(d.Freq[400], 100000.0f);
  EXPECT_FLOAT_EQ(d.Freq[101] / d.Freq[100], d.Freq[301] / d.Freq[300]);
  EXPECT_EQ(d.Rstandard, 50.0f);
  EXPECT_LT(d.MaxDelay, 1e-14f);  // a wire: only the 1e-10j of Den turns the phase
}

TEST(AnalyzeSweep, StraightWireAndReflectionClamps) {
  DesignRecord d = Bench();
  RecordingPlatform p;
  AnalyzeSweep(d, p);
  EXPECT_NEAR(d.Transmission[7], 0.0, 1e-9);
  EXPECT_NEAR(d.Phase[7], 0.0, 1e-6);
  // Zin equals Rstandard exactly: rho sits at its lower clamp.
  EXPECT_FLOAT_EQ(d.Reflection[7], -140.0f);
  EXPECT_FLOAT_EQ(d.VSWR[7], 1.0000002f);

  // A wire into a 200-ohm load: Den = 1.25, rho = 0.6.
  d.Rload = 200;
  AnalyzeSweep(d, p);
  EXPECT_NEAR(d.Transmission[3], -10 * std::log10(200 * 1.5625 / 200), 1e-5);
  EXPECT_NEAR(d.VSWR[3], 4.0, 1e-5);
  EXPECT_NEAR(d.Reflection[3], 20 * std::log10(0.6), 1e-5);

  // A missing series capacitor is a 10 Mohm reactance, not an open circuit,
  // and the near-total mismatch hits the upper clamp of rho.
  d = Bench({3});
  const PointResult r = AnalyzePoint(d, 5000, 0, 0, p);
  EXPECT_NEAR(r.ZinMagnitude, 1e7, 1);
  EXPECT_NEAR(r.ZinAngle, 90.0, 1e-3);
  EXPECT_NEAR(r.TransmissionDb, SeriesDb({1, 1e7}), 1e-6);
  EXPECT_NEAR(r.Vswr, 19999999.0, 1.0);
  EXPECT_NEAR(r.ReflectionDb, -8.686e-7, 1e-9);
  EXPECT_EQ(p.beeps, 0);
}

TEST(AnalyzePoint, EachElementMatchesItsClosedForm) {
  RecordingPlatform p;
  const float f = 1e6f;
  const double w = static_cast<double>(static_cast<float>(2 * kPi) * f);
  const double l = 4e-6, c = 2e-9;
  struct Case {
    int16_t code;
    float qind;
    double expected;
  };
  const std::complex<double> jl(0, w * l), jc(0, w * c);
  const Case cases[] = {
      {1, 1e6f, SeriesDb(jl)},
      {1, 10.0f, SeriesDb(jl + w * l / 10)},  // inductor loss ωL/Q in series
      {2, 1e6f, ShuntDb(1.0 / jl)},
      {2, 5.0f, ShuntDb(1.0 / (jl + w * l / 5))},
      {3, 1e6f, SeriesDb(1.0 / jc)},
      {4, 1e6f, ShuntDb(jc)},
      {6, 1e6f, ShuntDb(1.0 / (jl + 1.0 / jc))},
      {6, 20.0f, ShuntDb(1.0 / (jl + w * l / 20 + 1.0 / jc))},
      {7, 1e6f, SeriesDb(1.0 / (1.0 / jl + jc))},
      {7, 20.0f, SeriesDb(1.0 / (1.0 / (jl + w * l / 20) + jc))},
  };
  for (const Case& k : cases) {
    DesignRecord d = Bench({k.code});
    d.L[1] = static_cast<float>(l);
    d.C[1] = static_cast<float>(c);
    d.Qind = k.qind;
    const PointResult r = AnalyzePoint(d, f, 0, 0, p);
    EXPECT_NEAR(r.TransmissionDb, k.expected, 1e-4) << "code " << k.code << " Q " << k.qind;
  }

  // Lossy shunt capacitor: conductance ωC/Qcap across it.
  DesignRecord d = Bench({4});
  d.C[1] = static_cast<float>(c);
  d.Qcap = 8;
  EXPECT_NEAR(AnalyzePoint(d, f, 0, 0, p).TransmissionDb, ShuntDb(jc + w * c / 8), 1e-4);
  EXPECT_EQ(p.beeps, 0);
}

TEST(AnalyzePoint, ResonantBranchesStayFiniteAtResonance) {
  RecordingPlatform p;
  for (int16_t code : {6, 7}) {
    DesignRecord d = Bench({code});
    d.L[1] = 1e-6f;
    d.C[1] = 1e-9f;
    const float f0 = static_cast<float>(1 / (2 * kPi * std::sqrt(double{d.L[1]} * double{d.C[1]})));
    const PointResult r = AnalyzePoint(d, f0, 0, 0, p);
    EXPECT_TRUE(std::isfinite(r.TransmissionDb) && std::isfinite(r.Phase) && std::isfinite(r.Vswr));
    EXPECT_LT(r.TransmissionDb, -60) << "code " << code;
  }
}

TEST(AnalyzeSweep, UnknownCodesBeepAndActAsWires) {
  DesignRecord plain = Bench({4, 1, 4});
  plain.C[1] = plain.C[3] = 1e-7f;
  plain.L[2] = 1e-3f;
  DesignRecord odd = Bench({4, 5, 1, 8, 4, 17});
  odd.C[1] = odd.C[5] = 1e-7f;
  odd.L[3] = 1e-3f;
  odd.L[2] = odd.C[2] = odd.L[4] = odd.C[4] = 1;  // not looked at
  RecordingPlatform p, q;
  AnalyzeSweep(plain, p);
  AnalyzeSweep(odd, q);
  EXPECT_EQ(p.beeps, 0);
  EXPECT_EQ(q.beeps, 3 * 401);
  for (int i = 0; i <= 400; i += 50) {
    EXPECT_EQ(odd.Transmission[i], plain.Transmission[i]);
    EXPECT_EQ(odd.Phase[i], plain.Phase[i]);
    EXPECT_EQ(odd.Reflection[i], plain.Reflection[i]);
  }
}

TEST(AnalyzeSweep, DelayIsBackwardDifferenceWithExtrapolatedFirstPoint) {
  // Series inductor between 50-ohm ends: phase -atan(ωL/2R), group delay
  // (L/2R) / (1 + (ωL/2R)^2).
  DesignRecord d = Bench({1});
  d.L[1] = 1e-3f;
  RecordingPlatform p;
  AnalyzeSweep(d, p);
  for (int i = 1; i <= 400; i += 37) {
    const double fm = std::sqrt(double{d.Freq[i]} * d.Freq[i - 1]);  // backward step midpoint
    const double t = 1e-3 / 100, x = 2 * kPi * fm * t;
    EXPECT_NEAR(d.Delay[i], t / (1 + x * x), 2e-3 * t) << i;
    EXPECT_NEAR(d.Phase[i], -std::atan(2 * kPi * d.Freq[i] * t) * 180 / kPi, 1e-3);
  }
  EXPECT_EQ(d.Delay[0], static_cast<float>(2.0 * d.Delay[1] - d.Delay[2]));
  // The raw first point (against 0 Hz and 0 degrees) takes part in MaxDelay.
  const double raw = AnalyzePoint(d, d.Freq[0], 0, 0, p).Delay;
  EXPECT_GT(raw, d.Delay[1]);
  EXPECT_EQ(d.MaxDelay, static_cast<float>(raw));

  // One interval: Delay(2) is whatever the last sweep left there.
  d.NrIntervals = 1;
  d.Delay[2] = 5e-9f;
  AnalyzeSweep(d, p);
  EXPECT_EQ(d.Delay[0], static_cast<float>(2.0 * d.Delay[1] - 5e-9f));
  // No points at all: only the extrapolation runs.
  d.NrIntervals = -1;
  d.Delay[1] = 3e-9f;
  d.Delay[2] = 1e-9f;
  AnalyzeSweep(d, p);
  EXPECT_FLOAT_EQ(d.Delay[0], 5e-9f);
  EXPECT_EQ(d.MaxDelay, 0.0f);
}

TEST(AnalyzeSweep, PhaseStaysInRangeThroughAllQuadrants) {
  // Seven-pole lowpass: the phase turns through more than 360 degrees.
  DesignRecord d = Bench({4, 1, 4, 1, 4, 1, 4});
  for (int k = 1; k <= 7; k += 2) d.C[k] = 2e-7f;
  for (int k = 2; k <= 7; k += 2) d.L[k] = 5e-4f;
  RecordingPlatform p;
  AnalyzeSweep(d, p);
  int wraps = 0;
  for (int i = 0; i <= 400; ++i) {
    EXPECT_GT(d.Phase[i], -180.0f);
    EXPECT_LE(d.Phase[i], 180.0f);
    if (i > 0 && std::fabs(d.Phase[i] - d.Phase[i - 1]) > 180) ++wraps;
    if (i > 0) {
      EXPECT_GT(d.Delay[i], 0.0f) << i;  // no false jumps at the wraps
    }
  }
  EXPECT_GE(wraps, 1);
}

TEST(AnalyzeSweep, RefusesWhatWouldDivideByZeroBeforeTouchingResults) {
  struct Case {
    const char* what;
    void (*spoil)(DesignRecord&);
  };
  const Case cases[] = {
      {"Fstart 0", [](DesignRecord& d) { d.Fstart = 0; }},
      {"Fstop < 0", [](DesignRecord& d) { d.Fstop = -5; }},
      {"NrIntervals 0", [](DesignRecord& d) { d.NrIntervals = 0; }},
      {"NrIntervals 2001", [](DesignRecord& d) { d.NrIntervals = 2001; }},
      {"Stages 21", [](DesignRecord& d) { d.Stages = 21; }},
      {"Stages -1", [](DesignRecord& d) { d.Stages = -1; }},
      {"Rload 0", [](DesignRecord& d) { d.Rload = 0; }},
      {"Rsource 0", [](DesignRecord& d) { d.Rsource = 0; }},
      {"Pi unset", [](DesignRecord& d) { d.TwoPi = 0; }},
      {"Qind 0", [](DesignRecord& d) { d.Qind = 0; }},
      {"Qcap 0", [](DesignRecord& d) { d.Qcap = 0; }},
      {"L 0 shunt", [](DesignRecord& d) { d.L[2] = 0; }},
      {"L 0 tank", [](DesignRecord& d) { d.L[3] = 0; }},
  };
  for (const Case& c : cases) {
    DesignRecord d = Bench({4, 2, 7});
    d.C[1] = d.C[3] = 1e-8f;
    d.L[2] = d.L[3] = 1e-3f;
    d.Freq[0] = d.Transmission[0] = d.Delay[0] = 42;
    c.spoil(d);
    RecordingPlatform p;
    EXPECT_THROW(AnalyzeSweep(d, p), RunTimeError) << c.what;
    EXPECT_EQ(d.Freq[0], 42.0f) << c.what;
    EXPECT_EQ(d.Transmission[0], 42.0f) << c.what;
    EXPECT_EQ(d.Delay[0], 42.0f) << c.what;
  }
  // A zero Q of a part the ladder does not contain is harmless, and so is a
  // zero series inductor (a wire).
  DesignRecord d = Bench({4, 1});
  d.C[1] = 1e-8f;
  d.Qind = 0.5f;
  d.Qcap = 0;
  RecordingPlatform p;
  DesignRecord caps = Bench({3});
  caps.C[1] = 1e-8f;
  caps.Qind = 0;
  EXPECT_NO_THROW(AnalyzeSweep(caps, p));
  DesignRecord wire = Bench({1});
  EXPECT_NO_THROW(AnalyzeSweep(wire, p));
  EXPECT_NEAR(wire.Transmission[10], 0.0, 1e-9);
  EXPECT_THROW(AnalyzeSweep(d, p), RunTimeError);
}

}  // namespace
}  // namespace drenik
