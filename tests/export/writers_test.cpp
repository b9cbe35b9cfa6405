// The Touchstone and CSV writers, and their failures: each shows its own
// message, keeps an old file as it was and leaves no part file behind.

#include "export/touchstone.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>
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

// A lossy third-order Butterworth ladder (1 MHz) between 50 and 75 ohms, and
// a ladder of every other element kind, read back to their analysis.
TEST(Touchstone, ReadsBackToTheAnalysis) {
  for (bool resonant : {false, true}) {
    DesignRecord d;
    d.Pi = 3.14159265f;
    d.TwoPi = 2 * d.Pi;
    d.Rsource = d.Rload = d.Rstandard = 50;
    d.Fstart = 2e5f;
    d.Fstop = 5e6f;
    d.NrIntervals = 200;
    if (resonant) {
      d.Stages = 5;
      d.ElementType = {0, 3, 6, 2, 7, 4};
      d.L = {0, 0, 3e-6f, 9e-6f, 4e-6f, 0};
      d.C = {0, 2e-9f, 2.5e-9f, 0, 1e-9f, 3e-9f};
      d.Qind = 80;
      d.Qcap = 500;
    } else {
      d.Stages = 3;
      d.ElementType = {0, 4, 1, 4};
      d.L = {0, 0, 1.5915494e-5f};
      d.C = {0, 3.1830989e-9f, 0, 3.1830989e-9f};
      d.Qind = 50;
      d.Qcap = kInfiniteQcap;
      d.Rload = 75;
    }
    testing::TempFolder folder;
    testing::RecordingPlatform platform;
    AnalyzeSweep(d, platform);
    ASSERT_TRUE(WriteTouchstone(d, folder / "a.s2p", platform));
    std::string keywords;  // comments dropped
    std::vector<std::vector<double>> rows;
    for (const std::string& line : CrLfLines(folder / "a.s2p")) {
      if (line.empty() || line[0] == '!') continue;
      if (line[0] == '[' || line[0] == '#') {
        keywords += line + "|";
        continue;
      }
      std::istringstream in(line);
      rows.emplace_back();
      for (double v; in >> v;) rows.back().push_back(v);
    }
    EXPECT_EQ(keywords,
              "[Version] 2.0|# Hz S RI R 50|[Number of Ports] 2|[Two-Port Data Order] "
              "21_12|[Number of Frequencies] 201|[Reference] 50 " +
                  std::to_string(int(d.Rload)) + "|[Network Data]|[End]|");
    ASSERT_EQ(rows.size(), 201u);
    for (int i = 0; i <= 200; ++i) {
      const std::vector<double>& r = rows[i];
      ASSERT_EQ(r.size(), 9u);
      EXPECT_EQ(static_cast<float>(r[0]), d.Freq[i]);
      EXPECT_NEAR(10 * std::log10(r[3] * r[3] + r[4] * r[4]), d.Transmission[i], 0.001) << i;
      if (d.Reflection[i] > -100) {
        EXPECT_NEAR(10 * std::log10(r[1] * r[1] + r[2] * r[2]), d.Reflection[i], 0.001) << i;
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

TEST(WriterFailures, MessageAndTheOldFileKept) {
  const struct {
    std::function<bool(DesignRecord&, const std::string&, Platform&)> write;
    std::string message;
    void (*spoil)(DesignRecord&);  // makes the content fail
  } cases[] = {
      {WriteLtspiceFile, "We could not write the LTspice file",
       [](DesignRecord& d) { d.Stages = 25; }},
      {WriteTouchstone, "We could not write the Touchstone file",
       [](DesignRecord& d) { d.Rload = 0; }},
      {WriteSweepCsv, "We could not write the CSV file",
       [](DesignRecord& d) { d.NrIntervals = 3000; }},
  };
  for (const auto& c : cases) {
    testing::TempFolder folder;
    testing::RecordingPlatform platform;
    DesignRecord d;
    d.Rsource = d.Rload = 50;
    d.Qind = 1e6f;
    d.NrIntervals = 10;
    EXPECT_FALSE(c.write(d, "", platform));  // a cancelled dialog
    testing::WriteWhole(folder / "plain", "x");
    EXPECT_FALSE(c.write(d, folder / "plain/a", platform));  // the folder is a file
    std::filesystem::create_directory(folder / "dir");
    EXPECT_FALSE(c.write(d, folder / "dir", platform));  // a folder at the path
    testing::WriteWhole(folder / "old", "old");
    c.spoil(d);
    EXPECT_FALSE(c.write(d, folder / "old", platform));
    EXPECT_EQ(testing::ReadWhole(folder / "old"), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 3);
    ASSERT_EQ(platform.messages.size(), 4u);
    for (const auto& m : platform.messages) EXPECT_EQ(m.text, c.message);
  }
}

}  // namespace
}  // namespace drenik
