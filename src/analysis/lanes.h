#pragma once
// Eight doubles side by side: the lane type of the batch analyses (many
// value sets of one ladder at once). The element models (element_models.h)
// run on it unchanged through the Abs, Select, Any and Splat overloads here.
//
// Every operation is the IEEE operation of each lane on its own, so a lane
// carries exactly the bits the plain double path gives. The eight lanes are
// held as 8 / W vectors of W doubles, W the width of the vector unit the
// code is compiled for (8 AVX-512, 4 AVX2, 2 SSE2), so that every operation,
// comparisons included, maps onto whole registers. The parts keep the
// 8-byte alignment of a double, so a value passes through ordinary functions
// the same way whatever the target.

#include <cstdint>

#include "analysis/element_models.h"

namespace drenik {

inline constexpr int kLaneCount = 8;

#define DRENIK_LANE_OP inline __attribute__((always_inline))
// The parts of a value, fully unrolled.
#define DRENIK_EACH_PART _Pragma("GCC unroll 8")

template <int W>
struct Lanes {
  static_assert(kLaneCount % W == 0);
  static constexpr int kParts = kLaneCount / W;
  typedef double Part __attribute__((vector_size(W * sizeof(double)), aligned(8)));
  Part v[kParts];

  static DRENIK_LANE_OP Lanes Load(const double* p) {
    Lanes out;
    __builtin_memcpy(&out.v, p, sizeof out.v);
    return out;
  }
  DRENIK_LANE_OP void Store(double* p) const { __builtin_memcpy(p, &v, sizeof v); }
  DRENIK_LANE_OP double operator[](int lane) const {
    double all[kLaneCount];
    Store(all);
    return all[lane];
  }
};

template <int W>
struct LaneFlags {
  typedef int64_t Part __attribute__((vector_size(W * sizeof(int64_t)), aligned(8)));
  Part m[kLaneCount / W];
  // Whether a lane's flag is set (all ones) or clear.
  DRENIK_LANE_OP bool operator[](int lane) const {
    int64_t all[kLaneCount];
    __builtin_memcpy(all, &m, sizeof m);
    return all[lane] != 0;
  }
};

// Lane-wise operations, part by part.
#define DRENIK_LANE_BINARY(op)                                                             \
  template <int W>                                                                         \
  DRENIK_LANE_OP Lanes<W> operator op(Lanes<W> a, Lanes<W> b) {                            \
    DRENIK_EACH_PART for (int h = 0; h < Lanes<W>::kParts; ++h) a.v[h] = a.v[h] op b.v[h]; \
    return a;                                                                              \
  }                                                                                        \
  template <int W>                                                                         \
  DRENIK_LANE_OP Lanes<W> operator op(Lanes<W> a, double b) {                              \
    DRENIK_EACH_PART for (int h = 0; h < Lanes<W>::kParts; ++h) a.v[h] = a.v[h] op b;      \
    return a;                                                                              \
  }                                                                                        \
  template <int W>                                                                         \
  DRENIK_LANE_OP Lanes<W> operator op(double a, Lanes<W> b) {                              \
    DRENIK_EACH_PART for (int h = 0; h < Lanes<W>::kParts; ++h) b.v[h] = a op b.v[h];      \
    return b;                                                                              \
  }
DRENIK_LANE_BINARY(+)
DRENIK_LANE_BINARY(-)
DRENIK_LANE_BINARY(*)
DRENIK_LANE_BINARY(/)
#undef DRENIK_LANE_BINARY

template <int W>
DRENIK_LANE_OP Lanes<W> operator-(Lanes<W> a) {
  DRENIK_EACH_PART for (int h = 0; h < Lanes<W>::kParts; ++h) a.v[h] = -a.v[h];
  return a;
}

#define DRENIK_LANE_COMPARE(op)                                                              \
  template <int W>                                                                           \
  DRENIK_LANE_OP LaneFlags<W> operator op(Lanes<W> a, Lanes<W> b) {                          \
    LaneFlags<W> out;                                                                        \
    DRENIK_EACH_PART for (int h = 0; h < Lanes<W>::kParts; ++h) out.m[h] = a.v[h] op b.v[h]; \
    return out;                                                                              \
  }                                                                                          \
  template <int W>                                                                           \
  DRENIK_LANE_OP LaneFlags<W> operator op(Lanes<W> a, double b) {                            \
    LaneFlags<W> out;                                                                        \
    DRENIK_EACH_PART for (int h = 0; h < Lanes<W>::kParts; ++h) out.m[h] = a.v[h] op b;      \
    return out;                                                                              \
  }
DRENIK_LANE_COMPARE(==)
DRENIK_LANE_COMPARE(<=)
DRENIK_LANE_COMPARE(<)
DRENIK_LANE_COMPARE(>)
#undef DRENIK_LANE_COMPARE

template <int W>
DRENIK_LANE_OP LaneFlags<W> operator|(LaneFlags<W> a, LaneFlags<W> b) {
  DRENIK_EACH_PART for (int h = 0; h < Lanes<W>::kParts; ++h) a.m[h] |= b.m[h];
  return a;
}

// The lane overloads the element models ask for (found by argument-dependent
// lookup, so they live beside the type). Abs clears the sign bit, as fabs
// does.
template <int W>
DRENIK_LANE_OP Lanes<W> Abs(Lanes<W> x) {
  using Bits = typename LaneFlags<W>::Part;
  DRENIK_EACH_PART for (int h = 0; h < Lanes<W>::kParts; ++h) {
    Bits bits;
    __builtin_memcpy(&bits, &x.v[h], sizeof bits);
    bits &= INT64_MAX;
    __builtin_memcpy(&x.v[h], &bits, sizeof bits);
  }
  return x;
}
template <int W>
DRENIK_LANE_OP Lanes<W> Select(LaneFlags<W> m, Lanes<W> a, Lanes<W> b) {
  DRENIK_EACH_PART for (int h = 0; h < Lanes<W>::kParts; ++h) a.v[h] = m.m[h] ? a.v[h] : b.v[h];
  return a;
}
template <int W>
DRENIK_LANE_OP bool Any(LaneFlags<W> m) {
  typename LaneFlags<W>::Part any = m.m[0];
  DRENIK_EACH_PART for (int h = 1; h < Lanes<W>::kParts; ++h) any |= m.m[h];
  int64_t each[W], one = 0;
  __builtin_memcpy(each, &any, sizeof each);
  for (int k = 0; k < W; ++k) one |= each[k];
  return one != 0;
}
template <int W>
DRENIK_LANE_OP Lanes<W> Min(Lanes<W> a, Lanes<W> b) {
  DRENIK_EACH_PART for (int h = 0; h < Lanes<W>::kParts; ++h) a.v[h] =
      b.v[h] < a.v[h] ? b.v[h] : a.v[h];
  return a;
}
template <int W>
DRENIK_LANE_OP Lanes<W> Max(Lanes<W> a, Lanes<W> b) {
  DRENIK_EACH_PART for (int h = 0; h < Lanes<W>::kParts; ++h) a.v[h] =
      b.v[h] > a.v[h] ? b.v[h] : a.v[h];
  return a;
}
template <int W>
DRENIK_LANE_OP Lanes<W> SplatLanes(double x) {
  Lanes<W> out;
  DRENIK_EACH_PART for (int h = 0; h < Lanes<W>::kParts; ++h) out.v[h] =
      typename Lanes<W>::Part{} + x;
  return out;
}

}  // namespace drenik

// The element models' Splat for each width.
template <>
DRENIK_LANE_OP drenik::Lanes<8> drenik::models::Splat<drenik::Lanes<8>>(double x) {
  return drenik::SplatLanes<8>(x);
}
template <>
DRENIK_LANE_OP drenik::Lanes<4> drenik::models::Splat<drenik::Lanes<4>>(double x) {
  return drenik::SplatLanes<4>(x);
}
template <>
DRENIK_LANE_OP drenik::Lanes<2> drenik::models::Splat<drenik::Lanes<2>>(double x) {
  return drenik::SplatLanes<2>(x);
}
