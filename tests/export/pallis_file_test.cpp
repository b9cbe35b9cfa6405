#include "export/pallis_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/number_text.h"
#include "export/writers.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik {
namespace {

using testing::CrLfLines;
using testing::RecordingPlatform;
using testing::TempFolder;

// A fifth-order C-input lowpass, 50 ohms, as the display page holds it.
DesignRecord FifthOrderLowpass() {
  DesignRecord d;
  d.Topology = "Cinlowpass";
  d.CauerType = "C";
  d.Stages = 5;
  d.Width = 4500000;
  d.FstopNormalized = 0;
  d.Apass = 0.01f;
  d.Astop = 0;
  d.Rsource = 50;
  d.Rload = 50;
  d.Rstandard = 50;
  d.Qind = 1000000;
  d.Qcap = 5000;
  const float g[] = {0, 1.25f, 2.5f, 3, 2.5f, 1.25f};
  for (int j = 1; j <= 5; ++j) {
    d.G[j] = g[j];
    d.ElementType[j] = j % 2 == 1 ? 4 : 1;
    if (j % 2 == 1) d.C[j] = 1.5e-9f;
    if (j % 2 == 0) d.L[j] = 2.5e-6f;
  }
  d.Fstart = 900000;
  d.Fstop = 22500000;
  d.NrIntervals = 1000;
  d.GraphScale = 0.5f;
  return d;
}

TEST(PallisFile, WritesEveryLineInOrder) {
  TempFolder folder;
  RecordingPlatform platform;
  const DesignRecord d = FifthOrderLowpass();
  ASSERT_TRUE(WritePallisFile(d, folder / "a.LCT", platform));
  EXPECT_TRUE(platform.messages.empty());

  const std::string c = ValueText(1.5e-9f), l = ValueText(2.5e-6f);
  const std::vector<std::string> expected = {
      "Pallis file written by Drenikfilter",
      "Drenik File",
      "21.11.2026",
      "* Expansion:",
      " (Expansion)",
      "* Family, order, stages, topology, Cauer:",
      " 11  5  5 A 0 ",
      "* Width, center, Fstop normalized:",
      " 4500000  0  0 ",
      "* Apass, Astop:",
      " .01  0 ",
      "* Rsource, Rload, Rratio, Rstandard:",
      " 50  50  1  50 ",
      "* Qind, Qcap:",
      " 1000000  5000 ",
      "* Gj, Hj:",
      " 1.25  0 ",
      " 2.5  0 ",
      " 3  0 ",
      " 2.5  0 ",
      " 1.25  0 ",
      "* Element type, L, Ltolerance, C, Ctolerance",
      " 4  0  0 " + c + " 0 ",
      " 1 " + l + " 0  0  0 ",
      " 4  0  0 " + c + " 0 ",
      " 1 " + l + " 0  0  0 ",
      " 4  0  0 " + c + " 0 ",
      "* Lin or log, Fstart, Fstop, Fstep or NrIntervals:",
      " 2  900000  22500000  1000 ",
      "* Graph scales:",
      " 60  0  1  1  .5  120  10  6 ",
      "* Limits Y/N:",
      "N",
  };
  EXPECT_EQ(CrLfLines(folder / "a.LCT"), expected);
}

TEST(PallisFile, TopologyLetterAndCauerNumber) {
  EXPECT_EQ(PallisTopologyLetter("Cinlowpass"), "A");
  EXPECT_EQ(PallisTopologyLetter("Linlowpass"), "B");
  EXPECT_EQ(PallisTopologyLetter("Cinhighpass"), "I");
  EXPECT_EQ(PallisTopologyLetter("Linhighpass"), "J");
  EXPECT_EQ(PallisTopologyLetter("cinlowpass"), "");

  DesignRecord d;
  d.CauerType = "B";
  EXPECT_EQ(PallisCauerNumber(d), 0);  // no resonant branches
  d.CauerFlag = 1;
  EXPECT_EQ(PallisCauerNumber(d), 2);
  d.CauerType = "C";
  EXPECT_EQ(PallisCauerNumber(d), 3);
  d.CauerType = "x";
  EXPECT_EQ(PallisCauerNumber(d), 1);

  TempFolder folder;
  RecordingPlatform platform;
  d = FifthOrderLowpass();
  d.Topology = "Linhighpass";
  d.CauerFlag = 1;
  d.CauerType = "B";
  d.Stages = 7;
  ASSERT_TRUE(WritePallisFile(d, folder / "b.LCT", platform));
  EXPECT_EQ(CrLfLines(folder / "b.LCT")[6], " 11  7  7 J 2 ");
}

// Positions outside codes 1..8 keep their G/H line but get no element line;
// negative values are written with "-"; no stages gives bare labels.
TEST(PallisFile, SkippedPositionsNegativeValuesAndNoStages) {
  TempFolder folder;
  RecordingPlatform platform;
  DesignRecord d = FifthOrderLowpass();
  d.ElementType[2] = 0;
  d.ElementType[4] = 17;
  d.G[3] = -0.5f;
  ASSERT_TRUE(WritePallisFile(d, folder / "c.LCT", platform));
  std::vector<std::string> lines = CrLfLines(folder / "c.LCT");
  ASSERT_EQ(lines.size(), 31u);
  EXPECT_EQ(lines[18], "-.5  0 ");
  EXPECT_EQ(lines[21], "* Element type, L, Ltolerance, C, Ctolerance");
  for (int i = 22; i <= 24; ++i) EXPECT_EQ(lines[i].substr(0, 4), " 4  ") << i;
  EXPECT_EQ(lines[25], "* Lin or log, Fstart, Fstop, Fstep or NrIntervals:");

  d.Stages = 0;
  ASSERT_TRUE(WritePallisFile(d, folder / "c.LCT", platform));
  lines = CrLfLines(folder / "c.LCT");
  ASSERT_EQ(lines.size(), 23u);  // an old, longer file is replaced
  EXPECT_EQ(lines[15], "* Gj, Hj:");
  EXPECT_EQ(lines[16], "* Element type, L, Ltolerance, C, Ctolerance");
}

TEST(PallisFile, FailuresShowTheMessage) {
  TempFolder folder;
  RecordingPlatform platform;
  DesignRecord d = FifthOrderLowpass();

  // A cancelled dialog: no file, the message, and the empty name is kept.
  d.FileName = folder / "old.LCT";
  SavePallisFromDialog(d, platform);
  ASSERT_EQ(platform.dialogs.size(), 1u);
  EXPECT_EQ(platform.dialogs[0].title, "Save Pallis file");
  EXPECT_EQ(platform.dialogs[0].filter, "Pallis files (*.LCT)|*.LCT");
  EXPECT_EQ(d.FileName, "");
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, "We did not write an Pallis file.");

