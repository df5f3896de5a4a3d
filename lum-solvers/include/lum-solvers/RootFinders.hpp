// One-dimensional root finders for calibration: safeguarded Newton, which takes Newton's step
// while it stays inside the bracket and shrinks it fast enough, and falls back on bisection
// otherwise; and Brent's method, which needs no derivative. Both keep a bracket, so both are
// certain where the function changes sign, and both stop after a bounded number of iterations.
#pragma once

#include <cmath>
#include <string>
#include <utility>

#include "lum-auxiliary/Error.hpp"

namespace zep {

struct RootSearch {
    double accuracy = 1e-12;  // on the root
    int maxIterations = 100;
};

namespace detail {
[[noreturn]] void FailRootSearch(const char* solver, const std::string& what);
}  // namespace detail

// f returns (value, derivative). [low, high] must bracket a root.
template <class ValueAndDerivative>
double NewtonSolve(const ValueAndDerivative& f, double guess, double low, double high, RootSearch search = {}) {
    auto [atLow, slopeLow] = f(low);
    auto [atHigh, slopeHigh] = f(high);
    if (atLow == 0.0) return low;
    if (atHigh == 0.0) return high;
    if (!(atLow * atHigh < 0.0)) detail::FailRootSearch("Newton", "root must be bracketed");
    // Orient the bracket so that f(negativeEnd) < 0.
    double negativeEnd = atLow < 0.0 ? low : high, positiveEnd = atLow < 0.0 ? high : low;
    double x = (guess > std::min(low, high) && guess < std::max(low, high)) ? guess : 0.5 * (low + high);
    double previousStep = std::abs(high - low), step = previousStep;
    auto [value, slope] = f(x);
    for (int iteration = 0; iteration < search.maxIterations; ++iteration) {
        const bool newtonLeaves = ((x - positiveEnd) * slope - value) * ((x - negativeEnd) * slope - value) > 0.0;
        const bool newtonSlow = std::abs(2.0 * value) > std::abs(previousStep * slope);
        previousStep = step;
        if (newtonLeaves || newtonSlow || slope == 0.0) {
            step = 0.5 * (positiveEnd - negativeEnd);
            x = negativeEnd + step;
        } else {
            step = value / slope;
            x -= step;
        }
        if (std::abs(step) < search.accuracy) return x;
        std::tie(value, slope) = f(x);
        if (!std::isfinite(value)) detail::FailRootSearch("Newton", "the function is not finite at " + std::to_string(x));
        if (value == 0.0) return x;
        (value < 0.0 ? negativeEnd : positiveEnd) = x;
    }
    detail::FailRootSearch("Newton", "no convergence after " + std::to_string(search.maxIterations) + " iterations");
}

// [low, high] must bracket a root of f, whose values there the caller already has.
template <class Function>
double BrentSolve(const Function& f, double low, double high, double atLow, double atHigh, RootSearch search = {}) {
    double a = low, b = high, fa = atLow, fb = atHigh;
    if (fa == 0.0) return a;
    if (fb == 0.0) return b;
    if (!(fa * fb < 0.0)) detail::FailRootSearch("Brent", "root must be bracketed");
    double c = a, fc = fa, d = b - a, e = d;
    for (int iteration = 0; iteration < search.maxIterations; ++iteration) {
        if (fb * fc > 0.0) {
            c = a;
            fc = fa;
            d = e = b - a;
        }
        if (std::abs(fc) < std::abs(fb)) {
            a = b, b = c, c = a;
            fa = fb, fb = fc, fc = fa;
        }
        const double tolerance = 2.0 * 2.2e-16 * std::abs(b) + 0.5 * search.accuracy;
        const double middle = 0.5 * (c - b);
        if (std::abs(middle) <= tolerance || fb == 0.0) return b;
        if (std::abs(e) >= tolerance && std::abs(fa) > std::abs(fb)) {
            // Inverse quadratic interpolation, or the secant when only two points differ.
            double p, q;
            const double s = fb / fa;
            if (a == c) {
                p = 2.0 * middle * s;
                q = 1.0 - s;
            } else {
                const double r = fb / fc, t = fa / fc;
                p = s * (2.0 * middle * t * (t - r) - (b - a) * (r - 1.0));
                q = (t - 1.0) * (r - 1.0) * (s - 1.0);
            }
            if (p > 0.0) q = -q;
            p = std::abs(p);
            if (2.0 * p < std::min(3.0 * middle * q - std::abs(tolerance * q), std::abs(e * q))) {
                e = d;
                d = p / q;
            } else {
                d = middle;
                e = d;
            }
        } else {
            d = middle;
            e = d;
        }
        a = b;
        fa = fb;
        b += std::abs(d) > tolerance ? d : (middle > 0.0 ? tolerance : -tolerance);
        fb = f(b);
        if (!std::isfinite(fb)) detail::FailRootSearch("Brent", "the function is not finite at " + std::to_string(b));
    }
    detail::FailRootSearch("Brent", "no convergence after " + std::to_string(search.maxIterations) + " iterations");
}

// [low, high] must bracket a root of f.
template <class Function>
double BrentSolve(const Function& f, double low, double high, RootSearch search = {}) {
    return BrentSolve(f, low, high, f(low), f(high), search);
}

}  // namespace zep
