#include "cli/cli.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <numbers>
#include <sstream>

#include "cli/json_output.h"
#include "cli/options.h"
#include "cli/run_design.h"
#include "core/formatters.h"
#include "json_reader.h"
#include "support/temp_folder.h"
#include "synthesis/families.h"

namespace drenik::testing {
namespace {

struct CliRun {
  int status;
  std::string out, err;
};

CliRun RunCli(const std::vector<std::string>& args) {
  std::ostringstream out, err;
  int status = cli::RunCommandLine(args, out, err);
  return {status, out.str(), err.str()};
}

// The words of one string as arguments.
CliRun RunLine(const std::string& line) {
  std::vector<std::string> args;
  std::istringstream words(line);
  for (std::string word; words >> word;) args.push_back(word);
  return RunCli(args);
}

Json DesignJson(const std::string& options) {
  CliRun r = RunLine("design --json " + options);
  EXPECT_EQ(r.status, 0) << r.err;
  return ParseJson(r.out);
}

TEST(Cli, BadUsageIsOneLineNamingTheOptionWithStatusTwoAndNothingWritten) {
  TempFolder folder;
  const std::string png = folder / "a.png";
  // The last three are choices the design page does not offer together.
  const std::pair<std::string, std::string> cases[] = {
      {"", "command"},
      {"frobnicate", "frobnicate"},
      {"design --order 16", "--order"},
      {"design --family elliptic", "--family"},
      {"design --ripple 3.5", "--ripple"},
      {"design --values 10%", "--values"},
      {"design --bogus", "--bogus"},
      {"design --png " + png, "--png"},
      {"render --svg " + png, "--svg"},
      {"render", "render"},
      {"export --family butterworth --ripple 0.2 --csv " + (folder / "a.csv"), "--ripple"},
      {"design --stopband 50", "--stopband"},
      {"design --family zelmar --order 3", "--order"},
      {"parts --cseries E7", "--cseries"},
      {"parts --lseries 5%", "--lseries"},
      {"parts --values 5l", "--values"},
      {"design --pairs", "--pairs"},
      {"parts --bom", "--bom"},
      // Numbers: nothing but a decimal number, an exponent and a prefix.
      {"design --bandwidth abc", "--bandwidth"},
      {"design --bandwidth 4.2meg", "--bandwidth"},
      {"design --bandwidth 0x10", "--bandwidth"},
      {"design --bandwidth 5k5", "--bandwidth"},
      {"design --bandwidth 1e3k", "--bandwidth"},
      {"design --bandwidth 4.2000000000M", "--bandwidth"},
      {"design --impedance 1.00000000000k", "--impedance"},
      {"design --impedance nan", "--impedance"},
      {"design --q INF", "--q"},
      {"design --q 1e400", "--q"},
      {"design --order 9x", "--order"},
      {"design --order 5.0", "--order"},
      {"render --size 0x1e3 --png " + png, "--size"},
      {"tolerance --trials 0x10", "--trials"},
      {"tolerance --trials 1e4", "--trials"},
      {"tolerance --seed 1e3", "--seed"},
      {"tolerance --ctol 0x1p5", "--ctol"},
      {"parts --lseries E7", "exact, E6"},
      {"export --csv " + png + " --s2p " + (folder / "./a.png"), "--s2p"},
      {"design --center 7M", "--center"},
      {"design --topology Cinbandpass", "--center"},
      {"design --topology Linbandstop --center 1M --bandwidth 2M", "--center"},
      {"design --topology Cinbandpass --center 7M --resonator-l 1u", "--resonator-l"},
      {"design --sweep 3", "--sweep"},
      {"design --topology Cinbandpass --center 7M --sweep 1", "--sweep"},
      {"design --topology Cinbandpass --f1 7M", "--f2"},
      {"design --topology Cinbandpass --f1 7M --f2 6M", "--f2"},
      {"design --topology Cinbandpass --f1 1M --f2 7M", "--f1"},
      {"design --topology Cinbandpass --f1 7M --f2 8M --center 7M", "--center"}};
  for (const auto& [line, option] : cases) {
    CliRun r = RunLine(line);
    SCOPED_TRACE(r.err);
    EXPECT_TRUE(r.status == 2 && r.out.empty());
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1);  // also fails for an empty message
    EXPECT_NE(r.err.find(option), std::string::npos);
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
  EXPECT_EQ(RunCli({"design", "--impedance", ""}).status, 2);
  EXPECT_EQ(RunLine("--version").out, "2.12\n");
  EXPECT_NE(RunLine("design --help").out.find("--bandwidth"), std::string::npos);
  // Each command's help shows its own usage and no other command's.
  for (const cli::CommandInfo& c : cli::Commands()) {
    const std::string help = RunCli({c.word, "--help"}).out;
    for (const cli::CommandInfo& other : cli::Commands())
      EXPECT_EQ(help.find("  drenik " + std::string(other.word) + " [") != std::string::npos,
                &other == &c)
          << c.word << " --help: " << help;
  }
}

// Published prototype values scaled by hand: a capacitor is g / (R w) in a
// lowpass and 1 / (g R w) in a highpass; an inductor g R / w and R / (g w).
TEST(Cli, JsonValuesAgreeWithPublishedPrototypesScaledByHand) {
  const double phi = (1 + std::sqrt(5.0)) / 2;
  struct HandDesign {
    std::string args;
    std::vector<double> g;
    double r, width, tolerance;
    std::vector<int> types;  // empty: a highpass, kinds not checked
  };
  // clang-format off
  const HandDesign designs[] = {
      {"--family butterworth --order 3 --bandwidth 1M", {1, 2, 1}, 50, 1e6, 1e-5, {4, 1, 4}},
      {"--family butterworth --order 5 --topology Linlowpass --impedance 75 --bandwidth 10M",
       {phi - 1, phi, 2, phi, phi - 1}, 75, 1e7, 1e-5, {1, 4, 1, 4, 1}},
      {"--order 5 --ripple 0.01 --bandwidth 4.2M",
       {0.7563, 1.3049, 1.5773, 1.3049, 0.7563}, 50, 4.2e6, 3e-4, {4, 1, 4, 1, 4}},
      {"--order 3 --ripple 0.2 --topology Linlowpass --impedance 600 --bandwidth 3k",
       {1.2275, 1.1525, 1.2275}, 600, 3e3, 3e-4, {1, 4, 1}},
      {"--order 5 --ripple 0.2 --topology Cinhighpass --bandwidth 1M",
       {1.3394, 1.3370, 2.1660, 1.3370, 1.3394}, 50, 1e6, 3e-4, {}},
  };
  // clang-format on
  for (const HandDesign& h : designs) {
    SCOPED_TRACE(h.args);
    Json j = DesignJson(h.args + " --values exact");
    const bool highpass = h.types.empty();
    const double w = 2 * std::numbers::pi * h.width;
    const size_t n = h.g.size();
    EXPECT_EQ(j["Stages"].AsInt(), static_cast<long>(n));
    EXPECT_NEAR(j["Omega"].AsDouble() / w, 1, 1e-6);
    for (size_t k = 1; k <= n; ++k) {
      SCOPED_TRACE(k);
      double l = j["L"].items.at(k).AsDouble(), c = j["C"].items.at(k).AsDouble(), g = h.g[k - 1];
      EXPECT_TRUE((l > 0) != (c > 0));
      double hand = l > 0 ? (highpass ? h.r / (g * w) : g * h.r / w)
                          : (highpass ? 1 / (g * h.r * w) : g / (h.r * w));
      EXPECT_NEAR((l > 0 ? l : c) / hand, 1, h.tolerance);
      EXPECT_TRUE(highpass || j["ElementType"].items.at(k).AsInt() == h.types[k - 1]);
    }
    EXPECT_EQ(j["texts"]["L"].items.size(), n);
    EXPECT_EQ(
        j["texts"]["L"].items[0].text + j["texts"]["C"].items[0].text,
        FormatInductance(j["L"].items[1].AsFloat()) + FormatCapacitance(j["C"].items[1].AsFloat()));
    EXPECT_EQ(j["texts"]["Width"].text, FormatFrequency(static_cast<float>(h.width)));
  }
}

void ExpectSame(const Json& j, float value, const std::string& name) {
  ASSERT_EQ(j.kind, Json::Kind::Number) << name;
  float back = std::strtof(j.text.c_str(), nullptr);
  EXPECT_EQ(std::memcmp(&back, &value, sizeof value), 0) << name << " " << j.text;
}

TEST(Cli, EveryJsonRealReadsBackToTheSameFloat) {
  cli::CliOptions o = cli::ParseCommandLine(
      {"design", "--order", "4", "--ripple", "0.2", "--bandwidth", "14.25M", "--q", "85"});
  cli::ConsolePlatform platform;
  auto result = cli::RunDesign(o, platform);
  const DesignRecord& d = result->chosen;
  std::ostringstream text;
  cli::WriteDesignJson(d, text);
  Json j = ParseJson(text.str());

  // Every real goes through one writer: a few scalars and the long arrays.
  for (const auto& [name, value] : {std::pair{"Apass", d.Apass},
                                    {"Omega", d.Omega},
                                    {"RloadNormalized", d.RloadNormalized},
                                    {"Qcap", d.Qcap},
                                    {"FstopNormalized", d.FstopNormalized}})
    ExpectSame(j[name], value, name);
  EXPECT_EQ(j["Qind"].AsFloat(), 85.0f);
  EXPECT_EQ(j["Topology"].text, "Cinlowpass");

  const size_t points = 1001;
  const std::tuple<const char*, const float*, size_t> arrays[] = {
      {"G", d.G.data(), kPrototypeSlots},
      {"H", d.H.data(), kPrototypeSlots},
      {"L", d.L.data(), kReportedComponentSlots},
      {"Cstd", d.Cstd.data(), kReportedComponentSlots},
      {"Freq", d.Freq.data(), points},
      {"Transmission", d.Transmission.data(), points},
      {"Delay", d.Delay.data(), points},
      {"Phase", d.Phase.data(), points}};
  for (const auto& [name, values, count] : arrays) {
    ASSERT_EQ(j[name].items.size(), count) << name;
    for (size_t i = 0; i < count; ++i) ExpectSame(j[name].items[i], values[i], name);
  }
  EXPECT_EQ(j["ElementType"].items.size(), static_cast<size_t>(kReportedComponentSlots + 1));
  // Shortest texts, JSON's own number form.
  EXPECT_EQ(cli::JsonReal(0.044f) + cli::JsonReal(1e10f) + cli::JsonReal(-0.5f), "0.0441e+10-0.5");
  EXPECT_EQ(cli::JsonReal(std::nanf("")), "null");
}

// Orders, ripples and depths beyond the design page's buttons go through its
// "Other order and ripple"; the arrays grow only for a ladder that needs it;
// a value no family takes, or this family does not, is refused by its range.
TEST(Cli, AnyOrderRippleAndDepthTheFamilyTakes) {
  Json nine = DesignJson("--order 9 --ripple 0.015 --values exact");
  EXPECT_TRUE(nine["Order"].AsInt() == 9 && nine["Stages"].AsInt() == 9);
  EXPECT_EQ(nine["Apass"].AsFloat(), 0.015f);  // kept, not snapped onto 0.01
  EXPECT_EQ(nine["L"].items.size(), size_t{kReportedComponentSlots});
  Json band = DesignJson(
      "--family legendre --order 13 --topology Coupledbandpass --center 7.15M --bandwidth 300k");
  EXPECT_EQ(band["Stages"].AsInt(), 27);
  EXPECT_TRUE(band["L"].items.size() == 28 && band["ElementType"].items.size() == 29);
  EXPECT_EQ(band["texts"]["C"].items.size(), 27u);
  const std::pair<const char*, const char*> refused[] = {
      {"design --order 99", "--order: expected an order from 2 to 15, got '99'"},
      {"design --family cauer --order 2", "--order: the cauer family takes orders 3 to 15, got 2"},
      {"design --ripple 5", "--ripple: expected a ripple from 0.001 to 3 dB, got '5'"},
      {"design --family cauer --stopband 10",
       "--stopband: expected a stopband depth from 15 to 120 dB, got '10'"},
      {"design --family legendre --ripple 0.1", "--ripple: not offered for the legendre family"},
      {"design --family zelmar --order 9", "--order: not offered for the zelmar family"},
      {"design --family cauer --order 9 --ripple 0.001 --stopband 15",
       "No Cauer ladder of order 9"}};
  for (const auto& [line, message] : refused) {
    const CliRun r = RunLine(line);
    EXPECT_TRUE(r.status == 2 && r.out.empty()) << line;
    EXPECT_NE(r.err.find(message), std::string::npos) << r.err;
  }
  TempFolder folder;
  const CliRun exported = RunLine(
      "export --family cauer --order 15 --ripple 0.05 --stopband 90 "
      "--lct " +
      (folder / "a.lct") + " --asc " + (folder / "a.asc") + " --cir " + (folder / "a.cir") +
      " --s2p " + (folder / "a.s2p"));
  EXPECT_EQ(exported.status, 0) << exported.err;
  EXPECT_NE(ReadWhole(folder / "a.cir").find("order 15"), std::string::npos);
  // The Pallis file holds 20 positions: a longer ladder writes no file at all.
  const CliRun pallis = RunLine(
      "export --family legendre --order 13 --topology Coupledbandpass "
      "--center 7.15M --bandwidth 300k --cir " +
      (folder / "b.cir") + " --lct " + (folder / "b.lct"));
  EXPECT_EQ(pallis.status, 2);
  EXPECT_EQ(pallis.err,
            "drenik: --lct: the Pallis file holds ladders of up to 20 positions; this "
            "design has 27\n");
  EXPECT_FALSE(std::filesystem::exists(folder / "b.cir"));
}

// 5c: standard capacitors, inductors as designed; 5l: both standard (which
// values are standard is the engine tests' business).
TEST(Cli, ValueStagesFollowTheDisplayPage) {
  Json exact = DesignJson("--family butterworth --values exact");
  Json c5 = DesignJson("--family butterworth");
  Json l5 = DesignJson("--family butterworth --values 5l");
  EXPECT_TRUE(c5["ValueMode"].AsInt() == 2 && l5["ValueMode"].AsInt() == 3);
  for (size_t k = 1; k <= 5; ++k) {
    SCOPED_TRACE(k);
    const auto at = [k](const Json& j, const char* name) { return j[name].items[k].AsFloat(); };
    EXPECT_EQ(at(c5, "C"), at(c5, "Cstd"));
    EXPECT_EQ(at(l5, "L"), at(l5, "Lstd"));
    EXPECT_EQ(at(c5, "L"), at(exact, "L"));
  }
  // The exact stage carries the exact sweep, not the standard one.
  EXPECT_NE(exact["Transmission"].items[800].text, c5["Transmission"].items[800].text);
}

// Read as the page reads its boxes; the session file is left alone.
TEST(Cli, ChoicesAreReadAsThePageReadsItsBoxesWithoutTheSessionFile) {
  EXPECT_EQ(DesignJson("--bandwidth 4,7k")["Width"].AsFloat(), 4700.0f);
  EXPECT_EQ(DesignJson("--q 1")["Qind"].AsFloat(), 2.0f);
  EXPECT_EQ(DesignJson("--impedance 5M")["Rsource"].AsFloat(), 1e6f);
  Json zelmar = DesignJson("--family zelmar --impedance 75");
  EXPECT_TRUE(zelmar["Order"].AsInt() == 5 && zelmar["Rload"].AsFloat() == 75.0f);

  EXPECT_EQ(DesignJson("--impedance 75000000\xC2\xB5")["Rsource"].AsFloat(), 75.0f);
  EXPECT_EQ(DesignJson("--q inf")["Qind"].AsFloat(), 1e6f);
  EXPECT_EQ(RunLine("parts --lseries EXACT --json").status, 0);
  EXPECT_NE(RunLine("tolerance --trials 2,000 --seed +7 --ctol -0")
                .out.find("capacitors +-0%, inductors +-5%, uniform; 2000 trials, seed 7"),
            std::string::npos);

  TempFolder folder;
  auto previous = std::filesystem::current_path();
  std::filesystem::current_path(folder.Path());
  const std::string line = "7,1E+10,1,.2,60,\"Linhighpass\",600,300\r\n";
  WriteWhole(folder / "Drenikfilter.dat", line);
  Json defaults = DesignJson("");
  std::filesystem::current_path(previous);
  EXPECT_EQ(ReadWhole(folder / "Drenikfilter.dat"), line);
  EXPECT_EQ(defaults["Order"].AsInt(), 5);
  EXPECT_EQ(defaults["Width"].AsFloat(), 4.2e6f);
  EXPECT_EQ(defaults["Apass"].AsFloat(), 0.044f);
}

// A value the design page clamps is used, and standard error says which.
TEST(Cli, ClampedValuesAreUsedWithANotice) {
  const std::pair<const char*, const char*> cases[] = {
      {"--bandwidth 0", "--bandwidth: the design page does not take '0'; it used 0.1 Hz instead"},
      {"--bandwidth 20G", "it used 1e+10 Hz"},
      {"--impedance -5", "--impedance: the design page does not take '-5'; it used 0.1 ohms"},
      {"--q 1", "--q: the design page does not take '1'; it used 2 instead"},
      {"--q 1e300", "it used 1e+10 instead"}};
  for (const auto& [options, notice] : cases) {
    const CliRun r = RunLine(std::string("design ") + options);
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.err.find(notice), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1);
  }
  EXPECT_EQ(RunLine("design --bandwidth 4,7k --q 300 --impedance 75").err, "");
}

// The table lists every position and the terminations; export writes the
// files asked for and reports a failure.
TEST(Cli, TableAndExportOutputs) {
  CliRun r = RunLine("design --family butterworth --order 3");
  EXPECT_EQ(r.status, 0) << r.err;
  for (const char* text : {"Butterworth, order 3, Cinlowpass", "Cutoff (3 dB)",
                           "Rsource: 50 ohms, Rload: 50 ohms", "  2  series L", "  3  shunt C"})
    EXPECT_NE(r.out.find(text), std::string::npos) << text;
  // With --values exact the exact column is the only one.
  r = RunLine("design --family butterworth --order 3 --values exact");
  EXPECT_TRUE(r.out.find("C exact\n  1  shunt C") != std::string::npos &&
              r.out.find("dB (exact)\n") != std::string::npos)
      << r.out;

  // The passband and stopband figures of each stage are the parts table's,
  // for every family (an octave from the cutoff without a stopband edge).
  for (const char* design : {"--family cauer --order 7 --topology Linhighpass", "--order 3"}) {
    const std::string table = RunLine(std::string("design ") + design).out;
    const Json figures = ParseJson(RunLine(std::string("parts --json ") + design).out)["figures"];
    for (const auto& [row, stage] : {std::pair{"\n  exact ", "exact"}, {"\n  5% C ", "standard"}}) {
      const size_t at = table.find(row);
      ASSERT_NE(at, std::string::npos) << table;
      const std::string line = table.substr(at + 1, table.find('\n', at + 1) - at - 1);
      char rl[32], stop[32];
      std::snprintf(rl, sizeof rl, " %.2f ", figures[stage]["returnLoss"].AsDouble());
      std::snprintf(stop, sizeof stop, " %.2f", figures[stage]["stopband"].AsDouble());
      EXPECT_TRUE(line.find(rl) != std::string::npos && line.ends_with(stop)) << line << stop;
    }
  }

  TempFolder folder;
  r = RunCli({"export", "--csv", folder / "sweep.csv", "--cir", folder / "f.cir"});
  EXPECT_EQ(r.status, 0) << r.err;
  for (const char* name : {"sweep.csv", "f.cir"})
    EXPECT_GT(std::filesystem::file_size(folder / name), 0u);
  r = RunCli({"export", "--csv", folder / "missing/sweep.csv"});
  EXPECT_TRUE(r.status == 1 && r.err.find("sweep.csv") != std::string::npos) << r.err;
}

TEST(Cli, RenderWritesThePageInTheFormatAsked) {
#if !DRENIK_WITH_QT
  GTEST_SKIP() << "rendering needs the Qt build";
#endif
  TempFolder folder;
  CliRun r = RunCli({"render", "--svg", folder / "page.svg", "--size", "800x600"});
  ASSERT_EQ(r.status, 0) << r.err;
  std::string text = ReadWhole(folder / "page.svg");
  EXPECT_TRUE(text.find("<svg") != std::string::npos &&
              text.find("Cursor on plot") != std::string::npos && r.err.empty());
  r = RunCli({"render", "--pdf", folder / "page.pdf", "--size", "800x600"});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.err, "drenik: --size: no effect on a PDF, which is one printed page\n");
}

