// Turns the normalized prototype into real parts for one of the four ladder
// topologies. Positions are counted from the source end; odd positions are
// filled first, then even positions.
//
// Callers must have set d.Pi (the opening page does at start-up): Omega is
// formed from the stored single-precision Pi, and a Pi of 0 makes every
// quotient below divide by zero, which is reported as a RunTimeError.
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

#include "core/runtime_error.h"

namespace drenik {
namespace {

// Quotients of the scaling. `proto` is the prototype value that stands in the
// denominator (NAN when the denominator holds only R and Omega), so that a
// zero can be reported by position.
class Scaler {
 public:
  Scaler(double r, double w) : r_(r), w_(w) {}

  void At(int k) { k_ = k; }

  // C = g / (R W)
  float CapLowpass(float g) const { return Store(Div(g, r_ * w_, NAN)); }
  // C = g / R / W (one branch divides twice)
  float CapLowpassStepwise(float g) const { return Store(Div(Div(g, r_, NAN), w_, NAN)); }
  // L = R g / W
  float IndLowpass(float g) const { return Store(Div(r_ * g, w_, NAN)); }
  // C = 1 / (R g W)
  float CapHighpass(float g) const { return Store(Div(1.0, r_ * g * w_, g)); }
  // L = R / (W g)
  float IndHighpass(float g) const { return Store(Div(r_, w_ * g, g)); }

 private:
  double Div(double num, double den, double proto) const {
    if (den == 0) {
      if (proto == 0) {
        throw RunTimeError("Division by zero: the prototype value at position " +
                           std::to_string(k_) + " is 0.");
      }
      throw RunTimeError("Division by zero at position " + std::to_string(k_) +
                         ": the source resistance or the angular cutoff (Omega) is 0.");
    }
    return num / den;
  }
  float Store(double v) const {
    const auto f = static_cast<float>(v);
    if (!std::isfinite(f)) {
      throw RunTimeError("Overflow: the value at position " + std::to_string(k_) +
                         " is out of range.");
    }
    return f;
  }

