// `drenik time`: its options, its JSON, its CSV file and its usage line.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "cli/cli.h"
#include "json_reader.h"
#include "support/temp_folder.h"

#include "support/run_cli.h"

namespace drenik::testing {
namespace {

TEST(TimeCli, JsonCsvAndBadValues) {
  TempFolder folder;
  const std::string csv = folder / "step.csv";
  const Outcome r = Drenik("time --family bessel --values exact --points 300 --json --csv " + csv);
  ASSERT_EQ(r.status, 0) << r.err;
  const Json j = ParseJson(r.out);
  EXPECT_NEAR(j["overshoot_pct"].AsDouble(), 0.77, 0.05);
  ASSERT_EQ(j["t"].items.size(), 300u);
  ASSERT_EQ(j["impulse"].items.size(), 300u);
  // The span ends past the 0.1 % settling time, where the step has settled.
  EXPECT_GT(j["t"].items.back().AsDouble(), j["settling_01pct"].AsDouble());
  EXPECT_NEAR(j["step"].items.back().AsDouble(), 1, 1e-3);
  std::ifstream file(csv);
  std::string line;
  std::getline(file, line);
  EXPECT_EQ(line, "t,step,impulse\r");
  int rows = 0;
  while (std::getline(file, line)) ++rows;
  EXPECT_EQ(rows, 300);

  for (const char* bad : {"--span 0", "--span x", "--points 1", "--points 2.5", "--csv"}) {
    const Outcome o = Drenik(std::string("time ") + bad);
    EXPECT_EQ(o.status, 2) << bad;
    EXPECT_NE(o.err.find(std::string(bad).substr(0, std::string(bad).find(' '))), std::string::npos)
        << o.err;
    EXPECT_EQ(o.err.find('\n'), o.err.size() - 1) << o.err;
  }
  EXPECT_EQ(Drenik("design --span 1e-6").status, 2);
  EXPECT_EQ(Drenik("time --csv " + folder.Path() + "/missing/step.csv").status, 1);
}

// The chooser's stage with its series, and a band design named by its
// centre, width and edges rather than a cutoff.
TEST(TimeCli, ChosenPartsAndBandHeading) {
  const Outcome chosen = Drenik("time --values chosen --cseries E6 --json");
  ASSERT_EQ(chosen.status, 0) << chosen.err;
  const Outcome fiveC = Drenik("time --json");
  EXPECT_EQ(ParseJson(chosen.out)["values"].text, "chosen");
  EXPECT_NE(ParseJson(chosen.out)["overshoot_pct"].AsDouble(),
            ParseJson(fiveC.out)["overshoot_pct"].AsDouble());
  const Outcome lone = Drenik("time --cseries E6");
  EXPECT_EQ(lone.status, 2);
  EXPECT_NE(lone.err.find("--cseries"), std::string::npos) << lone.err;

  const Outcome band = Drenik("time --topology Cinbandpass --center 7.15M --bandwidth 300k");
  EXPECT_NE(band.out.find("Cinbandpass, centre 7.15MHz, bandwidth 300KHz (f1 7.0016MHz, "
                          "f2 7.3016MHz), 5% C values\n"),
            std::string::npos)
      << band.out;
}

}  // namespace
}  // namespace drenik::testing