TEST(Cli, CauerDesignsInEveryTopology) {
  // An even order ends with a load below the source; every part is positive.
  for (const char* topology : {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"}) {
    SCOPED_TRACE(topology);
    Json j =
        DesignJson(std::string("--family cauer --order 6 --stopband 50 --topology ") + topology);
    EXPECT_EQ(j["CauerFlag"].AsInt(), 1);
    EXPECT_TRUE(j["FstopNormalized"].AsFloat() > 1 && j["RloadNormalized"].AsFloat() < 1);
    for (int k = 1; k <= 6; ++k) {
      float l = j["L"].items[k].AsFloat(), c = j["C"].items[k].AsFloat();
      EXPECT_TRUE(l >= 0 && c >= 0 && l + c > 0) << k;
    }
  }
}

// A band design names its centre and both edges; the coupled form takes its
// resonator inductance as typed, and says what to change when it has no
// positive design.
TEST(Cli, BandDesignsNameTheirBand) {
  Json j = DesignJson("--topology Cinbandpass --order 5 --center 7.15M --bandwidth 300k");
  const double f0 = j["Center"].AsFloat(), f1 = j["F1"].AsFloat(), f2 = j["F2"].AsFloat();
  EXPECT_FLOAT_EQ(static_cast<float>(f0), 7.15e6f);
  EXPECT_NEAR(f2 - f1, 3e5, 1);
  EXPECT_NEAR(std::sqrt(f1 * f2), f0, 1);
  EXPECT_EQ(j["ElementType"].items[1].AsInt(), 8);
  EXPECT_EQ(j["ElementType"].items[2].AsInt(), 5);
  EXPECT_FALSE(DesignJson("").fields.contains("Center"));

  j = DesignJson(
      "--topology Coupledbandpass --center 7.15M --bandwidth 300k --resonator-l 1u --values exact");
  EXPECT_EQ(j["Stages"].AsInt(), 11);
  EXPECT_FLOAT_EQ(j["L"].items[2].AsFloat(), 1e-6f);
  CliRun r = RunLine(
      "design --topology Coupledbandpass --center 7.15M --bandwidth 300k "
      "--resonator-l 1m");
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.err.find("smaller resonator inductance"), std::string::npos) << r.err;
  r = RunLine("design --topology Linbandstop --center 7.15M --bandwidth 300k");
  EXPECT_NE(r.out.find("Band (ripple): f1 7.0016MHz to f2 7.3016MHz"), std::string::npos) << r.out;
  // By its edges; swept from a third of the centre to three times it.
  j = DesignJson("--topology Cinbandpass --f1 7M --f2 7.3M --sweep 3");
  EXPECT_FLOAT_EQ(j["Center"].AsFloat(), float(std::sqrt(7e6 * 7.3e6)));
  EXPECT_FLOAT_EQ(j["F2"].AsFloat() - j["F1"].AsFloat(), 3e5f);
  EXPECT_FLOAT_EQ(j["Fstop"].AsFloat(), float(j["Center"].AsFloat() * 3));
}

