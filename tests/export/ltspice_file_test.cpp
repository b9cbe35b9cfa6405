#include "export/ltspice_file.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/formatters.h"
#include "export/writers.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik {
namespace {

using testing::CrLfLines;
using Lines = std::vector<std::string>;

// Shunt C, series L, shunt C: a third-order C-input lowpass.
DesignRecord ThirdOrderLowpass() {
  DesignRecord d;
  d.Pi = 3.14159265f;
  d.Stages = 3;
  d.ElementType = {0, 4, 1, 4};
  d.C[1] = d.C[3] = 1e-9f;
  d.L[2] = 2e-6f;
  d.Rsource = d.Rload = 50;
  d.Qind = 100;
  d.Width = 1000000;
  d.Fstart = 200000;
  d.Fstop = 5000000;
  d.SchematicWidth = 500;
  return d;
}

bool Has(const Lines& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

TEST(LtspiceFile, ThirdOrderLowpass) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d = ThirdOrderLowpass();
  ASSERT_TRUE(WriteLtspiceFile(d, folder / "a.ASC", platform));
  EXPECT_TRUE(platform.messages.empty());
  const Lines lines = CrLfLines(folder / "a.ASC");
  const Lines head = {
      "Version 4", "SHEET 1  800  600",  // never narrower than 800
      "SYMBOL voltage  0  144 R0", "WINDOW 123 24 132 Left 0", "SYMATTR InstName Vgen",
      "SYMATTR Value AC 2", "SYMBOL res 208  64 R90", "WINDOW 0 0 56 Vbottom 0",
      "WINDOW 3 32 56 Vtop 0", "SYMATTR InstName RS", "SYMATTR Value 50 ", "WIRE  0  160  0  80 ",
      "WIRE  0  80  112  80 ", "WIRE  192  80  224  80 ", "WIRE  0  240  0  336 ",
      "WIRE  0  336  224  336 ", "WIRE  0  336  0  368 ", "FLAG  0  368 0",
      "TEXT 0 432 Left 0  !.AC DEC 100  200000  5000000 ",
      "TEXT 0 464 Left 0  ;Drawn by Drenik Filter - Drenik Filter Designer 2.12",
      "TEXT 0 496 Left 0 21.11.2026",
      // Stage 1 at X = 224.
      "SYMBOL cap  256  160 R0", "SYMATTR InstName C1", "SYMATTR Value " + FormatCapacitance(1e-9),
      "WIRE  224  80  336  80 ", "WIRE  272  80  272  160 ", "WIRE  272  224  272  336 ",
      "WIRE  224  336  336  336 ", "TEXT  272 368 Center 0 ; 1 ",
      // Stage 2 at X = 336.
      "SYMBOL ind  352  96 R270", "WINDOW 0 32 56 Vtop 0", "WINDOW 3 5 56 Vbottom 0",
      "SYMATTR InstName L2", "SYMATTR Value " + FormatInductance(2e-6),
      "SYMATTR SpiceLine Rser=.12566371"};  // 2 pi 1 MHz 2 uH / 100
  ASSERT_GT(lines.size(), head.size());
  EXPECT_EQ(Lines(lines.begin(), lines.begin() + head.size()), head);
  EXPECT_FLOAT_EQ(d.GraphScale, 0.12566371f);
  EXPECT_TRUE(Has(lines, "SYMBOL cap  512  160 R0"));  // stage 3 at X = 480
  EXPECT_TRUE(Has(lines, "SYMATTR InstName C3"));
  const Lines load = {"SYMBOL res  672  144 R0",  "SYMATTR InstName RL",
                      "SYMATTR Value 50 ",        "WIRE  592  80  688  80 ",
                      "WIRE  688  80  688  160 ", "WIRE  592  336  688  336 ",
                      "WIRE  688  336  688  160 "};
  EXPECT_EQ(Lines(lines.end() - load.size(), lines.end()), load);
}

// Codes 5 and 8 have blocks of their own; other codes are reported once per
// stage and skipped, and the file is still written.
TEST(LtspiceFile, BlockAdvancesAndUnknownCodes) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  DesignRecord d = ThirdOrderLowpass();
  d.SchematicWidth = 1234.5f;
  d.Stages = 7;
  d.ElementType = {0, 1, 2, 3, 5, 6, 7, 8};
  ASSERT_TRUE(WriteLtspiceFile(d, folder / "b.ASC", platform));
  EXPECT_EQ(d.X, 224 + 144 + 96 + 144 + 256 + 176 + 208 + 352);
  Lines lines = CrLfLines(folder / "b.ASC");
  EXPECT_EQ(lines[1], "SHEET 1  1234.5  600");
  for (const char* name : {"L4", "C4", "L7", "C7"}) {
    EXPECT_TRUE(Has(lines, std::string("SYMATTR InstName ") + name)) << name;
  }
  EXPECT_TRUE(platform.messages.empty());

  d.Stages = 3;
  d.ElementType = {0, 0, 4, 17};
  ASSERT_TRUE(WriteLtspiceFile(d, folder / "b.ASC", platform));
  EXPECT_EQ(d.X, 224 + 112);
  EXPECT_TRUE(Has(CrLfLines(folder / "b.ASC"), "SYMATTR InstName C2"));
  ASSERT_EQ(platform.messages.size(), 2u);
  EXPECT_EQ(platform.messages[0].text,
            "The element at stage 1 was not written to the file.\n"
            "In addition to the input and output terminations,\n"
            "only capacitors and inductors in the filter are\n"
            "written to the schematic file.");
  EXPECT_TRUE(platform.messages[1].text.starts_with("The element at stage 3 "));
}

}  // namespace
}  // namespace drenik
