// The file writers line by line, Touchstone read back, failures that keep the old file.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/sweep.h"
#include "core/formatters.h"
#include "core/number_text.h"
#include "export/ltspice_file.h"
#include "export/pallis_file.h"
#include "export/touchstone.h"
#include "export/writers.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik {
namespace {

using testing::CrLfLines;
using Lines = std::vector<std::string>;

// A fifth-order C-input lowpass: shunt C at odd positions, series L at even.
TEST(PallisFile, LinesDialogAndFailures) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d;
  d.Topology = "Cinlowpass", d.CauerType = "C", d.Stages = 5, d.Width = 4500000, d.Apass = 0.01f;
  d.Rsource = d.Rload = d.Rstandard = 50, d.Qind = 1000000, d.Qcap = 5000;
  for (int j = 1; j <= 5; ++j) {
    d.G[j] = j == 3 ? -0.5f : 1.25f * j;
    d.ElementType[j] = j % 2 == 1 ? 4 : 1;
    (j % 2 == 1 ? d.C : d.L)[j] = 1.5e-9f;
  }
  d.Fstart = 900000, d.Fstop = 22500000, d.NrIntervals = 1000, d.GraphScale = 0.5f;
  ASSERT_TRUE(WritePallisFile(d, folder / "a.LCT", platform));
  const std::string v = ValueText(1.5e-9f);
  const Lines lines = CrLfLines(folder / "a.LCT");
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

  // Over the longer file: codes outside 1..8 keep G/H but get no element line.
  d.Topology = "Linhighpass", d.CauerFlag = 1, d.CauerType = "B";
  d.ElementType[2] = 0, d.ElementType[4] = 17;
  ASSERT_TRUE(WritePallisFile(d, folder / "a.LCT", platform));
  const Lines shorter = CrLfLines(folder / "a.LCT");
  ASSERT_EQ(shorter.size(), 31u);  // the old, longer file is replaced
  EXPECT_EQ(shorter[6], " 11  5  5 J 2 ");
  EXPECT_EQ(shorter[24] + "|", c);
  EXPECT_EQ(shorter[25], lines[27]);
  EXPECT_TRUE(platform.messages.empty());

  EXPECT_FALSE(WritePallisFile(d, "", platform));  // a cancelled dialog's empty name
  testing::WriteWhole(folder / "plain", "x");
  EXPECT_FALSE(WritePallisFile(d, folder / "plain/a.LCT", platform));
  std::filesystem::create_directory(folder / "dir.LCT");
  EXPECT_FALSE(WritePallisFile(d, folder / "dir.LCT", platform));
  // A zero Rsource stops before the resistance line; the old file stays.
  d.Rsource = 0;
  EXPECT_FALSE(WritePallisFile(d, folder / "a.LCT", platform));
  EXPECT_EQ(CrLfLines(folder / "a.LCT"), shorter);
  ASSERT_EQ(platform.messages.size(), 4u);
  for (const auto& m : platform.messages) EXPECT_EQ(m.text, "We did not write an Pallis file.");
}

bool Has(const Lines& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

// Shunt C, series L, shunt C: blocks at X = 224, 336, 480, the load at 592.
TEST(LtspiceFile, ThirdOrderLowpassBlocksAndLoad) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d;
  d.Pi = 3.14159265f, d.Stages = 3, d.ElementType = {0, 4, 1, 4}, d.C[1] = d.C[3] = 1e-9f;
  d.L[2] = 2e-6f, d.Rsource = d.Rload = 50, d.Qind = 100, d.Width = 1000000;
  d.Fstart = 200000, d.Fstop = 5000000, d.SchematicWidth = 500;
  ASSERT_TRUE(WriteLtspiceFile(d, folder / "a.ASC", platform));
  EXPECT_TRUE(platform.messages.empty());
  const Lines lines = CrLfLines(folder / "a.ASC");
  ASSERT_GT(lines.size(), 2u);
  EXPECT_EQ(lines[0], "Version 4");
  EXPECT_EQ(lines[1], "SHEET 1  800  600");  // never narrower than 800
  for (const std::string& line :
       Lines{"TEXT 0 432 Left 0  !.AC DEC 100  200000  5000000 ", "SYMBOL cap  256  160 R0",
             "SYMATTR InstName C1", "SYMATTR Value " + FormatCapacitance(1e-9),
             "WIRE  224  80  336  80 ", "SYMBOL ind  352  96 R270", "SYMATTR InstName L2",
             "SYMATTR Value " + FormatInductance(2e-6),
             "SYMATTR SpiceLine Rser=.12566371",  // 2 pi 1 MHz 2 uH / 100
             "SYMBOL cap  512  160 R0", "SYMATTR InstName C3"})
    EXPECT_TRUE(Has(lines, line)) << line;
  const Lines load = {"SYMBOL res  672  144 R0",  "SYMATTR InstName RL",
                      "SYMATTR Value 50 ",        "WIRE  592  80  688  80 ",
                      "WIRE  688  80  688  160 ", "WIRE  592  336  688  336 ",
                      "WIRE  688  336  688  160 "};
  EXPECT_EQ(Lines(lines.end() - load.size(), lines.end()), load);

  // Codes 5 and 8 have blocks of their own; other codes are reported per stage and skipped.
  d.SchematicWidth = 1234.5f, d.Stages = 7, d.ElementType = {0, 1, 2, 3, 5, 6, 7, 8};
  d.L.fill(1e-6f), d.C.fill(1e-9f);
  ASSERT_TRUE(WriteLtspiceFile(d, folder / "b.ASC", platform));
  const Lines wide = CrLfLines(folder / "b.ASC");
  EXPECT_EQ(wide[1], "SHEET 1  1234.5  600");
  for (const char* name : {"L4", "C4", "L7", "C7"})
    EXPECT_TRUE(Has(wide, std::string("SYMATTR InstName ") + name)) << name;
  EXPECT_TRUE(platform.messages.empty());

  d.Stages = 3, d.ElementType = {0, 0, 4, 17};
  ASSERT_TRUE(WriteLtspiceFile(d, folder / "b.ASC", platform));
  EXPECT_TRUE(Has(CrLfLines(folder / "b.ASC"), "SYMATTR InstName C2"));
  ASSERT_EQ(platform.messages.size(), 2u);
  EXPECT_EQ(platform.messages[0].text,
            "The element at stage 1 was not written to the file.\n"
            "In addition to the input and output terminations,\n"
            "only capacitors and inductors in the filter are\n"
            "written to the schematic file.");
  EXPECT_TRUE(platform.messages[1].text.starts_with("The element at stage 3 "));
}