// The chosen-parts stage of the 7th-order 0.2 dB Chebyshev, whose 5% C stage
// loses half its return loss: effective values, parts, sweep and figures
// agree with each other, and the parts list names every part.
TEST(Cli, PartsJsonTableAndPartsList) {
  TempFolder folder;
  const std::string bom = folder / "parts.csv";
  CliRun r = RunLine("parts --order 7 --ripple 0.2 --pairs --json --bom " + bom);
  ASSERT_EQ(r.status, 0) << r.err;
  const Json j = ParseJson(r.out);
  ASSERT_EQ(j["L"].items.size(), size_t{kReportedComponentSlots});
  ASSERT_EQ(j["parts"].items.size(), 7u);
  size_t parts = 0;
  for (const Json& p : j["parts"].items) {
    const long k = p["position"].AsInt();
    double c = 0;
    for (const Json& part : p["C"].items) c += part.AsDouble();
    EXPECT_NEAR(c, j["C"].items.at(k).AsDouble(), c * 1e-6) << k;
    ASSERT_EQ(p["L"].items.size(), j["L"].items.at(k).AsDouble() > 0 ? 1u : 0u) << k;
    for (const Json& l : p["L"].items) EXPECT_EQ(l.AsFloat(), j["L"].items.at(k).AsFloat());
    parts += p["C"].items.size() + p["L"].items.size();
  }
  const Json& f = j["figures"];
  const double chosen = f["chosen"]["returnLoss"].AsDouble();
  EXPECT_LT(f["standard"]["returnLoss"].AsDouble(), 7);
  EXPECT_GT(chosen, f["exact"]["returnLoss"].AsDouble() - 1);
  // The sweep is the chosen set's: its worst passband reflection is the figure.
  ASSERT_EQ(j["Freq"].items.size(), 1001u);
  double worst = 1e9;
  for (size_t i = 0; i <= 500; ++i) worst = std::min(worst, -j["Reflection"].items[i].AsDouble());
  EXPECT_NEAR(worst, chosen, 1e-6);
  EXPECT_EQ(j["keptStandard"].text, "false");

  std::istringstream list(ReadWhole(bom));
  std::string line;
  size_t listed = 0;
  for (std::getline(list, line); std::getline(list, line);)
    listed += std::stoul(line.substr(line.rfind(',') + 1));
  EXPECT_EQ(listed, parts);

  r = RunLine("parts --family cauer --cseries E96 --lseries E12");
  EXPECT_TRUE(r.status == 0 && r.out.find("capacitors E96, inductors E12") != std::string::npos);
  for (const char* row : {"Exact values", "5% C values", "Nearest values", "Chosen parts"})
    EXPECT_NE(r.out.find(row), std::string::npos) << row;
  // E6 parts give stopband away: 'parts' says so under its figures, the
  // other commands name it.
  const std::string lost = "E6 capacitors and E6 inductors cannot keep both";
  EXPECT_NE(RunLine("parts --cseries E6 --lseries E6").out.find("\n" + lost), std::string::npos);
  r = RunLine("design --values chosen --cseries E6 --lseries E6");
  EXPECT_TRUE(r.status == 0 && r.err.starts_with("drenik: " + lost)) << r.err;
  r = RunLine("parts --bom " + folder / "missing/parts.csv");
  EXPECT_TRUE(r.status == 1 && r.err.find("missing/parts.csv") != std::string::npos);
  EXPECT_NE(RunLine("parts --help").out.find("--cseries E6|E12|E24|E48|E96"), std::string::npos);
}

