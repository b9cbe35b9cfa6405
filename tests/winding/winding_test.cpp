// Whole-turn windings on toroid cores and air-core forms.
#include "winding/winding.h"

#include <gtest/gtest.h>

#include <cmath>

namespace drenik {
namespace {

TEST(Winding, ToroidTurnsAreTheNearestWholeNumber) {
  const std::optional<Former> t50 = CoreNamed("T50-2");
  ASSERT_TRUE(t50);
  // sqrt(1000 / 4.9) = 14.3 turns for 1 uH: 14, which give 0.960 uH.
  const Winding w = WindingFor(*t50, 1e-6);
  EXPECT_EQ(w.turns, 14);
  EXPECT_NEAR(w.inductance, 14 * 14 * 4.9e-9, 1e-15);
  EXPECT_EQ(CoreNamed("t-50-2")->core, t50->core);
  for (const char* name : {"T37-2", "T68-2", "T200-2", "T50-6", "T130-6"})
    EXPECT_TRUE(CoreNamed(name)) << name;
  EXPECT_FALSE(CoreNamed("T51-2"));
  EXPECT_DOUBLE_EQ(CoreNamed("T68-2")->core->alNanohenry, 5.7);

  // The bracket holds v, and the winding is the nearer end by ratio.
  for (double v : {3e-8, 1e-7, 4.4e-7, 2.5e-6, 1.1e-5}) {
    const TurnsBracket b = TurnsAround(*t50, v);
    EXPECT_TRUE(b.lower <= v && v < b.upper) << v;
    const Winding n = WindingFor(*t50, v);
    EXPECT_LE(std::fabs(std::log(n.inductance / v)),
              std::fmin(std::log(v / b.lower), std::log(b.upper / v)) + 1e-12);
  }
  EXPECT_EQ(WindingFor(*t50, 1e-9).turns, 1);  // below one turn's 4.9 nH
}

TEST(Winding, AirCoreFollowsWheelerAndSaysWhereItDoesNot) {
  const std::optional<Former> form = AirCoreNamed("6:0.8");
  ASSERT_TRUE(form && !form->core);
  // 20 turns on 6.8 mm to the wire's centre, 16 mm long: Wheeler gives
  // 0.2677^2 400 / (18 0.2677 + 40 0.630) uH = 0.955 uH.
  EXPECT_NEAR(TurnsInductance(*form, 20), 0.955e-6, 0.001e-6);
  const Winding w = WindingFor(*form, 1e-6);
  EXPECT_NEAR(w.inductance, 1e-6, 0.05e-6);
  EXPECT_DOUBLE_EQ(w.lengthMm, w.turns * 0.8);
  EXPECT_TRUE(w.formulaHolds);
  // Two turns of thin wire on a 20 mm form: half a millimetre long.
  const Winding flat = WindingFor(*AirCoreNamed("20:0.3"), 1e-7);
  EXPECT_FALSE(flat.formulaHolds);
  for (const char* bad : {"6", "6:", ":0.8", "-6:0.8", "6:0", "a:b", "6:0.8x"})
    EXPECT_FALSE(AirCoreNamed(bad)) << bad;
}

}  // namespace
}  // namespace drenik
