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
using Cx = std::complex<double>;
constexpr double kPi = 3.14159265358979323846;

DesignRecord Bench(std::initializer_list<int16_t> codes = {}, float l = 0, float c = 0) {
  DesignRecord d;
  d.Pi = static_cast<float>(4 * std::atan(1.0));
  d.TwoPi = static_cast<float>(8 * std::atan(1.0));
  d.Rsource = d.Rload = 50;
  d.Qind = kInfiniteQind;
  d.Qcap = kInfiniteQcap;
  d.Fstart = 1000;
  d.Fstop = 100000;
  d.NrIntervals = 400;
  for (int16_t code : codes) {
    d.ElementType[++d.Stages] = code;
    d.L[d.Stages] = l;
    d.C[d.Stages] = c;
  }
  return d;
}

// Transducer gain (dB) of one series impedance or shunt admittance between
// 50-ohm ends.
double SeriesDb(Cx z) {
  return -20 * std::log10(std::abs(1.0 + z / 100.0));
}
double ShuntDb(Cx y) {
  return -20 * std::log10(std::abs(1.0 + y * 25.0));
}

TEST(AnalyzeSweep, GridWireAndReflectionClamps) {
  DesignRecord d = Bench();
  d.Rstandard = 75;
  RecordingPlatform p;
  AnalyzeSweep(d, p);
  EXPECT_EQ(d.Freq[0], 1000.0f);
  EXPECT_FLOAT_EQ(d.Freq[200], 10000.0f);  // geometric middle
  EXPECT_FLOAT_EQ(d.Freq[400], 100000.0f);
  EXPECT_EQ(d.Rstandard, 50.0f);
  // A straight wire: 0 dB, and Zin = Rstandard puts rho on its lower clamp.
  EXPECT_NEAR(d.Transmission[7], 0.0, 1e-9);
  EXPECT_NEAR(d.Phase[7], 0.0, 1e-6);
  EXPECT_FLOAT_EQ(d.Reflection[7], -140.0f);
  EXPECT_FLOAT_EQ(d.VSWR[7], 1.0000002f);
  EXPECT_LT(d.MaxDelay, 1e-14f);  // only the 1e-10j of Den turns the phase

  d.Rload = 200;  // Den = 1.25, rho = 0.6
  AnalyzeSweep(d, p);
  EXPECT_NEAR(d.Transmission[3], -10 * std::log10(1.5625), 1e-5);
  EXPECT_NEAR(d.VSWR[3], 4.0, 1e-5);
  EXPECT_NEAR(d.Reflection[3], 20 * std::log10(0.6), 1e-5);

  // A missing series capacitor is 10 Mohm of reactance, not an open, and
  // the mismatch puts rho on its upper clamp.
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
  const double w = static_cast<float>(2 * kPi) * f;
  const float l = 4e-6f, c = 2e-9f;
  const Cx zl(0, w * l), yc(0, w * c), lossL(w * l, 0);
  const struct {
    int16_t code;
    float qind, qcap;
    double expected;
  } cases[] = {
      {1, 1e6f, 1e7f, SeriesDb(zl)},
      {1, 10, 1e7f, SeriesDb(zl + lossL / 10.0)},
      {2, 1e6f, 1e7f, ShuntDb(1.0 / zl)},
      {2, 5, 1e7f, ShuntDb(1.0 / (zl + lossL / 5.0))},
      {3, 1e6f, 1e7f, SeriesDb(1.0 / yc)},
      {3, 1e6f, 4, SeriesDb(1.0 / (yc + w * c / 4))},
      {4, 1e6f, 8, ShuntDb(yc + w * c / 8)},
      {6, 20, 1e7f, ShuntDb(1.0 / (zl + lossL / 20.0 + 1.0 / yc))},
      {7, 1e6f, 1e7f, SeriesDb(1.0 / (1.0 / zl + yc))},
      {7, 20, 30, SeriesDb(1.0 / (1.0 / (zl + lossL / 20.0) + yc + w * c / 30))},
  };
  for (const auto& k : cases) {
    DesignRecord d = Bench({k.code}, l, c);
    d.Qind = k.qind;
    d.Qcap = k.qcap;
    EXPECT_NEAR(AnalyzePoint(d, f, 0, 0, p).TransmissionDb, k.expected, 1e-4)
        << "code " << k.code << " Q " << k.qind << " " << k.qcap;
  }

  // Resonant branches where the lossy tank's susceptances cancel, and a
  // fraction of a part per million to a few ppm either side.
  for (int16_t code : {6, 7}) {
    DesignRecord d = Bench({code}, 1e-6f, 1e-9f);
    d.Qind = 200;
    const double f0 = 1 / (2 * kPi * std::sqrt(double{d.L[1]} * d.C[1] * (1 + 1 / 200.0 / 200)));
    for (double detune : {0.0, -3e-7, 3e-7, -3e-6, 3e-6, 1e-3}) {
      const float fd = static_cast<float>(f0 * (1 + detune));
      const double wd = static_cast<double>(d.TwoPi * fd);
      const Cx zld(wd * d.L[1] / 200, wd * d.L[1]), ycd(wd * d.C[1] / d.Qcap, wd * d.C[1]);
      const double expected =
          code == 6 ? ShuntDb(1.0 / (zld + 1.0 / ycd)) : SeriesDb(1.0 / (1.0 / zld + ycd + 1e-11));
      const double got = AnalyzePoint(d, fd, 0, 0, p).TransmissionDb;
      EXPECT_NEAR(got, expected, 1e-3) << "code " << code << " detune " << detune;
      EXPECT_LT(got, -25);
    }
  }
  EXPECT_EQ(p.beeps, 0);
}

