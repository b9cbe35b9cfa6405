// Turns the normalized prototype into real parts for one of the four ladder
// topologies. Positions are counted from the source end; odd positions are
// filled first, then even positions.
//
// Callers must have set d.Pi (the opening page does at start-up): Omega is
// formed from the stored single-precision Pi, and a Pi of 0 makes every
// quotient below divide by zero, which is reported as a fault.
//
// In the lowpass C-input ladder an even position is a series inductor; with
// CauerFlag 1 (elliptic and Zelmar designs) H holds that inductor and G the
// capacitor that resonates with it. With CauerFlag 0 G is the main element
// and a non-zero H its partner. The four branches below differ in small ways
// (which test comes first, whether the last arm of an even-order design keeps
// its partner); those differences are intended and must stay.

#include "synthesis/denormalize.h"

#include <cmath>
#include <string>

#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {
namespace {

// Unwinds a fill routine at the first quotient that cannot be formed.
struct ScaleFault {
  std::string why;
};

using enum ElementKind;
constexpr int16_t Code(ElementKind kind) {
  return CodeOf(kind);
}

}  // namespace

// `proto` is the prototype value that stands in the denominator (NAN when
// the denominator holds only R and Omega), so that a zero can be reported by
// position.
double PositionScaler::Div(double num, double den, double proto) const {
  if (den == 0) {
    if (proto == 0)
      throw ScaleFault{"Division by zero: the prototype value at position " + std::to_string(k_) +
                       " is 0."};
    throw ScaleFault{"Division by zero at position " + std::to_string(k_) +
                     ": the source resistance or the angular cutoff (Omega) is 0."};
  }
  return num / den;
}

float PositionScaler::Store(double v) const {
  const auto f = static_cast<float>(v);
  if (!std::isfinite(f))
    throw ScaleFault{"Overflow: the value at position " + std::to_string(k_) + " is out of range."};
  return f;
}

float PositionScaler::CapLowpass(float g) const {
  return Store(Div(g, r_ * w_, NAN));
}
float PositionScaler::CapLowpassStepwise(float g) const {
  return Store(Div(Div(g, r_, NAN), w_, NAN));
}
float PositionScaler::IndLowpass(float g) const {
  return Store(Div(r_ * g, w_, NAN));
}
float PositionScaler::CapHighpass(float g) const {
  return Store(Div(1.0, r_ * g * w_, g));
}
float PositionScaler::IndHighpass(float g) const {
  return Store(Div(r_, w_ * g, g));
}

void FillCInputLowpass(DesignRecord& d, PositionScaler& s, int n) {
  for (int k = 1; k <= n; k += 2) {
    s.At(k);
    d.ElementType[k] = Code(ShuntC);
    d.C[k] = s.CapLowpass(d.G[k]);
  }
  for (int k = 2; k <= n; k += 2) {
    s.At(k);
    if (d.CauerFlag == 0) {
      d.ElementType[k] = d.H[k] <= 0 ? Code(SeriesL) : Code(SeriesTank);
      d.L[k] = s.IndLowpass(d.G[k]);
      if (d.H[k] > 0) d.C[k] = s.CapLowpass(d.H[k]);
    } else if (d.CauerFlag == 1) {
      d.ElementType[k] = d.G[k] <= 0 ? Code(SeriesL) : Code(SeriesTank);
      d.L[k] = s.IndLowpass(d.H[k]);
      if (d.G[k] > 0) d.C[k] = s.CapLowpass(d.G[k]);
      if (k == n) {
        // The last series arm of an even-order design keeps only its inductor.
        d.ElementType[k] = Code(SeriesL);
        d.C[k] = 0;
      }
    }
  }
}

void FillLInputLowpass(DesignRecord& d, PositionScaler& s, int n) {
  for (int k = 1; k <= n; k += 2) {
    s.At(k);
    d.ElementType[k] = Code(SeriesL);
    d.L[k] = s.IndLowpass(d.G[k]);
  }
  for (int k = 2; k <= n; k += 2) {
    s.At(k);
    if (d.CauerFlag == 0) {
      if (d.H[k] <= 0) {
        d.ElementType[k] = Code(ShuntC);
        d.C[k] = s.CapLowpass(d.G[k]);
      } else {
        d.ElementType[k] = Code(ShuntTrap);
        d.L[k] = s.IndLowpass(d.H[k]);
        d.C[k] = s.CapLowpass(d.G[k]);
      }
    } else if (d.CauerFlag == 1) {
      if (d.G[k] > 0 && d.H[k] > 0) {
        d.ElementType[k] = Code(ShuntTrap);
        d.L[k] = s.IndLowpass(d.G[k]);
        d.C[k] = s.CapLowpass(d.H[k]);
      } else if (d.G[k] == 0 && d.H[k] > 0) {
        d.ElementType[k] = Code(ShuntC);
        d.C[k] = s.CapLowpassStepwise(d.H[k]);
      }
      // Any other pair leaves the position as it was.
    }
  }
}

