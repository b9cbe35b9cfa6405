// The parts list: LTspice designators, pairs as A and B, equal parts grouped
// with their quantity, and a failure that leaves nothing behind.
#include <gtest/gtest.h>

#include <filesystem>

#include "parts/parts_list.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik::testing {
namespace {

PositionParts Part(int position, std::vector<double> capacitors, double inductor) {
  PositionParts p;
  p.position = position;
  p.capacitors = std::move(capacitors);
  p.inductor = inductor;
  return p;
}

TEST(PartsList, GroupsEqualPartsUnderTheSchematicDesignators) {
  PartsChoice c;
  c.positions = {Part(1, {6.8e-10, 5.6e-11}, 0), Part(2, {}, 2.52674e-6), Part(3, {1.3e-9}, 0),
                 Part(4, {6.8e-10}, 3.9e-7), Part(5, {}, 2.52674e-6)};
  TempFolder folder;
  RecordingPlatform platform;
  const std::string path = folder / "parts.csv";
  ASSERT_TRUE(WritePartsList(c, path, platform));
  EXPECT_EQ(ReadWhole(path),
            "Reference,Value,Series,Tolerance,Quantity\r\n"
            "C1A C4,680pF,E24,5%,2\r\n"
            "C1B,56pF,E24,5%,1\r\n"
            "C3,1300pF,E24,5%,1\r\n"
            "L2 L5,2.52674uH,exact,,2\r\n"
            "L4,390nH,exact,,1\r\n");

  c.request = {ESeries::E96, ESeries::E12, true};
  c.positions = {Part(2, {1.02e-9}, 2.7e-6)};
  const std::vector<PartsListLine> lines = PartsList(c);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].value + " " + lines[0].series + " " + lines[0].tolerance, "1020pF E96 1%");
  EXPECT_EQ(lines[1].references, std::vector<std::string>{"L2"});
  EXPECT_EQ(lines[1].value + " " + lines[1].series + " " + lines[1].tolerance, "2.7uH E12 10%");

  EXPECT_FALSE(WritePartsList(c, folder / "missing/parts.csv", platform));
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, kPartsListFailure);
  EXPECT_FALSE(std::filesystem::exists(folder / "missing"));
}

}  // namespace
}  // namespace drenik::testing