TEST(AnalyzeSweep, UnknownCodesBeepAndActAsWires) {
  DesignRecord plain = Bench({4, 1, 4}, 1e-3f, 1e-7f);
  DesignRecord odd = Bench({4, 5, 1, 8, 4, 17}, 1e-3f, 1e-7f);
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

TEST(AnalyzeSweep, PhaseAndBackwardDifferenceDelay) {
  // Series L between 50-ohm ends: phase -atan(ωτ), delay τ/(1 + (ωτ)²),
  // τ = L/2R.
  DesignRecord d = Bench({1}, 1e-3f);
  RecordingPlatform p;
  AnalyzeSweep(d, p);
  const double tau = 1e-5;
  for (int i = 1; i <= 400; i += 37) {
    const double x = kPi * (d.Freq[i] + d.Freq[i - 1]) * tau;  // at the step's middle
    EXPECT_NEAR(d.Delay[i], tau / (1 + x * x), 2e-3 * tau) << i;
    EXPECT_NEAR(d.Phase[i], -std::atan(2 * kPi * d.Freq[i] * tau) * 180 / kPi, 1e-3);
  }
  EXPECT_EQ(d.Delay[0], static_cast<float>(2.0 * d.Delay[1] - d.Delay[2]));
  // The raw first point (against 0 Hz and 0 degrees) counts in MaxDelay.
  const double raw = AnalyzePoint(d, d.Freq[0], 0, 0, p).Delay;
  EXPECT_GT(raw, d.Delay[1]);
  EXPECT_EQ(d.MaxDelay, static_cast<float>(raw));

  d.NrIntervals = 1;  // Delay(2) is what the last sweep left there
  d.Delay[2] = 5e-9f;
  AnalyzeSweep(d, p);
  EXPECT_EQ(d.Delay[0], static_cast<float>(2.0 * d.Delay[1] - 5e-9f));
  d.NrIntervals = -1;  // no points: only the extrapolation runs
  d.Delay[1] = 3e-9f;
  AnalyzeSweep(d, p);
  EXPECT_FLOAT_EQ(d.Delay[0], 1e-9f);
  EXPECT_EQ(d.MaxDelay, 0.0f);

  // Seven poles turn the phase through -630 degrees: it wraps, stays in
  // (-180, 180], and the delay does not jump at the wraps.
  d = Bench({4, 1, 4, 1, 4, 1, 4}, 5e-4f, 2e-7f);
  AnalyzeSweep(d, p);
  int wraps = 0;
  for (int i = 1; i <= 400; ++i) {
    EXPECT_TRUE(d.Phase[i] > -180 && d.Phase[i] <= 180 && d.Delay[i] > 0) << i;
    wraps += std::fabs(d.Phase[i] - d.Phase[i - 1]) > 180;
  }
  EXPECT_GE(wraps, 1);
}

TEST(AnalyzeSweep, RefusesWhatWouldDivideByZeroBeforeTouchingResults) {
  const struct {
    const char* what;
    void (*spoil)(DesignRecord&);
  } cases[] = {
      {"Fstart 0", [](DesignRecord& d) { d.Fstart = 0; }},
      {"Fstop < 0", [](DesignRecord& d) { d.Fstop = -5; }},
      {"NrIntervals 0", [](DesignRecord& d) { d.NrIntervals = 0; }},
      {"NrIntervals 2001", [](DesignRecord& d) { d.NrIntervals = 2001; }},
      {"Stages 21", [](DesignRecord& d) { d.Stages = 21; }},
      {"Stages -1", [](DesignRecord& d) { d.Stages = -1; }},
      {"Rload 0", [](DesignRecord& d) { d.Rload = 0; }},
      {"Rsource 0", [](DesignRecord& d) { d.Rsource = 0; }},
      {"TwoPi unset", [](DesignRecord& d) { d.TwoPi = 0; }},
      {"Qind 0", [](DesignRecord& d) { d.Qind = 0; }},
      {"Qcap 0", [](DesignRecord& d) { d.Qcap = 0; }},
      {"L 0 shunt", [](DesignRecord& d) { d.L[2] = 0; }},
      {"L 0 tank", [](DesignRecord& d) { d.L[3] = 0; }},
  };
  RecordingPlatform p;
  for (const auto& c : cases) {
    DesignRecord d = Bench({4, 2, 7}, 1e-3f, 1e-8f);
    d.Freq[0] = d.Transmission[0] = d.Delay[0] = 42;
    c.spoil(d);
    EXPECT_THROW(AnalyzeSweep(d, p), RunTimeError) << c.what;
    EXPECT_TRUE(d.Freq[0] == 42 && d.Transmission[0] == 42 && d.Delay[0] == 42) << c.what;
  }
  // A zero Q of a kind of part the ladder does not hold is harmless, and so
  // is a zero series inductor (a wire).
  DesignRecord caps = Bench({3}, 0, 1e-8f);
  caps.Qind = 0;
  EXPECT_NO_THROW(AnalyzeSweep(caps, p));
  DesignRecord wire = Bench({1});
  wire.Qcap = 0;
  EXPECT_NO_THROW(AnalyzeSweep(wire, p));
  EXPECT_NEAR(wire.Transmission[10], 0.0, 1e-9);
}

}  // namespace
}  // namespace drenik
