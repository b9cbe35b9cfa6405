// The part models, the whole-turn inductors and the winding table on the
// command line.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>

#include "cli/cli.h"
#include "json_reader.h"
#include "support/run_cli.h"
#include "support/temp_folder.h"

namespace drenik::testing {
namespace {

TEST(RealPartsCli, BadValuesExitTwoNamingTheOption) {
  const std::pair<const char*, const char*> cases[] = {
      {"design --lcp -1p", "--lcp"},          {"export --cesl -2n --cir x.cir", "--cesl"},
      {"render --cq 0 --png x.png", "--cq"},  {"tolerance --q-law cubic", "--q-law"},
      {"parts --lseries T51-2", "--lseries"}, {"parts --air-core 6", "--air-core"},
      {"winding --core T50-7", "--core"},     {"winding", "winding"},
      {"design --core T50-2", "--core"}};
  for (const auto& [line, option] : cases) {
    const Outcome r = Drenik(line);
    EXPECT_EQ(r.status, 2) << line;
    EXPECT_NE(r.err.find(option), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;
  }
}

TEST(RealPartsCli, SelfResonanceKeyOnlyWithAWindingCapacitance) {
  const Json ideal = ParseJson(Drenik("design --json --q 50").out);
  EXPECT_EQ(ideal.fields.count("SelfResonance"), 0u);
  EXPECT_EQ(ideal.fields.count("QLaw"), 0u);
  const Json real = ParseJson(Drenik("design --json --q 50 --q-law sqrt --lcp 2p --cesl 1n").out);
  EXPECT_EQ(real["QLaw"].text, "sqrt");
  const auto& srf = real["SelfResonance"].items;
  ASSERT_EQ(srf.size(), static_cast<size_t>(real["Stages"].AsInt() + 1));
  for (size_t j = 1; j < srf.size(); ++j) {
    const double l = real["L"].items[j].AsDouble();
    const double expected = l > 0 ? 1 / (2 * std::numbers::pi * std::sqrt(l * 2e-12)) : 0;
    EXPECT_NEAR(srf[j].AsDouble(), expected, expected * 1e-6) << j;
  }
  // The cutoff's loss is the same Q either way; far below it the sqrt law's
  // Q has fallen, so the passband loss there is larger.
  const Json constant = ParseJson(Drenik("design --json --q 50 --lcp 2p --cesl 1n").out);
  EXPECT_LT(real["Transmission"].items[0].AsDouble(),
            constant["Transmission"].items[0].AsDouble() - 1e-4);
}

TEST(RealPartsCli, WholeTurnsOnACoreAndTheWindingTable) {
  TempFolder folder;
  const std::string bom = folder / "parts.csv";
  const Outcome r = Drenik("parts --bandwidth 7M --lseries T50-2 --cq 1000 --json --bom " + bom);
  ASSERT_EQ(r.status, 0) << r.err;
  const Json j = ParseJson(r.out);
  EXPECT_EQ(j["lseries"].text, "T50-2");
  int inductors = 0;
  for (const Json& p : j["parts"].items) {
    if (p["L"].items.empty()) continue;
    const double n = p["turns"].AsDouble();
    EXPECT_NEAR(p["L"].items[0].AsDouble(), 4.9e-9 * n * n, 1e-15);
    ++inductors;
  }
  EXPECT_GT(inductors, 0);
  const std::string csv = ReadWhole(bom);
  EXPECT_NE(csv.find("Quantity,Core or form,Turns\r\n"), std::string::npos) << csv;
  EXPECT_NE(csv.find(",whole turns,AL 5%,"), std::string::npos) << csv;

  const Json w = ParseJson(Drenik("winding --bandwidth 7M --core T50-2 --json").out);
  ASSERT_EQ(w["inductors"].items.size(), 2u);  // order 5, C input: L2 and L4
  for (const Json& l : w["inductors"].items) {
    const double n = l["turns"].AsDouble(), wanted = l["L"].AsDouble();
    EXPECT_NEAR(l["inductance"].AsDouble(), 4.9e-9 * n * n, 1e-15);
    EXPECT_LE(std::fabs(std::log(n * n * 4.9e-9 / wanted)), std::log((n + 1) / n));
  }
  const Outcome air = Drenik("winding --bandwidth 7M --air-core 6:0.8");
  EXPECT_NE(air.out.find("air core 6 mm / wire 0.8 mm"), std::string::npos) << air.out;
  EXPECT_NE(air.out.find("Length, mm"), std::string::npos);
}

}  // namespace
}  // namespace drenik::testing
