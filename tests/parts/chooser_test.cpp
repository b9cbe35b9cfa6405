// The stock-part chooser over designs of every topology: buyable values,
// never worse than the 5% C stage, the stopband kept, and figures that the
// display page's analysis and ngspice both confirm.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <filesystem>
#include <fstream>

#include "analysis/sweep.h"
#include "core/last_session.h"
#include "export/writers.h"
#include "parts/chooser.h"
#include "parts/series_values.h"
#include "support/temp_folder.h"
#include "synthesis/denormalize.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik::testing {
namespace {

constexpr const char* kTopologies[] = {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"};

// A design as the display page holds it after its load: the exact values
// and the page's sweep settings.
DesignRecord Displayed(int16_t family, int order, const char* topology, float ripple = 0.044f,
                       float width = 4.2e6f, float center = 0) {
  DesignRecord d;
  SetLastSessionDefaults(d);
  d.Pi = static_cast<float>(4 * std::atan(1.0));
  d.TwoPi = static_cast<float>(8 * std::atan(1.0));
  d.Family = family;
  d.Order = static_cast<int16_t>(order);
  d.Topology = topology;
  d.Apass = ripple;
  d.CauerFlag = family == kCauer || family == kZelmar;
  d.CauerType = "C";
  d.Rload = d.Rstandard = 50;
  d.Width = width;
  d.Center = center;
  const double k = center > 0 ? BandSweepFactor(center, width) : 0;
  d.Fstart = center > 0 ? static_cast<float>(center / k) : width * 0.2f;
  d.Fstop = center > 0 ? static_cast<float>(center * k) : width * 5;
  d.NrIntervals = 1000;
  EXPECT_TRUE(DesignPrototype(d).Ok() && Denormalize(d).Ok());
  return d;
}

// Every part from its series, each position's value the sum of its parts.
void ExpectBuyable(const PartsChoice& c) {
  for (const PositionParts& p : c.positions) {
    SCOPED_TRACE(p.position);
    double sum = 0;
    for (double part : p.capacitors) {
      EXPECT_TRUE(InSeries(c.request.capacitors, part)) << part;
      sum += part;
    }
    // A kept 5% C stage holds its own floats, built up decade by decade.
    EXPECT_NEAR(p.C, sum, sum * 1e-6);
    EXPECT_LE(p.capacitors.size(), c.request.pairs ? 2u : 1u);
    EXPECT_TRUE(!c.request.inductors || p.inductor == 0 || InSeries(*c.request.inductors, p.L));
    EXPECT_EQ(p.L, static_cast<float>(p.inductor));
  }
}

TEST(Chooser, KeepsTheResponseBetterThanTheFivePercentStageInEveryTopology) {
  double gain = 0;
  int gains = 0;
  for (const char* topology : kTopologies) {
    struct Design {
      int16_t family;
      int order;
      float ripple;
    };
    // Chebyshev and Cauer at the orders where rounding costs most; the
    // 3 dB families and the fixed Zelmar design only for the rules, as their
    // worst return loss is the cutoff's 3 dB, not a design figure.
    std::vector<Design> designs = {{kButterworth, 5, 0}, {kBessel, 7, 0}, {kZelmar, 5, 0}};
    for (int16_t family : {kChebyshev, kCauer})
      for (int order : {6, 7})
        for (float ripple : {0.044f, 0.2f}) designs.push_back({family, order, ripple});
    for (const Design& x : designs) {
      SCOPED_TRACE(::testing::Message() << topology << " family " << x.family << " order "
                                        << x.order << " ripple " << x.ripple);
      const DesignRecord d = Displayed(x.family, x.order, topology, x.ripple ? x.ripple : 0.044f);
      PartsChoice single, paired;
      ASSERT_TRUE(ChooseParts(d, {}, single).Ok());
      ASSERT_TRUE(ChooseParts(d, {ESeries::E24, std::nullopt, true}, paired).Ok());
      for (const PartsChoice* c : {&single, &paired}) {
        ExpectBuyable(*c);
        EXPECT_GE(c->chosen.stopband, c->exact.stopband - 1 - 1e-6);
        EXPECT_GE(c->chosen.returnLoss, c->standard.returnLoss);
      }
      EXPECT_GE(paired.chosen.returnLoss, paired.exact.returnLoss - 1);
      if (x.ripple > 0) {
        gain += single.chosen.returnLoss - single.standard.returnLoss;
        ++gains;
      }
    }
  }
  EXPECT_GE(gain / gains, 2.0);

  // A 600-ohm highpass where the search's best set once matched worse than
  // the 5% C stage (23.16 dB).
  DesignRecord d = Displayed(kChebyshev, 5, "Linhighpass", 0.01f, 14.3e6f);
  d.Rsource = d.Rload = d.Rstandard = 600;
  ASSERT_TRUE(DesignPrototype(d).Ok() && Denormalize(d).Ok());
  PartsChoice c;
  ASSERT_TRUE(ChooseParts(d, {}, c).Ok());
  EXPECT_NEAR(c.standard.returnLoss, 23.16, 0.005);
  EXPECT_GE(c.chosen.returnLoss, c.standard.returnLoss);
}

// Plain rounding (each capacitor to its nearest series value, each inductor
// to its nearest whole turn) is the least the chooser hands back, over the
// rows of the family and topology tables with the cores most wound for HF
// (band designs of order 3: their ladders are twice as long), and for the
// 20 m harmonic filter whose chosen parts once matched at 5.7 dB against
// rounding's 13.7 dB. Where it gives stopband away for that, and only
// there, it says so and what would help.
TEST(Chooser, NeverMatchesWorseThanPlainRounding) {
  struct Case {
    DesignRecord d;
    PartsRequest request;
    double rounded = 0;  // the nearest values' return loss, dB, where known
  };
  const char* cores[] = {"T37-2", "T50-2", "T50-6", "T68-2"};
  std::vector<Case> cases;
  size_t family = 0;
  for (const TopologyInfo& t : Topologies()) {
    while (t.resonatorL && kFamilies[family % std::size(kFamilies)].resonantArms) ++family;
    const FamilyInfo& f = kFamilies[family % std::size(kFamilies)];
    const size_t k = cases.size();
    cases.push_back({Displayed(f.code, t.band ? 3 : 5, t.name, 0.044f, t.band ? 2e6f : 7.2e6f,
                               t.band ? 1e7f : 0),
                     {k % 2 ? ESeries::E24 : ESeries::E12, std::nullopt, false,
                      CoreNamed(cores[k % std::size(cores)])}});
    ++family;
  }
  DesignRecord cauer = Displayed(kCauer, 7, "Cinlowpass", 0.044f, 14.35e6f);
  cauer.Astop = 50;
  ASSERT_TRUE(DesignPrototype(cauer).Ok() && Denormalize(cauer).Ok());
  cases.push_back({cauer, {ESeries::E12, std::nullopt, false, CoreNamed("T50-6")}, 13.72});
  for (const Case& x : cases) {
    SCOPED_TRACE(::testing::Message()
                 << x.d.Topology << " family " << x.d.Family << " "
                 << InfoOf(x.request.capacitors).name << " " << x.request.former->Name());
    PartsChoice c;
    ASSERT_TRUE(ChooseParts(x.d, x.request, c).Ok());
    ExpectBuyable(c);
    for (const PositionParts& p : c.positions)
      EXPECT_TRUE(p.inductor == 0 || p.inductor == TurnsInductance(*x.request.former, p.turns));
    EXPECT_GE(c.chosen.returnLoss, c.rounded.returnLoss);
    const bool lost = c.chosen.stopband < c.exact.stopband - 1;
    EXPECT_EQ(c.note.empty(), !lost) << c.note;
    if (x.rounded > 0) {
      EXPECT_NEAR(c.rounded.returnLoss, x.rounded, 0.005);
      EXPECT_TRUE(
          c.note.ends_with("two capacitors in parallel, E24 capacitors or a core with a "
                           "smaller AL (T37-6) would help."))
          << c.note;
    }
  }
}

TEST(Chooser, OtherSeriesGiveTheirOwnValuesAndTheFiguresAreTheDisplayAnalysis) {
  const DesignRecord d = Displayed(kCauer, 5, "Linhighpass", 0.2f, 10.7e6f);
  for (const PartsRequest& request : {PartsRequest{ESeries::E6, ESeries::E12, false},
                                      PartsRequest{ESeries::E96, ESeries::E96, true},
                                      PartsRequest{ESeries::E48, std::nullopt, true}}) {
    PartsChoice c;
    ASSERT_TRUE(ChooseParts(d, request, c).Ok());
    ExpectBuyable(c);
    EXPECT_FALSE(c.keptStandard);
    // The figures are those of the display page's sweep of the chosen values.
    DesignRecord analysed = d;
    ApplyParts(c, analysed);
    ASSERT_TRUE(AnalyzeSweep(analysed).Ok());
    const Figures f = FiguresOf(analysed, BandsOf(analysed));
    EXPECT_EQ(f.returnLoss, c.chosen.returnLoss);
    EXPECT_EQ(f.stopband, c.chosen.stopband);
  }
  // E96 capacitors and inductors come within a fraction of a dB; the
  // progress told on the way rises to 1 and ends there.
  PartsChoice fine;
  std::vector<double> shares;
  ASSERT_TRUE(ChooseParts(d, {ESeries::E96, ESeries::E96, false}, fine, [&](double share) {
                shares.push_back(share);
              }).Ok());
  EXPECT_TRUE(shares.size() > 2 && std::is_sorted(shares.begin(), shares.end()) &&
              shares.front() >= 0 && shares.back() == 1);
  EXPECT_GT(fine.chosen.returnLoss, fine.exact.returnLoss - 0.5);

  DesignRecord broken = d;
  broken.Stages = kMaxPositions + 1;
  PartsChoice none;
  EXPECT_FALSE(ChooseParts(broken, {}, none).Ok());
  broken = d;
  broken.Rload = 0;
  EXPECT_FALSE(ChooseParts(broken, {}, none).Ok());
}

// ngspice on the chosen values of the default design: its transmission gives
// the same worst return loss (the ladder is lossless: |S11|² = 1 - |S21|²)
// and stopband attenuation as the chooser reports.
TEST(Chooser, NgspiceConfirmsTheChosenFigures) {
  if (std::system("ngspice -v > /dev/null 2>&1") != 0) GTEST_SKIP() << "ngspice not installed";
  TempFolder folder;
  for (const char* topology : {"Cinlowpass", "Linhighpass"}) {
    DesignRecord d = Displayed(kChebyshev, 5, topology);
    PartsChoice c;
    ASSERT_TRUE(ChooseParts(d, {}, c).Ok());
    ApplyParts(c, d);
    ASSERT_TRUE(AnalyzeSweep(d).Ok());
    const std::string net = SpiceNetlistText(d);
    const std::string cir = folder / "chosen.cir", out = folder / "vout.txt";
    std::ofstream(cir) << net.substr(0, net.rfind(".end")) << ".control\nset wr_singlescale\nrun\n"
                       << "wrdata " << out << " v(out)\n.endc\n.end\n";
    (void)std::system(("ngspice -b " + cir + " > /dev/null 2>&1").c_str());
    const Bands bands = BandsOf(d);
    Figures spice{1e9, 1e9};
    std::ifstream in(out);
    int points = 0;
    for (double f, re, im; in >> f >> re >> im; ++points) {
      // 2 V behind Rsource: |S21|² = (Rsource / Rload) |V(out)|².
      const double s21 = std::norm(std::complex<double>(re, im)) * d.Rsource / d.Rload;
      if (InPassband(bands, f))
        spice.returnLoss = std::min(spice.returnLoss, -10 * std::log10(1 - s21));
      if (InStopband(bands, f)) spice.stopband = std::min(spice.stopband, -10 * std::log10(s21));
    }
    ASSERT_GT(points, 100) << topology;
    EXPECT_NEAR(spice.returnLoss, c.chosen.returnLoss, 0.2) << topology;
    EXPECT_NEAR(spice.stopband, c.chosen.stopband, 0.1) << topology;
  }
}

}  // namespace
}  // namespace drenik::testing
