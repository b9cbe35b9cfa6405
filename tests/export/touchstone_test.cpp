#include "export/touchstone.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/sweep.h"
#include "export/writers.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik {
namespace {

using testing::CrLfLines;

constexpr double kPi = 3.14159265358979323846;

// A third-order Butterworth lowpass (g = 1, 2, 1) at 1 MHz, 50 ohms; lossy
// when q is finite.
DesignRecord Butterworth(float q) {
  DesignRecord d;
  d.Pi = static_cast<float>(kPi);
  d.TwoPi = static_cast<float>(2 * kPi);
  d.Stages = 3;
  d.ElementType = {0, 4, 1, 4};
  const double w = 2 * kPi * 1e6;
  d.C[1] = d.C[3] = static_cast<float>(1 / (w * 50));
  d.L[2] = static_cast<float>(2 * 50 / w);
  d.Rsource = d.Rload = d.Rstandard = 50;
  d.Qind = q;
  d.Qcap = kInfiniteQcap;
  d.Fstart = 2e5f;
  d.Fstop = 5e6f;
  d.NrIntervals = 200;
  return d;
}

// Keyword lines and data rows of a Touchstone file (comments dropped).
void ParseTouchstone(const std::string& path, std::vector<std::string>& keywords,
                     std::vector<std::vector<double>>& rows) {
  for (const std::string& line : CrLfLines(path)) {
    if (line.empty() || line[0] == '!') continue;
    if (line[0] == '[' || line[0] == '#') {
      keywords.push_back(line);
      continue;
    }
    std::istringstream in(line);
    rows.emplace_back();
    for (double v; in >> v;) rows.back().push_back(v);
  }
}

// Both a lossy Butterworth ladder between unequal terminations and a ladder
// of every other element kind read back to the analysis of the same design.
TEST(Touchstone, ReadsBackToTheAnalysis) {
  DesignRecord resonant = Butterworth(80);
  resonant.Stages = 5;
  resonant.ElementType = {0, 3, 6, 2, 7, 4};
  resonant.L = {0, 0, 3e-6f, 9e-6f, 4e-6f, 0};
  resonant.C = {0, 2e-9f, 2.5e-9f, 0, 1e-9f, 3e-9f};
  resonant.Qcap = 500;
  DesignRecord butterworth = Butterworth(50);
  butterworth.Rload = 75;
  for (DesignRecord* d : {&butterworth, &resonant}) {
    testing::TempFolder folder;
    testing::RecordingPlatform platform;
    AnalyzeSweep(*d, platform);
    ASSERT_TRUE(WriteTouchstone(*d, folder / "a.s2p", platform));
    std::vector<std::string> keywords;
    std::vector<std::vector<double>> rows;
    ParseTouchstone(folder / "a.s2p", keywords, rows);
    const std::vector<std::string> expected = {"[Version] 2.0",
                                               "# Hz S RI R 50",
                                               "[Number of Ports] 2",
                                               "[Two-Port Data Order] 21_12",
                                               "[Number of Frequencies] 201",
                                               "[Reference] 50 " + std::to_string(int(d->Rload)),
                                               "[Network Data]",
                                               "[End]"};
    EXPECT_EQ(keywords, expected);
    ASSERT_EQ(rows.size(), 201u);
    for (int i = 0; i <= 200; ++i) {
      const std::vector<double>& r = rows[i];
      ASSERT_EQ(r.size(), 9u);
      EXPECT_EQ(static_cast<float>(r[0]), d->Freq[i]);
      EXPECT_NEAR(10 * std::log10(r[3] * r[3] + r[4] * r[4]), d->Transmission[i], 0.001) << i;
      if (d->Reflection[i] > -100) {
        EXPECT_NEAR(10 * std::log10(r[1] * r[1] + r[2] * r[2]), d->Reflection[i], 0.001) << i;
      }
    }
  }
}

TEST(SweepCsv, HeaderAndRows) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d;
  d.NrIntervals = 1;
  d.Freq = {1e6f, 1.2345678e7f};
  d.Transmission = {0, -0.2f};
  d.Reflection = {-20.5f, -20.5f};
  d.VSWR = {1.2f, 1.2f};
  d.Delay = {1.5e-7f, 1.5e-7f};
  d.Phase = {-90, -90};
  ASSERT_TRUE(WriteSweepCsv(d, folder / "a.csv", platform));
  const std::vector<std::string> expected = {
      "frequency_hz,transmission_db,reflection_db,vswr,delay_s,phase_deg",
      "1e+06,0,-20.5,1.2,1.5e-07,-90", "12345678,-0.2,-20.5,1.2,1.5e-07,-90"};
  EXPECT_EQ(CrLfLines(folder / "a.csv"), expected);
}

}  // namespace
}  // namespace drenik
