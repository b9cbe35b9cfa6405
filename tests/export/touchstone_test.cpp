#include "export/touchstone.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/sweep.h"
#include "export/chain_matrix.h"
#include "export/writers.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik {
namespace {

using testing::CrLfLines;
using testing::RecordingPlatform;
using testing::TempFolder;

constexpr double kPi = 3.14159265358979323846;

// A third-order Butterworth lowpass (g = 1, 2, 1) at 1 MHz, 50 ohms; lossy
// when q is finite.
DesignRecord Butterworth(float q) {
  DesignRecord d;
  d.Pi = static_cast<float>(kPi);
  d.TwoPi = static_cast<float>(2 * kPi);
  d.Stages = 3;
  d.ElementType[1] = 4;
  d.ElementType[2] = 1;
  d.ElementType[3] = 4;
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

// The ideal ladder has the Butterworth response and loses nothing.
TEST(ChainMatrix, LosslessButterworth) {
  const DesignRecord d = Butterworth(kInfiniteQind);
  for (float f : {1e5f, 5e5f, 1e6f, 2e6f, 1e7f}) {
    const SParameters s = LadderSParameters(d, f);
    const double ratio = f / 1e6;
    EXPECT_NEAR(std::norm(s.S21), 1 / (1 + std::pow(ratio, 6)), 1e-5) << f;
    EXPECT_NEAR(std::norm(s.S11) + std::norm(s.S21), 1, 1e-5) << f;
    EXPECT_NEAR(std::abs(s.S12 - s.S21), 0, 1e-9) << f;
    EXPECT_NEAR(std::abs(s.S22), std::abs(s.S11), 1e-6) << f;
  }
}

struct Touchstone {
  std::vector<std::string> keywords;
  std::string options;
  std::vector<std::vector<double>> rows;
};

Touchstone ParseTouchstone(const std::string& path) {
  Touchstone t;
  for (const std::string& line : CrLfLines(path)) {
    if (line.empty() || line[0] == '!') continue;
    if (line[0] == '[') {
      t.keywords.push_back(line);
    } else if (line[0] == '#') {
      t.options = line;
    } else {
      std::istringstream in(line);
      std::vector<double> row;
      for (double v; in >> v;) row.push_back(v);
      t.rows.push_back(row);
    }
  }
  return t;
}

TEST(Touchstone, ReadsBackToTheAnalysis) {
  TempFolder folder;
  RecordingPlatform platform;
  DesignRecord d = Butterworth(50);
  d.Rload = 75;  // unequal ports: the references must follow each side
  AnalyzeSweep(d, platform);
  ASSERT_TRUE(WriteTouchstone(d, folder / "a.s2p", platform));
  EXPECT_TRUE(platform.messages.empty());

  const Touchstone t = ParseTouchstone(folder / "a.s2p");
  EXPECT_EQ(t.options, "# Hz S RI R 50");
  const std::vector<std::string> keywords = {"[Version] 2.0",
                                             "[Number of Ports] 2",
                                             "[Two-Port Data Order] 21_12",
                                             "[Number of Frequencies] 201",
                                             "[Reference] 50 75",
                                             "[Network Data]",
                                             "[End]"};
  EXPECT_EQ(t.keywords, keywords);
  ASSERT_EQ(t.rows.size(), 201u);
  for (int i = 0; i <= 200; ++i) {
    const std::vector<double>& r = t.rows[i];
    ASSERT_EQ(r.size(), 9u);
    EXPECT_EQ(static_cast<float>(r[0]), d.Freq[i]);
    const double s21Db = 10 * std::log10(r[3] * r[3] + r[4] * r[4]);
    const double s11Db = 10 * std::log10(r[1] * r[1] + r[2] * r[2]);
    EXPECT_NEAR(s21Db, d.Transmission[i], 0.001) << i;
    if (d.Reflection[i] > -100) {
      EXPECT_NEAR(s11Db, d.Reflection[i], 0.001) << i;
    }
  }
}

TEST(Touchstone, Failures) {
  TempFolder folder;
  RecordingPlatform platform;
  DesignRecord d = Butterworth(50);
  EXPECT_FALSE(WriteTouchstone(d, "", platform));
  testing::WriteWhole(folder / "plain", "x");
  EXPECT_FALSE(WriteTouchstone(d, folder / "plain/a.s2p", platform));
  testing::WriteWhole(folder / "old.s2p", "old");
  d.Rload = 0;  // no reference for port 2: the old file stays
  EXPECT_FALSE(WriteTouchstone(d, folder / "old.s2p", platform));
  EXPECT_EQ(testing::ReadWhole(folder / "old.s2p"), "old");
  EXPECT_FALSE(std::filesystem::exists(folder / "old.s2p.part"));
  ASSERT_EQ(platform.messages.size(), 3u);
  for (const auto& m : platform.messages)
    EXPECT_EQ(m.text, "We could not write the Touchstone file");
}

TEST(SweepCsv, HeaderAndOneRowPerPoint) {
  TempFolder folder;
  RecordingPlatform platform;
  DesignRecord d;
  d.NrIntervals = 2;
  const float freq[] = {1e6f, 4.5e6f, 1.2345678e7f};
  for (int i = 0; i < 3; ++i) {
    d.Freq[i] = freq[i];
    d.Transmission[i] = 0.0f - 0.1f * i;
    d.Reflection[i] = -20.5f;
    d.VSWR[i] = 1.2f;
    d.Delay[i] = 1.5e-7f;
    d.Phase[i] = -90;
  }
  ASSERT_TRUE(WriteSweepCsv(d, folder / "a.csv", platform));
  const std::vector<std::string> lines = CrLfLines(folder / "a.csv");
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0], "frequency_hz,transmission_db,reflection_db,vswr,delay_s,phase_deg");
  EXPECT_EQ(lines[1], "1e+06,0,-20.5,1.2,1.5e-07,-90");
  // Every number reads back to the same single-precision value.
  std::istringstream row(lines[3]);
  std::string cell;
  std::getline(row, cell, ',');
  EXPECT_EQ(std::stof(cell), freq[2]);
  std::getline(row, cell, ',');
  EXPECT_EQ(std::stof(cell), -0.2f);

  testing::WriteWhole(folder / "old.csv", "old");
  d.NrIntervals = 3000;
  EXPECT_FALSE(WriteSweepCsv(d, folder / "old.csv", platform));
  std::filesystem::create_directory(folder / "dir.csv");
  EXPECT_FALSE(WriteSweepCsv(d, folder / "dir.csv", platform));
  EXPECT_EQ(testing::ReadWhole(folder / "old.csv"), "old");
  ASSERT_EQ(platform.messages.size(), 2u);
  EXPECT_EQ(platform.messages[1].text, "We could not write the CSV file");
}

}  // namespace
}  // namespace drenik
