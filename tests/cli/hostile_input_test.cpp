// Hostile input on the band, part-model and chooser options: each case is
// refused with status 2 and one line naming the option, or answered.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/run_cli.h"
#include "support/temp_folder.h"

namespace drenik::testing {
namespace {

TEST(HostileInput, RefusedWithStatusTwoNamingTheOption) {
  const std::pair<const char*, const char*> cases[] = {
      // Narrower than the sweep resolves: once a crash in the tolerance run.
      {"tolerance --topology Cinbandpass --center 7M --bandwidth 10 --trials 1", "0.01%"},
      {"export --topology Cinbandpass --center 467.616k --bandwidth 0.1 --cir x.cir",
       "--bandwidth"},
      {"design --topology Cinbandpass --center -7M --bandwidth 0.1", "--center"},
      {"design --topology Coupledbandpass --center 7M --bandwidth 100k --resonator-l -1u",
       "--resonator-l"},
      {"winding --core T37-2 --air-core 6:0.8", "--air-core"},
      {"winding --topology Cinbandpass --center 7M --bandwidth 1M --air-core 1e300:1e300 --json",
       "--air-core"},
      {"tolerance --family cauer --order 3 --topology Cinbandstop --center 6.3007e8 --bandwidth "
       "3.1621e8 --q 5.96e3 --q-law sqrt --cq 32.1 --cesl 1.08e-8",
       "no default mask"},
      {"render --step s.png --smith s.png", "--smith"},
      {"time --csv t1.csv --csv t2.csv", "--csv"},
      {"parts --bom a.csv --bom b.csv", "--bom"}};
  for (const auto& [line, named] : cases) {
    const Outcome r = Drenik(line);
    EXPECT_EQ(r.status, 2) << line;
    EXPECT_NE(r.err.find(named), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;
  }
}

TEST(HostileInput, AnsweredWithANoticeWhereTheValueIsTaken) {
  // Winding capacitance on a narrow band: the chooser once never returned.
  Outcome r = Drenik(
      "parts --topology Cinbandstop --center 7M --bandwidth 10k --lcp 10p --lseries "
      "E12 --json --quiet");
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out.find("inf"), std::string::npos);
  r = Drenik("design --topology Cinbandpass --center 2e10 --bandwidth 1G");
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.err.find("--center: the design page does not take '2e10'"), std::string::npos);
  // 79.6 H on T37-2 would take 141,000 turns.
  r = Drenik(
      "winding --family butterworth --order 3 --bandwidth 0.1 --topology Linlowpass --core "
      "T37-2 --json");
  EXPECT_NE(r.out.find("\"turns\": 100000, \"inductance\": 40, \"beyondFormer\": true"),
            std::string::npos)
      << r.out;
}

TEST(HostileInput, NoFileIsWrittenWhenAnyOutputIsRefused) {
  TempFolder folder;
  const std::string x = folder / "x.csv", link = folder / "link", nowhere = folder / "link2";
  WriteWhole(x, "old");
  std::filesystem::create_symlink(x, link);
  std::filesystem::create_symlink(folder / "new.csv", nowhere);
  for (const std::string& line :
       {"export --csv " + x + " --s2p " + link,
        "export --cir " + folder / "new.csv" + " --s2p " + nowhere,
        // The time response fails after the display page drew.
        "render --cq 1e-30 --png " + folder / "a.png" + " --step " + folder / "b.png"}) {
    EXPECT_EQ(Drenik(line).status, 2) << line;
  }
  EXPECT_EQ(ReadWhole(x), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 3);
}

}  // namespace
}  // namespace drenik::testing