// The README's usage block is the program's own, line for line.
TEST(Cli, ReadmeShowsTheUsageLinesAsTheProgramPrintsThem) {
  const std::string usage = cli::UsageText();
  const std::string readme = ReadWhole(DRENIK_SOURCE_DIR "/README.md");
  std::string block;
  for (size_t at = usage.find("\n  drenik"); at != std::string::npos;
       at = usage.find("\n  ", at + 1)) {
    const size_t end = usage.find('\n', at + 1);
    const std::string line = usage.substr(at + 1, end - at - 1);
    if (line.rfind("  --", 0) == 0) break;  // the choices follow the commands
    block += "  " + line + "\n";
  }
  EXPECT_NE(block.find("drenik --help | --version"), std::string::npos) << usage;
  EXPECT_NE(readme.find(block), std::string::npos) << block;
}

// The README's family table gives each family of the program's table what
// it takes.
TEST(Cli, ReadmeFamilyTableSaysWhatEachFamilyTakes) {
  const std::string readme = ReadWhole(DRENIK_SOURCE_DIR "/README.md");
  auto range = [](const char* what, const ChoiceRange& r) {
    char text[64];
    std::snprintf(text, sizeof text, ", %s %g..%g dB", what, r.low, r.high);
    return r.Offered() ? std::string(text) : "";
  };
  for (const FamilyInfo& f : Families()) {
    const size_t row = readme.find("\n| " + std::string(f.name));
    ASSERT_NE(row, std::string::npos) << f.name;
    const std::string line = readme.substr(row + 1, readme.find('\n', row + 1) - row - 1);
    const std::string orders =
        f.minOrder == f.maxOrder
            ? "order " + std::to_string(f.minOrder) + " only"
            : "orders " + std::to_string(f.minOrder) + ".." + std::to_string(f.maxOrder);
    EXPECT_NE(line.find("| " + orders + range("ripple", f.ripple) + range("depth", f.depth) + " |"),
              std::string::npos)
        << line;
  }
}

}  // namespace
}  // namespace drenik::testing