  // A folder that is a regular file, and a folder standing at the path.
  testing::WriteWhole(folder / "plain", "x");
  EXPECT_FALSE(WritePallisFile(d, folder / "plain/a.LCT", platform));
  std::filesystem::create_directory(folder / "dir.LCT");
  EXPECT_FALSE(WritePallisFile(d, folder / "dir.LCT", platform));
  EXPECT_EQ(platform.messages.size(), 3u);
  EXPECT_TRUE(std::filesystem::is_directory(folder / "dir.LCT"));

  // A zero Rsource stops before the resistance line; what was written stays.
  d.Rsource = 0;
  EXPECT_FALSE(WritePallisFile(d, folder / "z.LCT", platform));
  EXPECT_EQ(platform.messages.size(), 4u);
  const std::vector<std::string> lines = CrLfLines(folder / "z.LCT");
  ASSERT_EQ(lines.size(), 12u);
  EXPECT_EQ(lines.back(), "* Rsource, Rload, Rratio, Rstandard:");
}

TEST(PallisFile, DialogNameIsKeptAndWritten) {
  TempFolder folder;
  RecordingPlatform platform;
  DesignRecord d = FifthOrderLowpass();
  d.FileName = "last.LCT";
  platform.dialogAnswer = folder / "chosen.LCT";
  SavePallisFromDialog(d, platform);
  EXPECT_EQ(platform.dialogs.at(0).proposedName, "last.LCT");
  EXPECT_EQ(d.FileName, folder / "chosen.LCT");
  EXPECT_TRUE(platform.messages.empty());
  EXPECT_EQ(CrLfLines(d.FileName).size(), 33u);
}

}  // namespace
}  // namespace drenik