void FillCInputHighpass(DesignRecord& d, PositionScaler& s, int n) {
  for (int k = 1; k <= n; k += 2) {
    s.At(k);
    if (d.G[k] <= 0) {
      d.ElementType[k] = Code(Empty);
      d.C[k] = 0;
    } else {
      d.ElementType[k] = Code(SeriesC);
      d.C[k] = s.CapHighpass(d.G[k]);
    }
  }
  for (int k = 2; k <= n; k += 2) {
    s.At(k);
    if (d.G[k] <= 0) {
      d.ElementType[k] = Code(ShuntL);
      d.L[k] = s.IndHighpass(d.H[k]);
    } else if (d.CauerFlag == 0) {
      if (d.H[k] <= 0) {
        d.ElementType[k] = Code(ShuntL);
        d.L[k] = s.IndHighpass(d.G[k]);
      } else {
        d.ElementType[k] = Code(ShuntTrap);
        d.C[k] = s.CapHighpass(d.H[k]);
        d.L[k] = s.IndHighpass(d.G[k]);
      }
    } else if (k < n) {
      d.ElementType[k] = Code(ShuntTrap);
      d.L[k] = s.IndHighpass(d.H[k]);
      d.C[k] = s.CapHighpass(d.G[k]);
    } else {
      d.ElementType[k] = Code(ShuntL);
      d.L[k] = s.IndHighpass(d.H[k]);
    }
  }
}

void FillLInputHighpass(DesignRecord& d, PositionScaler& s, int n) {
  for (int k = 1; k <= n; k += 2) {
    s.At(k);
    if (d.G[k] <= 0) {
      d.ElementType[k] = Code(Empty);
      d.L[k] = 0;
    } else {
      d.ElementType[k] = Code(ShuntL);
      d.L[k] = s.IndHighpass(d.G[k]);
    }
  }
  for (int k = 2; k <= n; k += 2) {
    s.At(k);
    if (d.G[k] <= 0) {
      d.ElementType[k] = Code(SeriesC);
      d.C[k] = s.CapHighpass(d.H[k]);
    } else if (d.CauerFlag == 0) {
      if (d.H[k] <= 0) {
        d.ElementType[k] = Code(SeriesC);
        d.C[k] = s.CapHighpass(d.G[k]);
      } else {
        d.ElementType[k] = Code(SeriesTank);
        d.L[k] = s.IndHighpass(d.H[k]);
        d.C[k] = s.CapHighpass(d.G[k]);
      }
    } else if (d.CauerFlag == 1) {
      if (k < n) {
        d.ElementType[k] = Code(SeriesTank);
        d.C[k] = s.CapHighpass(d.H[k]);
        d.L[k] = s.IndHighpass(d.G[k]);
      } else {
        d.ElementType[k] = Code(SeriesC);
        d.C[k] = s.CapHighpass(d.H[k]);
      }
    }
  }
}

EngineReport Denormalize(DesignRecord& d) {
  if (d.Width <= 0) return {};
  d.Omega = static_cast<float>((static_cast<double>(d.Pi) + d.Pi) * d.Width);
  for (int i = 1; i <= kMaxPositions; ++i) {
    d.C[i] = 0;
    d.L[i] = 0;
    d.Cstd[i] = 0;
    d.Lstd[i] = 0;
  }

  const TopologyInfo* topology = FindTopology(d.Topology);
  if (!topology) return {};

  const int n = d.Order;
  if (n > kPrototypePositions) {
    return EngineReport::Fault("Subscript out of range: the prototype has room for " +
                               std::to_string(kPrototypePositions) + " positions, not " +
                               std::to_string(n) + ".");
  }

  // Center belongs to band designs only; the analysis reads it as the sign
  // that codes 5 and 8 are the branches a band design puts there.
  if (!topology->band) d.Center = 0;
  if (topology->band) {
    try {
      return topology->bandFill(d);
    } catch (const ScaleFault& fault) {
      return EngineReport::Fault(fault.why);
    }
  }

  PositionScaler s(d.Rsource, d.Omega);
  try {
    topology->fill(d, s, n);
  } catch (const ScaleFault& fault) {
    return EngineReport::Fault(fault.why);
  }

  const FamilyInfo* family = FindFamily(d.Family);
  if (family && family->loadIsSource) {
    d.Rload = d.Rsource;
  } else if (LoadScalesDirectly(*topology)) {
    d.Rload = static_cast<float>(static_cast<double>(d.RloadNormalized) * d.Rsource);
  } else {
    if (d.RloadNormalized == 0)
      return EngineReport::Fault("Division by zero: the normalized load resistance is 0.");
    d.Rload = static_cast<float>(static_cast<double>(d.Rsource) / d.RloadNormalized);
  }
  d.Stages = static_cast<int16_t>(n);
  return {};
}

}  // namespace drenik