  double r_;
  double w_;
  int k_ = 0;
};

void CinLowpass(DesignRecord& d, Scaler& s, int n) {
  for (int k = 1; k <= n; k += 2) {
    s.At(k);
    d.ElementType[k] = 4;
    d.C[k] = s.CapLowpass(d.G[k]);
  }
  for (int k = 2; k <= n; k += 2) {
    s.At(k);
    if (d.CauerFlag == 0) {
      d.ElementType[k] = d.H[k] <= 0 ? 1 : 7;
      d.L[k] = s.IndLowpass(d.G[k]);
      if (d.H[k] > 0) d.C[k] = s.CapLowpass(d.H[k]);
    } else if (d.CauerFlag == 1) {
      d.ElementType[k] = d.G[k] <= 0 ? 1 : 7;
      d.L[k] = s.IndLowpass(d.H[k]);
      if (d.G[k] > 0) d.C[k] = s.CapLowpass(d.G[k]);
      if (k == n) {
        // The last series arm of an even-order design keeps only its inductor.
        d.ElementType[k] = 1;
        d.C[k] = 0;
      }
    }
  }
}

void LinLowpass(DesignRecord& d, Scaler& s, int n) {
  for (int k = 1; k <= n; k += 2) {
    s.At(k);
    d.ElementType[k] = 1;
    d.L[k] = s.IndLowpass(d.G[k]);
  }
  for (int k = 2; k <= n; k += 2) {
    s.At(k);
    if (d.CauerFlag == 0) {
      if (d.H[k] <= 0) {
        d.ElementType[k] = 4;
        d.C[k] = s.CapLowpass(d.G[k]);
      } else {
        d.ElementType[k] = 6;
        d.L[k] = s.IndLowpass(d.H[k]);
        d.C[k] = s.CapLowpass(d.G[k]);
      }
    } else if (d.CauerFlag == 1) {
      if (d.G[k] > 0 && d.H[k] > 0) {
        d.ElementType[k] = 6;
        d.L[k] = s.IndLowpass(d.G[k]);
        d.C[k] = s.CapLowpass(d.H[k]);
      } else if (d.G[k] == 0 && d.H[k] > 0) {
        d.ElementType[k] = 4;
        d.C[k] = s.CapLowpassStepwise(d.H[k]);
      }
      // Any other pair leaves the position as it was.
    }
  }
}

void CinHighpass(DesignRecord& d, Scaler& s, int n) {
  for (int k = 1; k <= n; k += 2) {
    s.At(k);
    if (d.G[k] <= 0) {
      d.ElementType[k] = 17;
      d.C[k] = 0;
    } else {
      d.ElementType[k] = 3;
      d.C[k] = s.CapHighpass(d.G[k]);
    }
  }
  for (int k = 2; k <= n; k += 2) {
    s.At(k);
    if (d.G[k] <= 0) {
      d.ElementType[k] = 2;
      d.L[k] = s.IndHighpass(d.H[k]);
    } else if (d.CauerFlag == 0) {
      if (d.H[k] <= 0) {
        d.ElementType[k] = 2;
        d.L[k] = s.IndHighpass(d.G[k]);
      } else {
        d.ElementType[k] = 6;
        d.C[k] = s.CapHighpass(d.H[k]);
        d.L[k] = s.IndHighpass(d.G[k]);
      }
    } else if (k < n) {
      d.ElementType[k] = 6;
      d.L[k] = s.IndHighpass(d.H[k]);
      d.C[k] = s.CapHighpass(d.G[k]);
    } else {
      d.ElementType[k] = 2;
      d.L[k] = s.IndHighpass(d.H[k]);
    }
  }
}

void LinHighpass(DesignRecord& d, Scaler& s, int n) {
  for (int k = 1; k <= n; k += 2) {
    s.At(k);
    if (d.G[k] <= 0) {
      d.ElementType[k] = 17;
      d.L[k] = 0;
    } else {
      d.ElementType[k] = 2;
      d.L[k] = s.IndHighpass(d.G[k]);
    }
  }
  for (int k = 2; k <= n; k += 2) {
    s.At(k);
    if (d.G[k] <= 0) {
      d.ElementType[k] = 3;
      d.C[k] = s.CapHighpass(d.H[k]);
    } else if (d.CauerFlag == 0) {
      if (d.H[k] <= 0) {
        d.ElementType[k] = 3;
        d.C[k] = s.CapHighpass(d.G[k]);
      } else {
        d.ElementType[k] = 7;
        d.L[k] = s.IndHighpass(d.H[k]);
        d.C[k] = s.CapHighpass(d.G[k]);
      }
    } else if (d.CauerFlag == 1) {
      if (k < n) {
        d.ElementType[k] = 7;
        d.C[k] = s.CapHighpass(d.H[k]);
        d.L[k] = s.IndHighpass(d.G[k]);
      } else {
        d.ElementType[k] = 3;
        d.C[k] = s.CapHighpass(d.H[k]);
      }
    }
  }
}

}  // namespace

void Denormalize(DesignRecord& d) {
  if (d.Width <= 0) return;
  d.Omega = static_cast<float>((static_cast<double>(d.Pi) + d.Pi) * d.Width);
  for (int i = 1; i <= kMaxPositions; ++i) {
    d.C[i] = 0;
    d.L[i] = 0;
    d.Cstd[i] = 0;
    d.Lstd[i] = 0;
  }

  enum class Kind { CinLow, LinLow, CinHigh, LinHigh };
  Kind kind;
  if (d.Topology == "Cinlowpass") {
    kind = Kind::CinLow;
  } else if (d.Topology == "Linlowpass") {
    kind = Kind::LinLow;
  } else if (d.Topology == "Cinhighpass") {
    kind = Kind::CinHigh;
  } else if (d.Topology == "Linhighpass") {
    kind = Kind::LinHigh;
  } else {
    return;
  }

  const int n = d.Order;
  if (n > kMaxPositions) {
    throw RunTimeError("Subscript out of range: the ladder has room for " +
                       std::to_string(kMaxPositions) + " positions, not " + std::to_string(n) +
                       ".");
  }

  Scaler s(d.Rsource, d.Omega);
  switch (kind) {
    case Kind::CinLow:
      CinLowpass(d, s, n);
      break;
    case Kind::LinLow:
      LinLowpass(d, s, n);
      break;
    case Kind::CinHigh:
      CinHighpass(d, s, n);
      break;
    case Kind::LinHigh:
      LinHighpass(d, s, n);
      break;
  }

  // A C-input lowpass and an L-input highpass begin with a shunt element like
  // the prototype, so its normalized load scales as a resistance; the other
  // two are its duals and take the reciprocal.
  if (d.Family == kButterworth) {
    d.Rload = d.Rsource;
  } else if (kind == Kind::CinLow || kind == Kind::LinHigh) {
    d.Rload = static_cast<float>(static_cast<double>(d.RloadNormalized) * d.Rsource);
  } else {
    if (d.RloadNormalized == 0) {
      throw RunTimeError("Division by zero: the normalized load resistance is 0.");
    }
    d.Rload = static_cast<float>(static_cast<double>(d.Rsource) / d.RloadNormalized);
  }
  d.Stages = static_cast<int16_t>(n);
}

}  // namespace drenik
