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

bool Has(const Lines& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

// Shunt C, series L, shunt C: blocks at X = 224, 336, 480, the load at 592.
TEST(LtspiceFile, ThirdOrderLowpassBlocksAndLoad) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
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
  EXPECT_FLOAT_EQ(d.GraphScale, 0.12566371f);
  const Lines load = {"SYMBOL res  672  144 R0",  "SYMATTR InstName RL",
                      "SYMATTR Value 50 ",        "WIRE  592  80  688  80 ",
                      "WIRE  688  80  688  160 ", "WIRE  592  336  688  336 ",
                      "WIRE  688  336  688  160 "};
  EXPECT_EQ(Lines(lines.end() - load.size(), lines.end()), load);

  // Codes 5 and 8 have blocks of their own; other codes are reported once
  // per stage and skipped, and the file is still written.
  d.SchematicWidth = 1234.5f;
  d.Stages = 7;
  d.ElementType = {0, 1, 2, 3, 5, 6, 7, 8};
  ASSERT_TRUE(WriteLtspiceFile(d, folder / "b.ASC", platform));
  EXPECT_EQ(d.X, 224 + 144 + 96 + 144 + 256 + 176 + 208 + 352);
  const Lines wide = CrLfLines(folder / "b.ASC");
  EXPECT_EQ(wide[1], "SHEET 1  1234.5  600");
  for (const char* name : {"L4", "C4", "L7", "C7"})
    EXPECT_TRUE(Has(wide, std::string("SYMATTR InstName ") + name)) << name;
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
