#include "export/pallis_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/number_text.h"
#include "export/writers.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik {
namespace {

using testing::CrLfLines;

// A fifth-order C-input lowpass: shunt C at odd positions, series L at even.
DesignRecord FifthOrderLowpass() {
  DesignRecord d;
  d.Topology = "Cinlowpass";
  d.CauerType = "C";
  d.Stages = 5;
  d.Width = 4500000;
  d.Apass = 0.01f;
  d.Rsource = d.Rload = d.Rstandard = 50;
  d.Qind = 1000000;
  d.Qcap = 5000;
  for (int j = 1; j <= 5; ++j) {
    d.G[j] = j == 3 ? -0.5f : 1.25f * j;
    d.ElementType[j] = j % 2 == 1 ? 4 : 1;
    (j % 2 == 1 ? d.C : d.L)[j] = 1.5e-9f;
  }
  d.Fstart = 900000;
  d.Fstop = 22500000;
  d.NrIntervals = 1000;
  d.GraphScale = 0.5f;
  return d;
}

TEST(PallisFile, WritesEveryLineInOrder) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d = FifthOrderLowpass();
  ASSERT_TRUE(WritePallisFile(d, folder / "a.LCT", platform));
  const std::string v = ValueText(1.5e-9f);
  const std::vector<std::string> lines = CrLfLines(folder / "a.LCT");
  ASSERT_EQ(lines.size(), 33u);
  std::string data;  // every line but the "*" comments
  for (const std::string& line : lines)
    if (!line.starts_with("*")) data += line + "|";
  const std::string c = " 4  0  0 " + v + " 0 |", l = " 1 " + v + " 0  0  0 |";
  EXPECT_EQ(data,
            "Pallis file written by Drenikfilter|Drenik File|21.11.2026| (Expansion)|"
            " 11  5  5 A 0 | 4500000  0  0 | .01  0 | 50  50  1  50 | 1000000  5000 |"
            " 1.25  0 | 2.5  0 |-.5  0 | 5  0 | 6.25  0 |" +
                c + l + c + l + c + " 2  900000  2.25E+07  1000 | 60  0  1  1  .5  120  10  6 |N|");
  EXPECT_TRUE(platform.messages.empty());

  // Positions outside codes 1..8 keep their G/H line but get no element line.
  d.Topology = "Linhighpass";
  d.CauerFlag = 1;
  d.CauerType = "B";
  d.ElementType[2] = 0;
  d.ElementType[4] = 17;
  ASSERT_TRUE(WritePallisFile(d, folder / "a.LCT", platform));
  const std::vector<std::string> shorter = CrLfLines(folder / "a.LCT");
  ASSERT_EQ(shorter.size(), 31u);  // the old, longer file is replaced
  EXPECT_EQ(shorter[6], " 11  5  5 J 2 ");
  EXPECT_EQ(shorter[24] + "|", c);
  EXPECT_EQ(shorter[25], lines[27]);
}

TEST(PallisFile, DialogAndFailures) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d = FifthOrderLowpass();
  d.FileName = "last.LCT";
  platform.dialogAnswer = folder / "chosen.LCT";
  SavePallisFromDialog(d, platform);
  ASSERT_EQ(platform.dialogs.size(), 1u);
  EXPECT_EQ(platform.dialogs[0].title, "Save Pallis file");
  EXPECT_EQ(platform.dialogs[0].filter, "Pallis files (*.LCT)|*.LCT");
  EXPECT_EQ(platform.dialogs[0].proposedName, "last.LCT");
  EXPECT_EQ(CrLfLines(d.FileName).size(), 33u);
  EXPECT_TRUE(platform.messages.empty());

  platform.dialogAnswer = "";  // cancelled: the empty name is kept, no file
  SavePallisFromDialog(d, platform);
  EXPECT_EQ(d.FileName, "");
  testing::WriteWhole(folder / "plain", "x");
  EXPECT_FALSE(WritePallisFile(d, folder / "plain/a.LCT", platform));
  std::filesystem::create_directory(folder / "dir.LCT");
  EXPECT_FALSE(WritePallisFile(d, folder / "dir.LCT", platform));
  // A zero Rsource stops before the resistance line; what was written stays.
  d.Rsource = 0;
  EXPECT_FALSE(WritePallisFile(d, folder / "z.LCT", platform));
  EXPECT_EQ(CrLfLines(folder / "z.LCT").size(), 12u);
  ASSERT_EQ(platform.messages.size(), 4u);
  for (const auto& m : platform.messages) EXPECT_EQ(m.text, "We did not write an Pallis file.");
}

}  // namespace
}  // namespace drenik
