// The exact time response against ngspice's transient analysis of the
// program's own netlist, against the frequency analysis, and the published
// overshoots of the lowpass prototypes.

#include <gtest/gtest.h>
#include <unistd.h>

#include <Eigen/Dense>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "analysis/ladder.h"
#include "export/writers.h"
#include "synthesis/denormalize.h"
#include "synthesis/families.h"
#include "timedomain/response.h"

namespace drenik {
namespace {

namespace fs = std::filesystem;

DesignRecord Designed(int16_t family, const char* topology, float q = kInfiniteQind) {
  DesignRecord d;
  d.Pi = static_cast<float>(M_PI), d.TwoPi = static_cast<float>(2 * M_PI);
  d.Rsource = d.Rload = d.Rstandard = 50;
  d.Family = family, d.Order = 5, d.Topology = topology, d.Apass = 0.044f, d.Astop = 40;
  d.CauerType = "C", d.Width = 1e6f, d.Qind = q, d.Qcap = kInfiniteQcap;
  EXPECT_TRUE(DesignPrototype(d).Ok());
  EXPECT_TRUE(Denormalize(d).Ok());
  return d;
}

TimeRequest RequestOf(const DesignRecord& d) {
  TimeRequest r;
  r.ladder = LadderOf(d);
  r.lossFrequency = r.ladder.qReference;
  r.carrier = d.Center;
  return r;
}

// ngspice's v(out) at n * dt, n = 0..points-1, for a 2 V step behind
// Rsource, or for a band design a 2 V cosine at its centre switched on at 0.
std::vector<double> Transient(const DesignRecord& d, double dt, int points, const fs::path& dir) {
  std::string net = SpiceNetlistText(d);
  net.replace(net.find("DC 0 AC 2"), 9,
              d.Center > 0 ? "SIN(0 2 " + std::to_string(d.Center) + " 0 0 90)"
                           : std::string("PULSE(0 2 0 1p 1p 1 2)"));
  // The loss resistors stay as exported: at hertz 0 (the transient) each is
  // its value at the cutoff, the centre of a band design.
  net = net.substr(0, net.find(".ac "));
  const fs::path out = dir / "step.txt", cir = dir / "step.cir";
  std::ofstream(cir) << net
                     << ".options reltol=1e-5 abstol=1e-12 vntol=1e-9\n"
                     // A carrier starts at 2 V: `uic` keeps the parts empty
                     // at 0 instead of charging them to that operating point,
                     // and short steps keep the phase over hundreds of cycles.
                     << ".tran " << dt << " " << dt * (points - 1) << " 0 "
                     << dt / (d.Center > 0 ? 20 : 4) << (d.Center > 0 ? " uic" : "") << "\n"
                     << ".control\nset wr_singlescale\nrun\nlinearize v(out)\nwrdata "
                     << out.string() << " v(out)\n.endc\n.end\n";
  fs::remove(out);
  (void)std::system(("ngspice -b " + cir.string() + " > /dev/null 2>&1").c_str());
  std::vector<double> v;
  std::ifstream in(out);
  for (double t, x; in >> t >> x;) v.push_back(x);
  return v;
}

TEST(TimeResponse, AgreesWithNgspiceAndTheFrequencyAnalysis) {
  const bool spice = std::system("ngspice -v > /dev/null 2>&1") == 0;
  const fs::path dir = fs::temp_directory_path() / ("drenik_tran_" + std::to_string(getpid()));
  fs::create_directories(dir);
  struct Case {
    int16_t family;
    const char* topology;
    float q;
    bool parasitics = false;  // 10 pF across each inductor, 5 nH on each capacitor
    QLaw law = QLaw::Constant;
    float cq = kInfiniteQcap;
  };
  for (const Case& c :
       {Case{kBessel, "Cinlowpass", kInfiniteQind}, Case{kButterworth, "Linlowpass", kInfiniteQind},
        Case{kChebyshev, "Cinlowpass", 40}, Case{kCauer, "Cinlowpass", kInfiniteQind},
        Case{kCauer, "Linlowpass", kInfiniteQind}, Case{kChebyshev, "Cinhighpass", kInfiniteQind},
        Case{kCauer, "Linhighpass", 60}, Case{kChebyshev, "Linlowpass", 40, true},
        Case{kChebyshev, "Cinlowpass", 40, false, QLaw::Sqrt, 200},
        Case{kCauer, "Linlowpass", 40, false, QLaw::Linear}}) {
    DesignRecord d = Designed(c.family, c.topology, c.q);
    if (c.parasitics) d.WindingCapacitance = 10e-12f, d.CapacitorEsl = 5e-9f;
    d.InductorQLaw = c.law, d.CapacitorQ = c.cq;
    const std::string what =
        FamilyName(c.family) + std::string(" ") + c.topology + " " + FactsOf(c.law).word;
    TimeRequest request = RequestOf(d);
    request.points = 1001;
    const TimeResponse r = ComputeTimeResponse(request);
    ASSERT_TRUE(r.fault.empty()) << what << ": " << r.fault;
    const bool lowpass = std::string(c.topology).find("low") != std::string::npos;
    // A lossless lowpass settles at 1; a highpass jumps to 1 and settles at 0.
    EXPECT_NEAR(lowpass ? r.final : r.initial, 1, c.q < 100 ? 0.05 : 1e-4) << what;
    // (With the parasitics a lowpass's edge passes at once: the winding
    // capacitance bridges each inductor, the lead inductance opens each
    // shunt capacitor.)
    if (!c.parasitics) {
      EXPECT_NEAR(lowpass ? r.initial : r.final, 0, c.q < 100 ? 0.01 : 1e-9) << what;
    }

    // The modes' H(j w) is the frequency analysis' S21.
    const LadderModes modes = ModesOf(NetworkOf(request.ladder, d.Width), 2 * M_PI * d.Width);
    for (float f : {2e5f, 9e5f, 1e6f, 1.3e6f, 3e6f}) {
      const auto s21 = LadderSParameters(request.ladder, f).S21;
      const auto h = modes.At({0, d.TwoPi * static_cast<double>(f)});
      // Losses at the cutoff against losses at f: equal only there, and at
      // every f for the linear law, whose inductor loss is a fixed resistance.
      const bool fixed = c.law == QLaw::Linear && c.cq == kInfiniteQcap;
      const double tol = c.q < 100 && f != 1e6f && !fixed ? 0.05 : 1e-5;
      EXPECT_NEAR(std::abs(h - s21), 0, tol) << what << " at " << f;
    }

    if (!spice) continue;
    const double dt = r.t[1];
    const std::vector<double> v = Transient(d, dt, 1001, dir);
    ASSERT_GE(v.size(), 1001u) << what;
    double worst = 0;
    for (int n = 1; n < 1001; ++n) worst = std::max(worst, std::fabs(v[n] - r.step[n]));
    EXPECT_LT(worst, 0.005) << what;  // 2 V behind 50 ohm into 50 ohm: V(out) is the step
  }
  fs::remove_all(dir);
}

// Band designs through codes 5 and 8 and the centre as carrier: the
// response to the switched carrier against ngspice, within 0.5 % of its
// final envelope; a bandstop's response at its centre is finite.
TEST(TimeResponse, BandDesignsAgreeWithNgspice) {
  const bool spice = std::system("ngspice -v > /dev/null 2>&1") == 0;
  const fs::path dir = fs::temp_directory_path() / ("drenik_band_" + std::to_string(getpid()));
  fs::create_directories(dir);
  for (const char* topology : {"Cinbandpass", "Coupledbandpass", "Linbandstop"}) {
    DesignRecord d;
    d.Pi = static_cast<float>(M_PI), d.TwoPi = static_cast<float>(2 * M_PI);
    d.Rsource = d.Rload = d.Rstandard = 50;
    d.Family = kChebyshev, d.Order = 5, d.Topology = topology, d.Apass = 0.1f, d.Astop = 40;
    d.CauerType = "C", d.Width = 3e5f, d.Center = 7.15e6f, d.Qind = 150, d.Qcap = kInfiniteQcap;
    ASSERT_TRUE(DesignPrototype(d).Ok()) << topology;
    ASSERT_TRUE(Denormalize(d).Ok()) << topology;
    TimeRequest request = RequestOf(d);
    request.span = 40e-6, request.points = 20001;
    const TimeResponse r = ComputeTimeResponse(request);
    ASSERT_TRUE(r.fault.empty()) << topology << ": " << r.fault;
    EXPECT_EQ(r.unmodelled, 0) << topology;
    if (std::string(topology).find("stop") != std::string::npos) {
      for (double v : r.carrierWave) ASSERT_TRUE(std::isfinite(v) && std::fabs(v) <= 2);
      EXPECT_LT(r.final, 0.1);  // the notch at the centre
      continue;
    }
    EXPECT_NEAR(r.final, 0.58, 0.03) << topology;  // Q 150 at a 4 % bandwidth takes 4.7 dB
    if (!spice) continue;
    const std::vector<double> v = Transient(d, r.t[1], 20001, dir);
    ASSERT_GE(v.size(), 20001u) << topology;
    double worst = 0;
    for (int n = 1; n < 20001; ++n) worst = std::max(worst, std::fabs(v[n] - r.carrierWave[n]));
    EXPECT_LT(worst, 0.005 * r.final) << topology;
  }
  fs::remove_all(dir);
}

// A 7th-order Butterworth bandpass, 10.7 MHz, `width` wide (3 %), 50 ohms:
// series L-C arms and shunt tanks, laid out by hand as codes 5 and 8 would be.
LadderNetwork Bandpass(double width = 0.03) {
  const double w0 = 2 * M_PI * 10.7e6, dw = width * w0, r = 50;
  LadderNetwork net;
  net.rsource = net.rload = r;
  net.nodes = net.input = 1;
  for (int k = 1; k <= 7; ++k) {
    const double g = 2 * std::sin((2 * k - 1) * M_PI / 14);
    const int a = net.nodes;
    if (k % 2) {
      const int m = ++net.nodes, b = ++net.nodes;
      net.parts.push_back({PartKind::L, a, m, g * r / dw});
      net.parts.push_back({PartKind::C, m, b, dw / (w0 * w0 * g * r)});
    } else {
      net.parts.push_back({PartKind::C, a, 0, g / (r * dw)});
      net.parts.push_back({PartKind::L, a, 0, r * dw / (w0 * w0 * g)});
    }
  }
  net.output = net.nodes;
  return net;
}

TEST(TimeResponse, BandpassEnvelopeAndCarrierAgreeWithNgspice) {
  const LadderNetwork net = Bandpass();
  const LadderModes modes = ModesOf(net, 2 * M_PI * 10.7e6);
  ASSERT_EQ(modes.pole.size(), 14u) << modes.fault;
  const TimeResponse r = ResponseOf(modes, 10.7e6, 3e-6, 30001);
  ASSERT_TRUE(r.fault.empty()) << r.fault;
  EXPECT_NEAR(r.final, 1, 1e-9);  // a Butterworth passes its centre whole
  for (size_t n = 0; n < r.t.size(); ++n) ASSERT_LE(std::fabs(r.carrierWave[n]), r.step[n] + 1e-9);
  // The envelope's overshoot is the 7th-order lowpass step's.
  EXPECT_NEAR(r.figures.overshootPct, 14.97, 0.8);
  if (std::system("ngspice -v > /dev/null 2>&1") != 0) return;
  const fs::path dir = fs::temp_directory_path() / ("drenik_bp_" + std::to_string(getpid()));
  fs::create_directories(dir);
  std::ofstream cir(dir / "bp.cir");
  cir << "bandpass\nVGEN gen 0 SIN(0 2 10.7e6 0 0 90)\nRS gen n1 50\nRL n" << net.output
      << " 0 50\n";
  int i = 0;
  for (const NetworkPart& p : net.parts)
    cir << (p.kind == PartKind::L ? "L" : "C") << ++i << " n" << p.a << " "
        << (p.b ? "n" + std::to_string(p.b) : "0") << " " << p.value << "\n";
  cir << ".options reltol=1e-6 abstol=1e-12 vntol=1e-9\n.tran 1e-10 3e-6 0 2e-11\n.control\n"
      << "set wr_singlescale\nrun\nlinearize v(n" << net.output << ")\nwrdata "
      << (dir / "bp.txt").string() << " v(n" << net.output << ")\n.endc\n.end\n";
  cir.close();
  (void)std::system(("ngspice -b " + (dir / "bp.cir").string() + " > /dev/null 2>&1").c_str());
  std::ifstream in(dir / "bp.txt");
  double worst = 0;
  int rows = 0;
  for (double t, v; in >> t >> v; ++rows) {
    const size_t n = static_cast<size_t>(std::lround(t / 1e-10));
    if (n < r.t.size()) worst = std::max(worst, std::fabs(v - r.carrierWave[n]));
  }
  EXPECT_GT(rows, 29000);
  EXPECT_LT(worst, 0.005);
  fs::remove_all(dir);
}

// H(j w) by nodal analysis at one frequency, to check the modes against.
std::complex<double> NodalGain(const LadderNetwork& net, double w) {
  using Complex = std::complex<double>;
  Eigen::MatrixXcd Y = Eigen::MatrixXcd::Zero(net.nodes, net.nodes);
  auto stamp = [&](int a, int b, Complex y) {
    if (a) Y(a - 1, a - 1) += y;
    if (b) Y(b - 1, b - 1) += y;
    if (a && b) Y(a - 1, b - 1) -= y, Y(b - 1, a - 1) -= y;
  };
  stamp(net.input, 0, 1 / net.rsource);
  stamp(net.output, 0, 1 / net.rload);
  for (const NetworkPart& p : net.parts)
    stamp(p.a, p.b,
          p.kind == PartKind::C ? Complex(0, w * p.value) : 1.0 / Complex(0, w * p.value));
  Eigen::VectorXcd i = Eigen::VectorXcd::Zero(net.nodes);
  i(net.input - 1) = 1 / net.rsource;
  return 2.0 * Eigen::VectorXcd(Y.fullPivLu().solve(i))(net.output - 1);
}

// The narrower the band, the closer the poles crowd; in stored-energy
// coordinates they stay well conditioned down to a 0.1 % bandwidth.
TEST(LadderModes, NarrowBandpassPolesStayWellConditioned) {
  for (double width : {0.03, 0.003, 0.001}) {
    const LadderNetwork net = Bandpass(width);
    const LadderModes modes = ModesOf(net, 2 * M_PI * 10.7e6);
    ASSERT_EQ(modes.pole.size(), 14u) << width;
    for (double x : {-1.2, -0.9, -0.5, 0.0, 0.3, 0.7, 1.0, 2.0}) {
      const double w = 2 * M_PI * 10.7e6 * (1 + x * width / 2);
      EXPECT_NEAR(std::abs(modes.At({0, w}) - NodalGain(net, w)), 0, 1e-7) << width << " " << x;
    }
    // A lossless bandpass has all its poles in the left half-plane, none at 0.
    for (const auto& p : modes.pole) EXPECT_LT(p.real(), 0);
  }
}

TEST(TimeFigures, PublishedOvershootsAndBadLadders) {
  // 5th-order prototypes: Bessel 0.77 %, Butterworth 12.8 %.
  const TimeResponse bessel = ComputeTimeResponse(RequestOf(Designed(kBessel, "Cinlowpass")));
  const TimeResponse butter = ComputeTimeResponse(RequestOf(Designed(kButterworth, "Cinlowpass")));
  EXPECT_NEAR(bessel.figures.overshootPct, 0.77, 0.05);
  EXPECT_NEAR(butter.figures.overshootPct, 12.8, 0.05);
  // The figures in order, the Bessel's step slower to overshoot but quicker to settle.
  for (const TimeFigures& f : {bessel.figures, butter.figures}) {
    EXPECT_LT(f.delay50, f.peakTime);
    EXPECT_LT(f.rise1090, f.settling1pct);
    EXPECT_LT(f.settling1pct, f.settling01pct);
  }
  EXPECT_LT(bessel.figures.settling1pct, butter.figures.settling1pct);
  // The automatic span ends just past the 0.1 % settling time.
  EXPECT_NEAR(bessel.t.back(), 1.1 * bessel.figures.settling01pct, 1e-12);

  TimeRequest bad = RequestOf(Designed(kBessel, "Cinlowpass"));
  bad.ladder.rload = 0;
  EXPECT_FALSE(ComputeTimeResponse(bad).fault.empty());
  bad = RequestOf(Designed(kBessel, "Cinlowpass"));
  bad.ladder.C[1] = -1e-9;
  EXPECT_FALSE(ComputeTimeResponse(bad).fault.empty());
  bad.ladder.C[1] = NAN;
  EXPECT_FALSE(ComputeTimeResponse(bad).fault.empty());
  bad = RequestOf(Designed(kBessel, "Cinlowpass"));
  bad.points = 1;
  EXPECT_FALSE(ComputeTimeResponse(bad).fault.empty());
  bad.points = 2000;
  bad.ladder.stages = 0;  // a wire: nothing to settle
  EXPECT_FALSE(ComputeTimeResponse(bad).fault.empty());
  bad.ladder.stages = 5;
  bad.ladder.L[2] = INFINITY;
  EXPECT_FALSE(ComputeTimeResponse(bad).fault.empty());
}

}  // namespace
}  // namespace drenik
