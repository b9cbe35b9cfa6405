// `drenik synth`: its answer checked by `drenik tolerance`, its refusals and
// its exit status.

#include <gtest/gtest.h>

#include "cli/json_reader.h"
#include "support/run_cli.h"

namespace drenik {
namespace {

using testing::Drenik;
using testing::Json;
using testing::ParseJson;

std::string Words(const Json& choices) {
  std::string line;
  for (const Json& w : choices.items) line += " " + w.text;
  return line;
}

// The chosen design's words, run through the tolerance command with the
// same mask, build and seed, give the very yield the search reported, and
// it meets the target.
TEST(SynthCli, ChosenDesignMeetsTheTargetInTheToleranceCommand) {
  struct Case {
    std::string mask, build, goal;
    double target;
  };
  const Case cases[] = {
      {"--pass-edge 14.35M --pass-rl 18 --stop 28.7M:50", " --ctol 5 --ltol 2 --trials 500",
       " --families cauer,chebyshev", 99},
      {"--pass-edge 7M --pass-edge 7.3M --pass-rl 12 --stop-below 5.5M:30 --stop 9.5M:30",
       " --ctol 1 --ltol 1 --trials 500 --seed 7",
       " --response bandpass --families chebyshev,butterworth --yield 95", 95},
      // Stock parts: the words end in --values chosen and the series, and
      // the tolerance command chooses the parts for the same mask.
      {"--pass-edge 14.35M --pass-rl 18 --stop 28.7M:50",
       " --ctol 2 --ltol 2 --cseries E12 --trials 500", " --families cauer", 99}};
  for (const Case& c : cases) {
    const std::string line = "synth " + c.mask + c.build + c.goal + " --json";
    const auto found = Drenik(line);
    ASSERT_EQ(found.status, 0) << found.err;
    const Json j = ParseJson(found.out);
    const Json& chosen = j["candidates"].items.at(j["chosen"].AsInt());
    const std::string words = Words(chosen["choices"]);
    const bool stock = words.find("--values chosen") != std::string::npos;
    EXPECT_EQ(stock, c.build.find("--cseries") != std::string::npos) << words;
    const auto check = Drenik("tolerance" + words + (stock ? " " : " --values exact ") + c.mask +
                              c.build + " --json");
    ASSERT_EQ(check.status, 0) << check.err;
    const double yield = ParseJson(check.out)["yield"].AsDouble();
    EXPECT_DOUBLE_EQ(100 * yield, chosen["yield_pct"].AsDouble());
    EXPECT_GE(100 * yield, c.target);
  }
}

TEST(SynthCli, RefusesAnUnusableMaskAndSaysWhenNothingMeetsIt) {
  // A mask nothing meets names what fails; the nearest designs still come,
  // each short of the mask, with no yield.
  const auto impossible =
      Drenik("synth --pass-edge 14.35M --pass-rl 18 --stop 14.4M:80 --json --quiet");
  EXPECT_EQ(impossible.status, 1);
  EXPECT_NE(impossible.err.find("up to order 15 gives 80 dB at 14.4MHz with a pass edge at "
                                "14.35MHz"),
            std::string::npos)
      << impossible.err;
  EXPECT_NE(impossible.out.find("\"order\": 15"), std::string::npos) << impossible.out;
  EXPECT_NE(impossible.out.find("\"yield_pct\": null"), std::string::npos);
  EXPECT_NE(impossible.out.find("\"margin_stop_db\": -"), std::string::npos);
  for (const char* line : {"synth --pass-rl 18 --stop 28.7M:50",
                           "synth --response bandpass --pass-edge 7M --pass-rl 18 --stop 8M:30",
                           "tolerance --pass-edge 1M --pass-edge 2M --pass-rl 10",
                           // beyond the page's range: its words would be clamped elsewhere
                           "synth --pass-edge 50G --pass-rl 18 --stop 100G:50"}) {
    const auto r = Drenik(line);
    EXPECT_EQ(r.status, 2) << line;
    EXPECT_NE(r.err.find("--pass-edge"), std::string::npos) << r.err;
    EXPECT_TRUE(r.out.empty()) << line;
  }
  EXPECT_EQ(Drenik("synth --pass-edge 14M --pass-rl 18 --stop 12M:50").status, 2);
  EXPECT_EQ(Drenik("synth --pass-edge 14M --pass-rl 18 --stop 28M:50 --order 5").status, 2);
}

// A band design's mask by its two edges, lower then upper: a bandstop's
// passband below the first and above the second, whatever the design's own.
TEST(SynthCli, ToleranceTakesABandsTwoPassEdges) {
  const auto r = Drenik(
      "tolerance --family chebyshev --order 3 --topology Cinbandstop --center 97.5M "
      "--bandwidth 40M --values exact --pass-edge 70M --pass-edge 130M --pass-rl 10 "
      "--stop 88M:108M:20 --trials 10 --json");
  ASSERT_EQ(r.status, 0) << r.err;
  const Json j = ParseJson(r.out);
  const Json& mask = j["mask"];
  EXPECT_EQ(mask["pass_edge"].AsDouble(), 70e6);
  EXPECT_EQ(mask["pass_resume"].AsDouble(), 130e6);
  EXPECT_EQ(Drenik("tolerance --pass-edge 1M --pass-edge 2M --pass-edge 3M --pass-rl 3").status, 2);
}

}  // namespace
}  // namespace drenik
