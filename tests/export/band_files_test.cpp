// The files of band designs: every LTspice schematic is one connected
// circuit, and the filter file carries the centre.

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include "export/writers.h"
#include "support/recording_platform.h"
#include "support/temp_folder.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {
namespace {

DesignRecord BandDesign(int16_t family, const char* topology) {
  DesignRecord d;
  d.Pi = 3.14159274f, d.TwoPi = 6.28318548f, d.Family = family, d.Order = 5;
  d.Topology = topology, d.CauerType = "C", d.Apass = 0.2f, d.Astop = 40;
  d.Rsource = 50, d.Rstandard = 50, d.Width = 3e5f, d.Center = 7.15e6f;
  d.Qind = 100, d.Qcap = kInfiniteQcap, d.Fstart = 6e6f, d.Fstop = 8e6f;
  d.CauerFlag = FindFamily(family)->resonantArms ? 1 : 0;
  EXPECT_TRUE(DesignPrototype(d).Ok());
  EXPECT_TRUE(Denormalize(d).Ok());
  return d;
}

// The two pins of an LTspice symbol at (x, y): ind and res at (16, 16) and
// (16, 96), cap at (16, 0) and (16, 64), voltage at (0, 16) and (0, 96),
// turned by R90 (x, y) -> (-y, x) or R270 (x, y) -> (y, -x).
using Point = std::pair<long, long>;
void AddPins(const std::string& kind, long x, long y, const std::string& rot,
             std::vector<Point>& pins) {
  std::vector<Point> local = kind == "cap"       ? std::vector<Point>{{16, 0}, {16, 64}}
                             : kind == "voltage" ? std::vector<Point>{{0, 16}, {0, 96}}
                                                 : std::vector<Point>{{16, 16}, {16, 96}};
  for (auto [px, py] : local) {
    if (rot == "R90") std::tie(px, py) = std::pair{-py, px};
    if (rot == "R270") std::tie(px, py) = std::pair{py, -px};
    pins.push_back({x + px, y + py});
  }
}

// Every wire end and every pin meets a wire end, a pin, a flag or a wire
// running through it.
void ExpectConnected(const std::string& asc, const std::string& what) {
  std::vector<std::pair<Point, Point>> wires;
  std::vector<Point> pins, flags;
  std::istringstream lines(asc);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream in(line);
    std::string word, kind, rot;
    long x1, y1, x2, y2;
    in >> word;
    if (word == "WIRE" && in >> x1 >> y1 >> x2 >> y2) wires.push_back({{x1, y1}, {x2, y2}});
    if (word == "SYMBOL" && in >> kind >> x1 >> y1 >> rot) AddPins(kind, x1, y1, rot, pins);
    if (word == "FLAG" && in >> x1 >> y1) flags.push_back({x1, y1});
  }
  auto touches = [&](Point p, const void* self) {
    int hits = 0;
    for (const auto& w : wires) {
      if (&w == self) continue;
      const auto [a, b] = w;
      const bool on =
          (a.first == b.first && p.first == a.first && std::min(a.second, b.second) <= p.second &&
           p.second <= std::max(a.second, b.second)) ||
          (a.second == b.second && p.second == a.second && std::min(a.first, b.first) <= p.first &&
           p.first <= std::max(a.first, b.first));
      hits += on;
    }
    for (const Point& q : pins) hits += q == p && self != &q;
    for (const Point& q : flags) hits += q == p;
    return hits > 0;
  };
  for (const auto& w : wires)
    for (const Point& end : {w.first, w.second})
      EXPECT_TRUE(touches(end, &w)) << what << ": wire end " << end.first << "," << end.second;
  for (const Point& p : pins)
    EXPECT_TRUE(touches(p, &p)) << what << ": pin " << p.first << "," << p.second;
}

TEST(BandFiles, LtspiceSchematicsConnectAndTheFilterFileHasTheCentre) {
  testing::TempFolder folder;
  testing::RecordingPlatform platform;
  for (const TopologyInfo& t : Topologies()) {
    if (!t.band) continue;
    for (int16_t family : {kChebyshev, kCauer}) {
      if (t.resonatorL && family == kCauer) continue;
      DesignRecord d = BandDesign(family, t.name);
      ASSERT_TRUE(WriteLtspiceFile(d, folder / "band.asc", platform));
      std::ifstream in(folder / "band.asc");
      std::stringstream text;
      text << in.rdbuf();
      ExpectConnected(text.str(), std::string(t.name) + " family " + std::to_string(family));
      // Each inductor's loss is worked out at the centre: 2 pi f0 L / Q.
      EXPECT_NE(text.str().find("Rser="), std::string::npos);
    }
    DesignRecord d = BandDesign(kChebyshev, t.name);
    ASSERT_TRUE(WritePallisFile(d, folder / "band.LCT", platform));
    std::ifstream lct(folder / "band.LCT");
    std::string line;
    for (int i = 0; i < 9; ++i) std::getline(lct, line);
    EXPECT_NE(line.find("7150000"), std::string::npos) << line;
  }
  EXPECT_TRUE(platform.messages.empty());
}

}  // namespace
}  // namespace drenik
