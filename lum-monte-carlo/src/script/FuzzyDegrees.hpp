// The degrees of truth of smoothed comparisons, shared by the compiled stream's path-by-path
// and lane-by-lane runs so that both give the tree evaluator's values.
#pragma once

#include <cmath>
#include <utility>

#include "GuardRuns.hpp"

namespace zep::detail {

// The degrees of truth of smoothed comparisons of the difference x, in the same operations and
// order as FuzzyEvaluator<double>: ">" and ">=" ramp alike from -w/2 to w/2 (a zero width
// decides sharply), "=" is a tent of half-width w/2; discrete domains ramp between their points.
inline double AboveDegree(const FuzzyTest& test, double x, double defaultEps) {
    if (test.discrete) {
        if (x < test.lower) return 0.0;
        if (x > test.upper) return 1.0;
        return (x - test.lower) / (test.upper - test.lower);
    }
    const double w = test.eps < 0.0 ? defaultEps : test.eps;
    if (w == 0.0) return (test.orEqual ? x >= 0.0 : x > 0.0) ? 1.0 : 0.0;
    const double h = w / 2;
    if (x < -h) return 0.0;
    if (x > h) return 1.0;
    return (h + x) / w;
}

inline double EqualDegree(const FuzzyTest& test, double x, double defaultEps) {
    if (test.discrete) {
        if (x < test.lower || x > test.upper) return 0.0;
        return x < 0.0 ? 1.0 - x / test.lower : 1.0 - x / test.upper;
    }
    const double h = (test.eps < 0.0 ? defaultEps : test.eps) / 2;
    if (h == 0.0) return x == 0.0 ? 1.0 : 0.0;
    return -h <= x && x <= h ? (h - std::abs(x)) / h : 0.0;
}

// A test the dates whose smoothed degree can be above zero pass (a superset: the degree itself
// decides). Below the ramp, outside the tent or a discrete domain's lower point, it is zero.
inline std::pair<Passing, double> MaybeAboveZero(const FuzzyTest& test, bool above, double defaultEps) {
    if (test.discrete) return {Passing::NotBelow, test.lower};
    const double w = test.eps < 0.0 ? defaultEps : test.eps;
    if (above && w == 0.0) return {test.orEqual ? Passing::AtLeast : Passing::Above, 0.0};
    return {Passing::NotBelow, -(w / 2)};
}

}  // namespace zep::detail