// A lossy third-order Butterworth ladder (1 MHz, 50 to 75 ohms), and one of every other kind.
TEST(Touchstone, ReadsBackToTheAnalysis) {
  for (bool resonant : {false, true}) {
    DesignRecord d;
    d.Pi = 3.14159265f, d.TwoPi = 2 * d.Pi, d.Rsource = d.Rload = d.Rstandard = 50;
    d.Fstart = 2e5f, d.Fstop = 5e6f, d.NrIntervals = 200;
    if (resonant) {
      d.Stages = 5, d.ElementType = {0, 3, 6, 2, 7, 4}, d.Qind = 80, d.Qcap = 500;
      d.L = {0, 0, 3e-6f, 9e-6f, 4e-6f, 0};
      d.C = {0, 2e-9f, 2.5e-9f, 0, 1e-9f, 3e-9f};
    } else {
      d.Stages = 3, d.ElementType = {0, 4, 1, 4}, d.Qind = 50, d.Qcap = kInfiniteQcap, d.Rload = 75;
      d.L = {0, 0, 1.5915494e-5f};
      d.C = {0, 3.1830989e-9f, 0, 3.1830989e-9f};
    }
    testing::TempFolder folder;
    testing::RecordingPlatform platform;
    ASSERT_TRUE(AnalyzeSweep(d).Ok());
    ASSERT_TRUE(WriteTouchstone(d, folder / "a.s2p", platform));
    std::string keywords;  // comments dropped
    std::vector<std::vector<double>> rows;
    for (const std::string& line : CrLfLines(folder / "a.s2p")) {
      if (line.empty() || line[0] == '!') continue;
      std::istringstream in(line);
      if (line[0] == '[' || line[0] == '#')
        keywords += line + "|";
      else
        rows.emplace_back(std::istream_iterator<double>(in), std::istream_iterator<double>());
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
  d.NrIntervals = 1, d.Freq = {1e6f, 1.2345678e7f}, d.Transmission = {0, -0.2f};
  d.Reflection = {-20.5f, -20.5f}, d.VSWR = {1.2f, 1.2f};
  d.Delay = {1.5e-7f, 1.5e-7f}, d.Phase = {-90, -90};
  ASSERT_TRUE(WriteSweepCsv(d, folder / "a.csv", platform));
  const Lines expected = {"frequency_hz,transmission_db,reflection_db,vswr,delay_s,phase_deg",
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
       [](DesignRecord& d) { d.Stages = kMaxPositions + 1; }},
      {WriteTouchstone, "We could not write the Touchstone file",
       [](DesignRecord& d) { d.Rload = 0; }},
      {WriteSweepCsv, "We could not write the CSV file",
       [](DesignRecord& d) { d.NrIntervals = 3000; }},
  };
  for (const auto& c : cases) {
    testing::TempFolder folder;
    testing::RecordingPlatform platform;
    DesignRecord d;
    d.Rsource = d.Rload = 50, d.Qind = 1e6f, d.NrIntervals = 10;
    EXPECT_FALSE(c.write(d, "", platform));  // a cancelled dialog
    testing::WriteWhole(folder / "old", "old");
    c.spoil(d);
    EXPECT_FALSE(c.write(d, folder / "old", platform));
    EXPECT_EQ(testing::ReadWhole(folder / "old"), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
    ASSERT_EQ(platform.messages.size(), 2u);
    for (const auto& m : platform.messages) EXPECT_EQ(m.text, c.message);
  }
}

}  // namespace
}  // namespace drenik
