#include "core/last_session.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "support/recording_platform.h"
#include "support/temp_folder.h"

namespace drenik {
namespace {

namespace fs = std::filesystem;

constexpr const char* kMessage = "We did not read the last-session file.";
constexpr const char* kDefaults = "5,4200000,2,.044,40,\"Cinlowpass\",50,1000000";

class SessionFile : public ::testing::Test {
 protected:
  void Put(const std::string& content) { testing::WriteWhole(file, content); }
  std::string Get() const { return testing::ReadWhole(file); }
  static DesignRecord Sample() {
    DesignRecord d;
    EXPECT_TRUE(ParseLastSession("7,1E+10,3,.2,60,\"Linhighpass\",75.5,123.4", d));
    return d;
  }

  testing::TempFolder temp;
  fs::path folder = temp.Path();
  std::string file = temp / kLastSessionFile;
  testing::RecordingPlatform platform;
};

TEST_F(SessionFile, WritesTheLineAndReadsItBackInAnySpelling) {
  const DesignRecord written = Sample();
  WriteLastSession(written, platform, file);
  EXPECT_EQ(Get(), "7,1E+10,3,.2,60,\"Linhighpass\",75.5,123.4\r\n");
  DesignRecord read;
  ReadLastSession(read, file);
  EXPECT_EQ(LastSessionLine(read), LastSessionLine(written));
  EXPECT_EQ(read.Width, 1e10f);
  EXPECT_TRUE(platform.messages.empty());
  WriteLastSession(written, platform, (folder / "missing" / kLastSessionFile).string());
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, kMessage);

  // Other spellings are read and odd values kept.
  Put("4 , 0.044E+8,9,0.01,-3, Linlowpass ,+50,1e6\n");
  DesignRecord d;
  ReadLastSession(d, file);
  EXPECT_EQ(LastSessionLine(d), "4,4400000,9,.01,-3,\"Linlowpass\",50,1000000");

  // Part models that are not the ideal parts follow the band pair (0,0 for
  // a lowpass); nonsense there leaves ideal parts but keeps the design.
  d.InductorQLaw = QLaw::Sqrt, d.CapacitorQ = 300, d.WindingCapacitance = 5e-13f;
  const std::string line = LastSessionLine(d);
  EXPECT_EQ(line, "4,4400000,9,.01,-3,\"Linlowpass\",50,1000000,0,0,1,300,5E-13,0");
  DesignRecord back;
  ASSERT_TRUE(ParseLastSession(line, back));
  EXPECT_EQ(LastSessionLine(back), line);
  ASSERT_TRUE(ParseLastSession(line.substr(0, line.rfind(",1,300")) + ",3,300,0,0", back));
  EXPECT_TRUE(back.InductorQLaw == QLaw::Constant && back.WindingCapacitance == 0 &&
              back.Width == 4.4e6f);

  // The chosen parts' setup and the tolerance window's mask follow the
  // part models (zero-filled when ideal); a line without them keeps none,
  // nonsense there keeps none but the design.
  d = Sample();
  d.KeptCapacitorSeries = 12, d.KeptWinding = "T50-6";
  d.KeptMask = {1, 14.35e6f, 0, 17, 0, 28.7e6f, 0, 50};
  const std::string kept = LastSessionLine(d);
  EXPECT_EQ(kept,
            "7,1E+10,3,.2,60,\"Linhighpass\",75.5,123.4,0,0,0,0,0,0,12,0,0,\"T50-6\",1,"
            "1.435E+07,0,17,0,2.87E+07,0,50,0,0,0,0,0,0");
  ASSERT_TRUE(ParseLastSession(kept, back));
  EXPECT_EQ(LastSessionLine(back), kept);
  ASSERT_TRUE(ParseLastSession(LastSessionLine(Sample()), back));
  EXPECT_TRUE(back.KeptWinding.empty() && back.KeptCapacitorSeries == 0 && back.KeptMask[0] == 0);
  for (const char* bad :
       {",0,0,0,0,0,0,12,0,2,\"T50-6\"", ",0,0,0,0,0,0,-6,0,0,0", ",0,0,0,0,0,0,12,0,0,\"T50-6\",5",
        ",0,0,0,0,0,0,12,0,0,\"T50-6\",1,-5"}) {
    std::string line = LastSessionLine(Sample()) + bad;
    while (std::count(line.begin(), line.end(), ',') < 31) line += ",0";
    ASSERT_TRUE(ParseLastSession(line, back)) << line;
    EXPECT_TRUE(back.KeptCapacitorSeries == 0 && back.KeptWinding.empty() &&
                back.KeptMask[0] == 0 && back.Order == 7)
        << line;
  }

  // A comma inside the quotes belongs to the topology; later lines are ignored.
  EXPECT_TRUE(ParseLastSession("0,0,0,0,0,\"a,b\",0,0\r\ngarbage", d));
  EXPECT_TRUE(d.Topology == "a,b" && d.Order == 0) << d.Topology;
}

TEST_F(SessionFile, AnyFaultGivesAllDefaults) {
  const char* faulty[] = {
      "",
      "7,1E+10,3,.2,60",                             // five fields
      "7,1E+10,3,.2,60,\"Linhighpass\",75,x",        // garbage number
      "7.5,1E+10,3,.2,60,\"Linhighpass\",75,123",    // not an integer
      "40000,1E+10,3,.2,60,\"Linhighpass\",75,123",  // beyond 16 bits
      "7,1E+50,3,.2,60,\"Linhighpass\",75,123",      // beyond the float range
      "7,inf,3,.2,60,\"Linhighpass\",75,123",        // not a number text
      "7,1E+10,3,.2,60,\"Linhighpass,75,123",        // unclosed quote
      "7,1E+10,3,.2,60,\"Lin\"high\"pass\",75,123",  // stray quotes
      "\x01\xff\xfe garbage \x00",
      "7,1E+10,3,.2,60,\"Linhighpass\",75,123,7E+06",      // a centre without its inductance
      "7,1E+10,3,.2,60,\"Linhighpass\",75,123,nan,1E-06",  // a centre that is no number
  };
  for (const char* content : faulty) {
    SCOPED_TRACE(content);
    Put(content);
    DesignRecord d = Sample();
    EXPECT_FALSE(ParseLastSession(Get(), d));
    EXPECT_EQ(d.Topology, "Linhighpass");  // a failed parse leaves the record alone
    d.CapacitorQ = 300;                    // nor are part models kept
    ReadLastSession(d, file);
    EXPECT_EQ(LastSessionLine(d), kDefaults);
  }
  // A missing file, a folder, a FIFO (which must not wait for a writer: the
  // alarm ends a hung test) and a valid line in a file too large for one.
  mkfifo((folder / "fifo").c_str(), 0644);
  Put(LastSessionLine(Sample()) + std::string(100000, ' '));
  alarm(10);
  for (const fs::path& odd : {folder / "missing.dat", folder, folder / "fifo", fs::path(file)}) {
    DesignRecord d = Sample();
    ReadLastSession(d, odd.string());
    EXPECT_EQ(LastSessionLine(d), kDefaults);
  }
  // Nor does Exit wait for a reader of a FIFO: the session is not kept.
  WriteLastSession(Sample(), platform, (folder / "fifo").string());
  alarm(0);
  ASSERT_EQ(platform.messages.size(), 1u);
  EXPECT_EQ(platform.messages[0].text, kMessage);
}

}  // namespace
}  // namespace drenik
