// Elliptic designs through the real chain: prototype, denormalization into
// each of the four topologies, and the sweep of the lossless ladder. Every
// part must come out positive and finite, and the analysed response must keep
// the ripple in the passband and the depth in the stopband.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "analysis/sweep.h"
#include "support/recording_platform.h"
#include "synthesis/denormalize.h"
#include "synthesis/prototypes.h"

namespace drenik {
namespace {

using testing::RecordingPlatform;

TEST(CauerLadders, EveryTopologyKeepsRippleDepthAndPositiveParts) {
  const char* const topologies[] = {"Cinlowpass", "Linlowpass", "Cinhighpass", "Linhighpass"};
  RecordingPlatform platform;
  for (int order = 3; order <= 7; ++order) {
    for (float ripple : {0.01f, 0.044f, 0.2f}) {
      for (float depth : {30.f, 40.f, 50.f, 60.f}) {
        for (const char* topology : topologies) {
          const std::string label = std::string(topology) + " order " + std::to_string(order) +
                                    " Ap " + std::to_string(ripple) + " As " +
                                    std::to_string(depth);
          DesignRecord d;
          d.Pi = static_cast<float>(4 * std::atan(1.0));
          d.TwoPi = static_cast<float>(8 * std::atan(1.0));
          d.Family = kCauer;
          d.CauerType = "C";
          d.Order = static_cast<int16_t>(order);
          d.Topology = topology;
          d.Apass = ripple;
          d.Astop = depth;
          d.Width = 1e6f;
          d.Rsource = 50;
          // Practically lossless parts, so the response is the prototype's.
          d.Qind = 1e12f;
          d.Qcap = 1e12f;
          DesignPrototype(d, platform);
          Denormalize(d);
          ASSERT_EQ(d.Stages, order) << label;
          for (int k = 1; k <= d.Stages; ++k) {
            const int code = d.ElementType[k];
            ASSERT_TRUE(code >= 1 && code <= 8) << label << " position " << k;
            const bool hasL = code == 1 || code == 2 || code >= 6;
            const bool hasC = code == 3 || code == 4 || code >= 6;
            if (hasL) {
              EXPECT_TRUE(std::isfinite(d.L[k]) && d.L[k] > 0) << label << " L" << k;
            }
            if (hasC) {
              EXPECT_TRUE(std::isfinite(d.C[k]) && d.C[k] > 0) << label << " C" << k;
            }
          }
          // Even orders cannot have equal terminations.
          if (order % 2 == 0)
            EXPECT_NE(d.Rload, d.Rsource) << label;
          else
            EXPECT_FLOAT_EQ(d.Rload, d.Rsource) << label;

          d.Fstart = d.Width / 20;
          d.Fstop = d.Width * 20;
          d.NrIntervals = 2000;
          AnalyzeSweep(d, platform);
          const bool highpass = std::string(topology).find("highpass") != std::string::npos;
          const double edge = d.FstopNormalized;
          double passLoss = 0, stopLoss = 1e9;
          for (int i = 0; i <= d.NrIntervals; ++i) {
            // Frequency as seen by the lowpass prototype (highpass mirrors it).
            double f = d.Freq[i] / d.Width;
            if (highpass) f = 1 / f;
            const double loss = -d.Transmission[i];
            if (f <= 1) passLoss = std::max(passLoss, loss);
            if (f >= edge * 1.0001) stopLoss = std::min(stopLoss, loss);
          }
          EXPECT_LE(passLoss, ripple + 0.002) << label;
          EXPECT_GE(passLoss, ripple * 0.8) << label;
          EXPECT_GE(stopLoss, depth - 0.01) << label;
        }
      }
    }
  }
  EXPECT_TRUE(platform.messages.empty());
}

}  // namespace
}  // namespace drenik
