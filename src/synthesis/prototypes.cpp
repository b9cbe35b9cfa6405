// Normalized lowpass prototypes (1-ohm source, cutoff 1 rad/s).
//
// All arithmetic is carried in double and every value is rounded to single
// precision where it is stored in the record. Pi is taken as 4*atan(1) in
// double wherever an angle is formed.

#include "synthesis/prototypes.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "synthesis/all_pole.h"
#include "synthesis/ladder_fit.h"

namespace drenik {
namespace {

double PiDouble() {
  return 4.0 * std::atan(1.0);
}

// Every prototype starts from a clean G(1..20), H(1..20). Index 0 and index
// 21 are left alone.
void ClearPrototype(DesignRecord& d) {
  for (int j = 1; j <= kPrototypePositions; ++j) {
    d.G[j] = 0;
    d.H[j] = 0;
  }
}

// The closed-form families write G(1..Order); the array ends at index 21.
std::string OrderFault(const DesignRecord& d) {
  if (d.Order > kPrototypeSlots - 1)
    return "Subscript out of range: the order " + std::to_string(d.Order) +
           " does not fit the prototype table.";
  return {};
}

// Maximally flat delay values for orders 3..7, largest element at the source
// end: the classic values for a ladder between equal 1-ohm terminations.
constexpr float kLinearPhaseTable[5][7] = {
    {2.2034f, 0.9705f, 0.3374f, 0, 0, 0, 0},
    {2.2404f, 1.0815f, 0.6725f, 0.2334f, 0, 0, 0},
    {2.2582f, 1.111f, 0.804f, 0.5072f, 0.1743f, 0, 0},
    {2.2645f, 1.1126f, 0.8538f, 0.6392f, 0.4002f, 0.1365f, 0},
    {2.2659f, 1.1052f, 0.869f, 0.702f, 0.5249f, 0.3259f, 0.1106f},
};

// A ladder between equal 1-ohm terminations fitted to the poles, from the
// start values g1..gn (index 0 unused), into G(1..Order).
EngineReport StoreAllPole(DesignRecord& d, const std::vector<std::complex<double>>& poles,
                          const std::vector<double>& start, const char* family) {
  const LadderForm form{.order = d.Order, .armZeros = {}, .freeLoad = false};
  const std::optional<LadderValues> fit =
      FitLadder(form, PoleTargetOf(poles, 1.0), {.element = start, .rload = 1});
  if (!fit)
    return EngineReport::Fault(std::string("The ") + family + " ladder of order " +
                               std::to_string(d.Order) + " could not be computed.");
  for (int j = 1; j <= d.Order; ++j) d.G[j] = static_cast<float>(fit->element[j]);
  return {};
}

}  // namespace

EngineReport MaximallyFlatPrototype(DesignRecord& d) {
  ClearPrototype(d);
  if (std::string fault = OrderFault(d); !fault.empty()) return EngineReport::Fault(fault);
  const int n = d.Order;
  for (int j = 1; j <= n; ++j) {
    d.G[j] = static_cast<float>(2.0 * std::sin((2.0 * j - 1.0) * PiDouble() / (2.0 * n)));
    d.H[j] = 0;
  }
  d.Apass = 0;
  d.Astop = 0;
  d.RloadNormalized = 1.0f;
  d.CauerFlag = 0;
  return {};
}

EngineReport EqualRipplePrototype(DesignRecord& d) {
  ClearPrototype(d);
  if (std::string fault = OrderFault(d); !fault.empty()) return EngineReport::Fault(fault);
  const int n = d.Order;
  if (n == 0) return EngineReport::Fault("Division by zero: the Chebyshev order is 0.");

  // The ripple factor is parked in RloadNormalized and read back from there,
  // so it carries single-precision rounding like every stored value.
  const double ripple = std::pow(10.0, 0.1 * static_cast<double>(d.Apass)) - 1.0;
  if (!(ripple > 0) || !std::isfinite(ripple))
    return EngineReport::Fault("Invalid procedure call: the Chebyshev ripple must be above 0 dB.");
  d.RloadNormalized = static_cast<float>(std::sqrt(ripple));
  const double eps = d.RloadNormalized;

  const double inv = 1.0 / eps;
  const double x = (1.0 / n) * std::log(inv + std::sqrt(inv * inv + 1.0));
  const double gamma = 0.5 * (std::exp(x) - std::exp(-x));

  double a[kPrototypeSlots] = {};
  double b[kPrototypeSlots] = {};
  for (int k = 1; k <= n; ++k) {
    a[k] = std::sin((2.0 * k - 1.0) * PiDouble() / (2.0 * n));
    const double s = std::sin(k * PiDouble() / n);
    b[k] = gamma * gamma + s * s;
  }
  if (n >= 1) d.G[1] = static_cast<float>(2.0 * a[1] / gamma);
  for (int k = 2; k <= n; ++k) {
    // The recursion continues from the stored (single-precision) g(k-1).
    d.G[k] = static_cast<float>(4.0 * a[k - 1] * a[k] / (b[k - 1] * d.G[k - 1]));
  }

  if (n % 2 == 0) {
    // Even orders cannot reach 0 dB at DC with equal terminations; the load
    // is (s - eps)^2 with s = sqrt(1 + eps^2), below the 1-ohm source.
    const double s = std::sqrt(eps * eps + 1.0);
    const double e = std::sqrt(s * s - 1.0);
    d.RloadNormalized = static_cast<float>(2.0 * s * s - 2.0 * s * e - 1.0);
  } else {
    d.RloadNormalized = 1.0f;
  }
  d.Astop = 0;
  d.CauerFlag = 0;
  return {};
}

EngineReport LinearPhasePrototype(DesignRecord& d) {
  ClearPrototype(d);
  const int n = d.Order;
  if (n >= kLowestButtonOrder && n <= kHighestButtonOrder) {
    const float* row = kLinearPhaseTable[n - kLowestButtonOrder];
    for (int j = 1; j <= n; ++j) d.G[j] = row[j - 1];
  } else if (n >= 2 && n <= kMaxOrder) {
    const allpole::Poly e = allpole::BesselDenominator(n);
    allpole::Poly loss = allpole::MagnitudeSquared(e);
    loss[0] = 0;  // |F|^2 = |E|^2 - 1, and E(0) = 1
    const std::vector<double> start =
        allpole::DarlingtonStart(e, allpole::ReflectionPolynomial(loss, e.back()));
    if (EngineReport r = StoreAllPole(d, allpole::Roots(e), start, "Bessel"); !r.Ok()) return r;
  }
  d.Apass = 0;
  d.Astop = 0;
  d.RloadNormalized = 1.0f;
  d.Rload = d.Rsource;
  d.CauerFlag = 0;
  return {};
}

EngineReport OptimumMonotonicPrototype(DesignRecord& d) {
  ClearPrototype(d);
  const int n = d.Order;
  if (n < 2 || n > kMaxOrder)
    return EngineReport::Fault("The Legendre prototype takes orders 2 to " +
                               std::to_string(kMaxOrder) + ", not " + std::to_string(n) + ".");
  // |H|^2 = 1 / (1 + L(w^2)): E E* = 1 + L and, with equal terminations,
  // F F* = |S11|^2 |E|^2 = L. E takes the left-half-plane roots.
  const allpole::Poly l = allpole::LegendreCharacteristic(n);
  allpole::Poly onePlus = l;
  onePlus[0] += 1;
  const std::vector<std::complex<double>> poles = allpole::LeftHalfPlaneRoots(onePlus);
  const double lead = std::sqrt(l.back());
  const std::vector<double> start = allpole::DarlingtonStart(
      allpole::FromRoots(poles, lead), allpole::ReflectionPolynomial(l, lead));
  if (EngineReport r = StoreAllPole(d, poles, start, "Legendre"); !r.Ok()) return r;
  d.Apass = 0;
  d.Astop = 0;
  d.RloadNormalized = 1.0f;
  d.CauerFlag = 0;
  return {};
}

EngineReport ZelmarPrototype(DesignRecord& d) {
  ClearPrototype(d);
  d.Apass = 0.01f;
  d.Astop = 0;
  d.RloadNormalized = 1.0f;
  d.CauerFlag = 1;
  // Fifth order whatever Order says. Positions 2 and 4 are parallel-resonant
  // series arms: H holds the arm's inductor, G the capacitor across it.
  d.G[1] = 1.657f;
  d.G[2] = 0.23424f;
  d.H[2] = 0.76896f;
  d.G[3] = 3.2137f;
  d.G[4] = 0.53364f;
  d.H[4] = 0.65676f;
  d.G[5] = 1.47f;
  return {};
}

}  // namespace drenik
