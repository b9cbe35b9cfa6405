#include "cli/cli.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <sstream>

#include "cli/json_output.h"
#include "cli/run_design.h"
#include "core/formatters.h"
#include "json_reader.h"

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

Json DesignJson(std::vector<std::string> args) {
  args.insert(args.begin(), "design");
  args.push_back("--json");
  CliRun r = RunCli(args);
  EXPECT_EQ(r.status, 0) << r.err;
  return ParseJson(r.out);
}

class TempFolder {
 public:
  TempFolder() {
    path_ = std::filesystem::temp_directory_path() /
            ("drenik_cli_" +
             std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  std::string File(const std::string& name) const { return (path_ / name).string(); }
  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

TEST(Cli, BadUsageIsOneLineNamingTheOptionWithStatusTwoAndNothingWritten) {
  TempFolder folder;
  std::string csv = folder.File("sweep.csv");
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{}, "command"},
      {{"frobnicate"}, "frobnicate"},
      {{"design", "--order", "9"}, "--order"},
      {{"design", "--order"}, "--order"},
      {{"design", "--family", "elliptic"}, "--family"},
      {{"design", "--ripple", "0.1"}, "--ripple"},
      {{"design", "--stopband", "45"}, "--stopband"},
      {{"design", "--topology", "bandpass"}, "--topology"},
      {{"design", "--values", "10%"}, "--values"},
      {{"design", "--bogus"}, "--bogus"},
      {{"design", "--png", folder.File("a.png")}, "--png"},
      {{"render", "--svg", folder.File("a.png")}, "--svg"},
      {{"render", "--png", folder.File("a.png"), "--size", "big"}, "--size"},
      {{"render"}, "render"},
      {{"export"}, "export"},
      {{"export", "--family", "elliptic", "--csv", csv}, "--family"},
      // Choices the design page does not offer with the other choices.
      {{"export", "--family", "butterworth", "--ripple", "0.2", "--csv", csv}, "--ripple"},
      {{"design", "--stopband", "50"}, "--stopband"},
      {{"design", "--family", "zelmar", "--order", "3"}, "--order"},
  };
  for (const auto& [args, option] : cases) {
    CliRun r = RunCli(args);
    SCOPED_TRACE(r.err);
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(r.out.empty());
    ASSERT_FALSE(r.err.empty());
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1);
    EXPECT_NE(r.err.find(option), std::string::npos);
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(Cli, VersionAndHelp) {
  CliRun v = RunCli({"--version"});
  EXPECT_EQ(v.status, 0);
  EXPECT_EQ(v.out, "2.12\n");
  CliRun h = RunCli({"design", "--help"});
  EXPECT_EQ(h.status, 0);
  EXPECT_NE(h.out.find("--bandwidth"), std::string::npos);
}

// Published prototype values scaled by hand: a shunt or series capacitor
// is g / (R w) in a lowpass and 1 / (g R w) in a highpass; an inductor is
// g R / w and R / (g w).
struct HandDesign {
  std::vector<std::string> args;
  std::vector<double> g;
  double r, width, tolerance;
  bool highpass;
  std::vector<int> types;  // expected element kinds, empty: not checked
};

TEST(Cli, JsonValuesAgreeWithPublishedPrototypesScaledByHand) {
  const double phi = (1 + std::sqrt(5.0)) / 2;
  const HandDesign designs[] = {
      {{"--family", "butterworth", "--order", "3", "--bandwidth", "1M"},
       {1, 2, 1},
       50,
       1e6,
       1e-5,
       false,
       {4, 1, 4}},
      {{"--family", "butterworth", "--order", "5", "--topology", "Linlowpass", "--impedance", "75",
        "--bandwidth", "10M"},
       {phi - 1, phi, 2, phi, phi - 1},
       75,
       1e7,
       1e-5,
       false,
       {1, 4, 1, 4, 1}},
      {{"--order", "5", "--ripple", "0.01", "--bandwidth", "4.2M"},
       {0.7563, 1.3049, 1.5773, 1.3049, 0.7563},
       50,
       4.2e6,
       3e-4,
       false,
       {4, 1, 4, 1, 4}},
      {{"--order", "3", "--ripple", "0.2", "--topology", "Linlowpass", "--impedance", "600",
        "--bandwidth", "3k"},
       {1.2275, 1.1525, 1.2275},
       600,
       3e3,
       3e-4,
       false,
       {1, 4, 1}},
      {{"--order", "5", "--ripple", "0.2", "--topology", "Cinhighpass", "--bandwidth", "1M"},
       {1.3394, 1.3370, 2.1660, 1.3370, 1.3394},
       50,
       1e6,
       3e-4,
       true,
       {}},
  };
  for (const HandDesign& h : designs) {
    std::vector<std::string> args = h.args;
    args.insert(args.end(), {"--values", "exact"});
    Json j = DesignJson(args);
    SCOPED_TRACE(h.args[1] + " " + h.args[3]);
    const double w = 2 * std::numbers::pi * h.width;
    const size_t n = h.g.size();
    EXPECT_EQ(j["Stages"].AsInt(), static_cast<long>(n));
    EXPECT_EQ(j["ValueMode"].AsInt(), 1);
    EXPECT_FLOAT_EQ(j["Width"].AsFloat(), static_cast<float>(h.width));
    EXPECT_NEAR(j["Omega"].AsDouble() / w, 1, 1e-6);
    EXPECT_FLOAT_EQ(j["Rsource"].AsFloat(), static_cast<float>(h.r));
    for (size_t k = 1; k <= n; ++k) {
      SCOPED_TRACE(k);
      double l = j["L"].items.at(k).AsDouble();
      double c = j["C"].items.at(k).AsDouble();
      double g = h.g[k - 1];
      EXPECT_TRUE((l > 0) != (c > 0));
      if (l > 0) {
        EXPECT_NEAR(l / (h.highpass ? h.r / (g * w) : g * h.r / w), 1, h.tolerance);
      }
      if (c > 0) {
        EXPECT_NEAR(c / (h.highpass ? 1 / (g * h.r * w) : g / (h.r * w)), 1, h.tolerance);
      }
      if (!h.types.empty()) {
        EXPECT_EQ(j["ElementType"].items.at(k).AsInt(), h.types[k - 1]);
      }
      EXPECT_EQ(j["texts"]["L"].items.at(k - 1).text, FormatInductance(static_cast<float>(l)));
      EXPECT_EQ(j["texts"]["C"].items.at(k - 1).text, FormatCapacitance(static_cast<float>(c)));
    }
    EXPECT_EQ(j["texts"]["L"].items.size(), n);
    EXPECT_EQ(j["texts"]["Width"].text, FormatFrequency(static_cast<float>(h.width)));
    EXPECT_EQ(j["texts"]["Rsource"].text, FormatValue(static_cast<float>(h.r)));
  }
}

void ExpectSame(const Json& j, float value, const std::string& name) {
  ASSERT_EQ(j.kind, Json::Kind::Number) << name;
  float back = std::strtof(j.text.c_str(), nullptr);
  EXPECT_EQ(std::memcmp(&back, &value, sizeof value), 0) << name << " " << j.text;
}

// Every real of the JSON text reads back to the record's own float.
TEST(Cli, EveryJsonRealReadsBackToTheSameFloat) {
  cli::CliOptions o = cli::ParseCommandLine(
      {"design", "--order", "4", "--ripple", "0.2", "--bandwidth", "14.25M", "--q", "85"});
  cli::ConsolePlatform platform;
  auto result = cli::RunDesign(o, platform);
  const DesignRecord& d = result->chosen;
  std::ostringstream text;
  cli::WriteDesignJson(d, text);
  Json j = ParseJson(text.str());

  const std::pair<const char*, float> scalars[] = {{"Apass", d.Apass},
                                                   {"Astop", d.Astop},
                                                   {"Width", d.Width},
                                                   {"Omega", d.Omega},
                                                   {"Rsource", d.Rsource},
                                                   {"Rload", d.Rload},
                                                   {"Rstandard", d.Rstandard},
                                                   {"Qind", d.Qind},
                                                   {"Qcap", d.Qcap},
                                                   {"RloadNormalized", d.RloadNormalized},
                                                   {"FstopNormalized", d.FstopNormalized},
                                                   {"StopbandEdge", d.StopbandEdge},
                                                   {"Fstart", d.Fstart},
                                                   {"Fstop", d.Fstop},
                                                   {"MaxDelay", d.MaxDelay}};
  for (const auto& [name, value] : scalars) ExpectSame(j[name], value, name);
  EXPECT_EQ(j["Qind"].AsFloat(), 85.0f);
  EXPECT_EQ(j["Topology"].text, "Cinlowpass");
  EXPECT_EQ(j["Order"].AsInt(), 4);

  auto arrays = [&](const char* name, const float* values, size_t count) {
    ASSERT_EQ(j[name].items.size(), count) << name;
    for (size_t i = 0; i < count; ++i) ExpectSame(j[name].items[i], values[i], name);
  };
  arrays("G", d.G.data(), kPrototypeSlots);
  arrays("H", d.H.data(), kPrototypeSlots);
  arrays("L", d.L.data(), kComponentSlots);
  arrays("Cstd", d.Cstd.data(), kComponentSlots);
  size_t points = static_cast<size_t>(d.NrIntervals) + 1;
  EXPECT_EQ(points, 1001u);
  arrays("Freq", d.Freq.data(), points);
  arrays("Transmission", d.Transmission.data(), points);
  arrays("Delay", d.Delay.data(), points);
  arrays("Phase", d.Phase.data(), points);
  EXPECT_EQ(j["ElementType"].items.size(), static_cast<size_t>(kPrototypeSlots));

  // Shortest texts, JSON's own number form.
  EXPECT_EQ(cli::JsonReal(0.044f), "0.044");
  EXPECT_EQ(cli::JsonReal(1e10f), "1e+10");
  EXPECT_EQ(cli::JsonReal(-0.5f), "-0.5");
  EXPECT_EQ(cli::JsonReal(std::nanf("")), "null");
}

bool IsE24(float v) {
  static const double kE24[] = {1.0, 1.1, 1.2, 1.3, 1.5, 1.6, 1.8, 2.0, 2.2, 2.4, 2.7, 3.0,
                                3.3, 3.6, 3.9, 4.3, 4.7, 5.1, 5.6, 6.2, 6.8, 7.5, 8.2, 9.1};
  double m = v / std::pow(10.0, std::floor(std::log10(v) + 1e-9));
  for (double e : kE24) {
    if (std::fabs(m / e - 1) < 1e-5) return true;
  }
  return false;
}

// 5c: standard capacitors, inductors as designed; 5l: both standard.
TEST(Cli, ValueStagesFollowTheDisplayPage) {
  Json exact = DesignJson({"--family", "butterworth", "--values", "exact"});
  Json c5 = DesignJson({"--family", "butterworth"});
  Json l5 = DesignJson({"--family", "butterworth", "--values", "5l"});
  EXPECT_EQ(c5["ValueMode"].AsInt(), 2);
  EXPECT_EQ(l5["ValueMode"].AsInt(), 3);
  for (size_t k = 1; k <= 5; ++k) {
    float c = c5["C"].items[k].AsFloat();
    float l = l5["L"].items[k].AsFloat();
    if (c > 0) {
      EXPECT_TRUE(IsE24(c)) << c;
    }
    if (c > 0) {
      EXPECT_EQ(c5["Cstd"].items[k].AsFloat(), c);
    }
    if (exact["C"].items[k].AsFloat() == 0) {
      EXPECT_EQ(c5["L"].items[k].AsFloat(), exact["L"].items[k].AsFloat());
    }
    if (l > 0) {
      EXPECT_TRUE(IsE24(l)) << l;
    }
  }
  // The exact stage carries the exact sweep, not the standard one.
  EXPECT_NE(exact["Transmission"].items[800].text, c5["Transmission"].items[800].text);
}

TEST(Cli, ChoicesAreReadAsThePageReadsItsBoxes) {
  EXPECT_EQ(DesignJson({"--bandwidth", "4,7k"})["Width"].AsFloat(), 4700.0f);
  EXPECT_EQ(DesignJson({"--q", "1"})["Qind"].AsFloat(), 2.0f);
  EXPECT_EQ(DesignJson({"--impedance", "5M"})["Rsource"].AsFloat(), 1e6f);
  Json zelmar = DesignJson({"--family", "zelmar", "--impedance", "75"});
  EXPECT_EQ(zelmar["Order"].AsInt(), 5);
  EXPECT_EQ(zelmar["Rload"].AsFloat(), 75.0f);

  Json defaults = DesignJson({});
  EXPECT_EQ(defaults["Family"].AsInt(), 2);
  EXPECT_EQ(defaults["Order"].AsInt(), 5);
  EXPECT_EQ(defaults["Width"].AsFloat(), 4.2e6f);
  EXPECT_EQ(defaults["Apass"].AsFloat(), 0.044f);
}

TEST(Cli, NeverReadsOrWritesTheLastSessionFile) {
  TempFolder folder;
  auto previous = std::filesystem::current_path();
  std::filesystem::current_path(folder.Path());
  const std::string line = "7,1E+10,1,.2,60,\"Linhighpass\",600,300\r\n";
  std::ofstream(folder.File("Drenikfilter.dat"), std::ios::binary) << line;
  Json j = DesignJson({});
  std::filesystem::current_path(previous);
  EXPECT_EQ(j["Order"].AsInt(), 5);
  std::ifstream in(folder.File("Drenikfilter.dat"), std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), line);
}

TEST(Cli, TableListsEveryPositionAndTheTerminations) {
  CliRun r = RunCli({"design", "--family", "butterworth", "--order", "3"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("Butterworth, order 3, Cinlowpass"), std::string::npos);
  EXPECT_NE(r.out.find("Cutoff (3 dB)"), std::string::npos);
  EXPECT_NE(r.out.find("Rsource: 50 ohms, Rload: 50 ohms"), std::string::npos);
  EXPECT_NE(r.out.find("  1  shunt C"), std::string::npos);
  EXPECT_NE(r.out.find("  2  series L"), std::string::npos);
  EXPECT_NE(r.out.find("  3  shunt C"), std::string::npos);
}

TEST(Cli, RenderWritesThePageInTheFormatAsked) {
  TempFolder folder;
  std::string svg = folder.File("page.svg");
#if !DRENIK_WITH_QT
  GTEST_SKIP() << "rendering needs the Qt build";
#endif
  CliRun r = RunCli({"render", "--svg", svg, "--size", "800x600"});
  ASSERT_EQ(r.status, 0) << r.err;
  std::ifstream in(svg);
  std::string text(std::istreambuf_iterator<char>(in), {});
  EXPECT_NE(text.find("<svg"), std::string::npos);
  EXPECT_NE(text.find("Cursor on plot"), std::string::npos);
}

// Until the elliptic prototype is in, a Cauer design is refused in one line.
// The elliptic family through the page logic: an even order ends in a plain
// element with a load below the source for the lowpass input topologies, and
// every part is positive in all four topologies.
TEST(Cli, CauerDesignsInEveryTopology) {
  for (const char* topology : {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"}) {
    Json j = DesignJson(
        {"--family", "cauer", "--order", "6", "--stopband", "50", "--topology", topology});
    EXPECT_EQ(j["CauerFlag"].AsInt(), 1) << topology;
    EXPECT_GT(j["FstopNormalized"].AsFloat(), 1) << topology;
    EXPECT_LT(j["RloadNormalized"].AsFloat(), 1) << topology;
    for (int k = 1; k <= 6; ++k) {
      EXPECT_GE(j["L"].items[k].AsFloat(), 0) << topology << " L" << k;
      EXPECT_GE(j["C"].items[k].AsFloat(), 0) << topology << " C" << k;
      EXPECT_GT(j["L"].items[k].AsFloat() + j["C"].items[k].AsFloat(), 0) << topology << k;
    }
  }
}

TEST(Cli, ExportWritesTheRequestedFilesAndReportsFailures) {
  TempFolder folder;
  CliRun r = RunCli({"export", "--csv", folder.File("sweep.csv"), "--cir", folder.File("f.cir")});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_GT(std::filesystem::file_size(folder.File("sweep.csv")), 0u);
  EXPECT_GT(std::filesystem::file_size(folder.File("f.cir")), 0u);
  CliRun bad = RunCli({"export", "--csv", folder.File("missing/sweep.csv")});
  EXPECT_EQ(bad.status, 1);
  EXPECT_NE(bad.err.find("sweep.csv"), std::string::npos);
}

}  // namespace
}  // namespace drenik::testing
