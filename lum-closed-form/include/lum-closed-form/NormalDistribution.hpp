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

// The quantile x with N(x) = p, for 0 < p < 1: Acklam's rational approximation (relative error
// about 1e-9) polished by one Halley step on N, which brings it to the precision of N itself;
// strikes from deltas are closed forms in this quantile.
inline double InverseNormalCdf(double p) {
    static constexpr double a[] = {-3.969683028665376e+01, 2.209460984245205e+02,
                                   -2.759285104469687e+02, 1.383577518672690e+02,
                                   -3.066479806614716e+01, 2.506628277459239e+00};
    static constexpr double b[] = {-5.447609879822406e+01, 1.615858368580409e+02,
                                   -1.556989798598866e+02, 6.680131188771972e+01,
                                   -1.328068155288572e+01};
    static constexpr double c[] = {-7.784894002430293e-03, -3.223964580411365e-01,
                                   -2.400758277161838e+00, -2.549732539343734e+00,
                                   4.374664141464968e+00,  2.938163982698783e+00};
    static constexpr double d[] = {7.784695709041462e-03, 3.224671290700398e-01,
                                   2.445134137142996e+00, 3.754408661907416e+00};
    if (!(p > 0.0 && p < 1.0)) return p == 0.0 ? -HUGE_VAL : (p == 1.0 ? HUGE_VAL : NAN);
    double x;
    if (p < 0.02425) {
        const double q = std::sqrt(-2.0 * std::log(p));
        x = (((((c[0] * q + c[1]) * q + c[2]) * q + c[3]) * q + c[4]) * q + c[5]) /
            ((((d[0] * q + d[1]) * q + d[2]) * q + d[3]) * q + 1.0);
    } else if (p <= 1.0 - 0.02425) {
        const double q = p - 0.5;
        const double r = q * q;
        x = (((((a[0] * r + a[1]) * r + a[2]) * r + a[3]) * r + a[4]) * r + a[5]) * q /
            (((((b[0] * r + b[1]) * r + b[2]) * r + b[3]) * r + b[4]) * r + 1.0);
    } else {
        const double q = std::sqrt(-2.0 * std::log(1.0 - p));
        x = -(((((c[0] * q + c[1]) * q + c[2]) * q + c[3]) * q + c[4]) * q + c[5]) /
            ((((d[0] * q + d[1]) * q + d[2]) * q + d[3]) * q + 1.0);
    }
    const double error = NormalCdf(x) - p;
    const double u = error / NormalPdf(x);
    return x - u / (1.0 + 0.5 * x * u);
}

}  // namespace zep
