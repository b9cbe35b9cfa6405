// `drenik tolerance`: its options, its JSON and its summary.
#include <gtest/gtest.h>

#include <sstream>

#include "cli/cli.h"
#include "json_reader.h"

#include "support/run_cli.h"

namespace drenik::testing {
namespace {

TEST(ToleranceCli, BadValuesExitTwoWithOneLineNamingTheOption) {
  const std::pair<const char*, const char*> cases[] = {{"--ctol 51", "--ctol"},
                                                       {"--ltol -1", "--ltol"},
                                                       {"--ctol 5%", "--ctol"},
                                                       {"--trials 0", "--trials"},
                                                       {"--trials 1000001", "--trials"},
                                                       {"--trials 2.5", "--trials"},
                                                       {"--stop 14M", "--stop"},
                                                       {"--stop 14M:deep", "--stop"},
                                                       {"--stop x:40", "--stop"},
                                                       {"--pass-rl abc", "--pass-rl"},
                                                       {"--pass-il -3", "--pass-il"},
                                                       {"--pass-edge M", "--pass-edge"},
                                                       {"--seed -1", "--seed"},
                                                       {"--dist gauss", "--dist"},
                                                       {"--tighten 60", "--tighten"},
                                                       {"--stop 3M:40", "--stop"},
                                                       {"--stop-below 6M", "--stop-below"},
                                                       {"--stop-below 6M:x", "--stop-below"},
                                                       {"--stop-below 3M:40", "--stop-below"},
                                                       {"--stop-below 1M:2M:40", "--stop-below"},
                                                       {"--stop 1M::40", "--stop"},
                                                       {"--pass-edge 8.4M", "--pass-edge"}};
  for (const auto& [options, option] : cases) {
    const Outcome r = Drenik(std::string("tolerance ") + options);
    SCOPED_TRACE(options + (" -> " + r.err));
    EXPECT_TRUE(r.status == 2 && r.out.empty());
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1);
    EXPECT_NE(r.err.find(option), std::string::npos);
  }
  const Outcome design = Drenik("design --ctol 5");
  EXPECT_TRUE(design.status == 2 &&
              design.err.find("--ctol: only for 'tolerance'") != std::string::npos);
}

// A 3rd-order Cauer's stopband starts beyond the sweep's end: its figures
// and the default mask still take it in.
TEST(ToleranceCli, StopbandBeyondTheSweepIsJudged) {
  const std::string design = " --family cauer --order 3 --stopband 60";
  const Outcome parts = Drenik("parts --json" + design);
  EXPECT_EQ(parts.out.find("\"stopband\": null"), std::string::npos) << parts.out;
  const Outcome tolerance = Drenik("tolerance --trials 50" + design);
  // 3 dB inside the nominal 59.78 dB, the default margin.
  EXPECT_NE(tolerance.out.find("attenuation 56 dB from 35.924MHz"), std::string::npos)
      << tolerance.out;
}

// A bandstop's notch is one check between two frequencies, and every band
// design is headed by its centre and width, not a cutoff.
TEST(ToleranceCli, BandstopNotchAndBandHeadings) {
  const std::string band = " --topology Cinbandstop --center 7.15M --bandwidth 300k";
  const Outcome notch = Drenik("tolerance --trials 100 --stop 7.1M:7.2M:20" + band);
  EXPECT_NE(notch.out.find("Mask: attenuation 20 dB from 7.1MHz to 7.2MHz\n"), std::string::npos)
      << notch.out;
  EXPECT_EQ(Drenik("tolerance --stop 7.2M:7.1M:20" + band).status, 2);
  const std::string heading = "Cinbandstop, centre 7.15MHz, bandwidth 300KHz (f1 ";
  EXPECT_NE(notch.out.find("Chebyshev order 5 " + heading), std::string::npos);
  EXPECT_NE(Drenik("parts" + band).out.find("Chebyshev, order 5, " + heading), std::string::npos);
}

TEST(ToleranceCli, JsonCarriesTheYieldFailuresEnvelopeAndSensitivity) {
  const Outcome r = Drenik(
      "tolerance --json --bandwidth 7M --order 7 --pass-rl 17 --stop 14M:40 --stop 21M:50 "
      "--trials 500 --seed 3 --pass-edge 7,0M --ctol 5 --ltol 3");
  ASSERT_EQ(r.status, 0) << r.err;
  const Json j = ParseJson(r.out);
  const long trials = j["trials"].AsInt(), passed = j["passed"].AsInt();
  EXPECT_TRUE(trials == 500 && passed > 0 && passed < 500);
  EXPECT_DOUBLE_EQ(j["yield"].AsDouble(), passed / 500.0);
  const double lo = j["yield_ci95"].items.at(0).AsDouble(),
               hi = j["yield_ci95"].items.at(1).AsDouble();
  EXPECT_TRUE(lo < j["yield"].AsDouble() && j["yield"].AsDouble() < hi);
  EXPECT_EQ(j["mask"]["pass_edge"].AsDouble(), 7e6);  // "7,0M" read as the bandwidth box reads it
  EXPECT_EQ(j["failures"].fields.size(), 3u);
  EXPECT_GT(j["failures"]["pass-rl"].AsInt(), 0);
  EXPECT_EQ(j["failures"]["stop 14MHz:40"].AsInt() + j["failures"]["stop 21MHz:50"].AsInt(), 0);

  // The envelope on the display page's points, around the nominal curves.
  const Json design = ParseJson(Drenik("design --json --bandwidth 7M --order 7").out);
  const Json& e = j["envelope"];
  ASSERT_EQ(e["Freq"].items.size(), 1001u);
  for (size_t i = 0; i <= 1000; i += 50) {
    EXPECT_EQ(e["Freq"].items[i].text, design["Freq"].items[i].text);
    const double t = design["Transmission"].items[i].AsDouble(),
                 rl = design["Reflection"].items[i].AsDouble();
    EXPECT_TRUE(e["Transmission_min"].items[i].AsDouble() <= t &&
                t <= e["Transmission_max"].items[i].AsDouble());
    EXPECT_TRUE(e["Reflection_min"].items[i].AsDouble() <= rl &&
                rl <= e["Reflection_max"].items[i].AsDouble());
  }
  const auto& parts = j["sensitivity"].items;
  ASSERT_EQ(parts.size(), 7u);
  EXPECT_TRUE(parts[0]["part"].text == "L" || parts[0]["part"].text == "C");
  EXPECT_GE(parts[0]["passed"].AsInt(), parts[6]["passed"].AsInt());
  EXPECT_EQ(parts[0]["tolerance"].AsDouble(), parts[0]["part"].text == "L" ? 0.03 : 0.05);

  // The summary names the yield, the checks and the part that matters most.
  const Outcome text =
      Drenik("tolerance --bandwidth 7M --order 7 --pass-rl 17 --stop 14M:40 --trials 500 --seed 3");
  EXPECT_NE(text.out.find("Yield: "), std::string::npos);
  EXPECT_NE(text.out.find("return loss 17 dB to 7MHz"), std::string::npos);
  EXPECT_NE(text.out.find("matters most"), std::string::npos);
  // The nominal design's verdict names the check it fails, with its figure.
  EXPECT_NE(Drenik("tolerance --trials 20 --pass-il 0.01")
                .out.find("Nominal design: fails loss 0.01 dB to 4.2MHz (it has 0.11 dB)\n"),
            std::string::npos);
}

}  // namespace
}  // namespace drenik::testing
