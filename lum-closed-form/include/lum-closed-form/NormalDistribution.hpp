// The standard normal distribution N(x) and density n(x) behind every closed-form option price.
// N is taken from the complementary error function, N(x) = erfc(-x / sqrt 2) / 2, so that the
// lower tail keeps full relative precision (no 1 - small cancellation): the only rounding beyond
// erfc's own (a few ulp in the C library) is that of the argument x / sqrt 2, which moves the result
// by about x^2 * 2e-16 relative: 1e-15 near the money, 2e-14 at x = -10, 3e-13 at x = -37 (beyond
// which N underflows). Option prices never need more, as d1 and d2 carry that much error themselves.
// The upper tail N(x) for large x rounds to 1 with an absolute error of at most one ulp of 1.
// The density is exp(-x^2/2) / sqrt(2 pi), with the same relative error bound from rounding x^2.
#pragma once

#include <cmath>

namespace zep {

inline constexpr double kInverseSqrtTwo = 0.70710678118654752440;
inline constexpr double kInverseSqrtTwoPi = 0.39894228040143267794;

inline double NormalCdf(double x) { return 0.5 * std::erfc(-x * kInverseSqrtTwo); }

inline double NormalPdf(double x) { return kInverseSqrtTwoPi * std::exp(-0.5 * x * x); }

}  // namespace zep
