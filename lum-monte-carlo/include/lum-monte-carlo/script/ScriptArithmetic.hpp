// The arithmetic of the script language in one place, so that constant folding, the tree
// evaluators and the compiled stream produce bit-identical values.
#pragma once

#include <cmath>

namespace zep::script {

template <class T> T Least(T a, T b) { return b < a ? b : a; }
template <class T> T Greatest(T a, T b) { return a < b ? b : a; }

// SMOOTH(x, a, b, e) inside its band |x| <= h = e / 2: the line from b at -h to a at +h.
template <class T> T SmoothBlend(T x, T h, T a, T b) { return b + (a - b) / 2 / h * (x + h); }

// Which arguments of SMOOTH are needed: outside the band only one of a and b is evaluated.
enum class SmoothSide { BelowBand, AboveBand, InsideBand };
template <class T> SmoothSide SmoothSideOf(T x, T h) {
    if (x < -h) return SmoothSide::BelowBand;
    if (x > h) return SmoothSide::AboveBand;
    return SmoothSide::InsideBand;
}

}  // namespace zep::script
