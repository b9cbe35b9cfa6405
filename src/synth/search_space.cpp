#include "synth/search_space.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "synth/order_bounds.h"

namespace drenik {
namespace {

// Three significant figures, rounded down: a ripple that keeps its
// promise and reads short.
double RoundedDown(double v) {
  const double scale = std::pow(10.0, std::floor(std::log10(v)) - 2);
  // Through the decimal text, so the value is the one its words say.
  char text[32];
  std::snprintf(text, sizeof text, "%.3g", std::floor(v / scale * (1 + 1e-12)) * scale);
  return std::strtod(text, nullptr);
}

}  // namespace

std::vector<const FamilyInfo*> SearchFamilies(const SynthGoal& g) {
  std::vector<const FamilyInfo*> out;
  for (const FamilyInfo& f : Families()) {
    const bool listed = std::find(g.families.begin(), g.families.end(), f.code) != g.families.end();
    if (g.families.empty() ? f.orderChoice : listed) out.push_back(&f);
  }
  return out;
}

std::vector<std::string> SearchTopologies(const SynthRequest& r) {
  std::vector<std::string> out;
  for (const TopologyInfo& t : Topologies()) {
    const bool listed = std::find(r.goal.topologies.begin(), r.goal.topologies.end(), t.name) !=
                        r.goal.topologies.end();
    if (TopologyOf(t, r.response) && (r.goal.topologies.empty() || listed)) out.push_back(t.name);
  }
  return out;
}

// The ripples an equal-ripple family is tried at: the passband's return
// loss (or loss) kept 3, 6 and 10 dB inside its limit. Tolerances eat the
// return loss first; the MC decides how much of it the build needs.
std::vector<double> RippleChoices(const SynthRequest& r, const FamilyInfo& f) {
  if (!f.ripple.Offered()) return {0.044};
  std::vector<double> out;
  for (double inside : {3.0, 6.0, 10.0}) {
    double ripple = f.ripple.high;
    if (r.mask.passRl) ripple = std::min(ripple, LossOfReturnLoss(*r.mask.passRl + inside));
    if (r.mask.passIl) ripple = std::min(ripple, *r.mask.passIl / (1 + inside / 3));
    ripple = std::clamp(RoundedDown(ripple), f.ripple.low, f.ripple.high);
    if (out.empty() || out.back() != ripple) out.push_back(ripple);
  }
  return out;
}

// The depths an elliptic family is tried at: the deepest stop check and a
// little, some and much more (a deeper stopband widens the transition).
std::vector<double> DepthChoices(const SynthRequest& r, const FamilyInfo& f) {
  if (!f.depth.Offered()) return {40};
  double deepest = 0;
  for (const StopCheck& s : r.mask.stops) deepest = std::max(deepest, s.depth);
  std::vector<double> out;
  for (double more : {3.0, 8.0, 15.0}) {
    const double depth = std::clamp(std::ceil(deepest + more), f.depth.low, f.depth.high);
    if (out.empty() || out.back() != depth) out.push_back(depth);
  }
  return out;
}

}  // namespace drenik
