#pragma once
// The random deviation of every part of every trial, drawn from a counter:
// the number for (seed, trial, part) is a hash of those three and nothing
// else, so a trial gets the same parts whichever thread evaluates it and in
// whatever order, on every machine (integer hashing and the basic IEEE
// operations only; no library logarithm, whose last bit may differ between
// processors).

#include <cstdint>

namespace drenik {

enum class Distribution {
  Uniform,  // evenly over -tol .. +tol
  Normal,   // tol is three standard deviations; cut at -tol and +tol
};

// The deviation of part stream `part` in trial `trial`, as a fraction of
// the tolerance: in [-1, 1].
double Deviation(uint64_t seed, uint64_t trial, uint32_t part, Distribution distribution);

// Natural logarithm of x > 0 from the basic operations alone (about one unit
// in the last place).
double PortableLog(double x);

}  // namespace drenik
