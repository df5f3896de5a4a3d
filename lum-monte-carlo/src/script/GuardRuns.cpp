#include "GuardRuns.hpp"

#include <algorithm>
#include <cmath>

#if defined(__x86_64__)
#include <immintrin.h>

// AVX2 without FMA: a product and a difference must not be fused, or a lane's difference would
// round otherwise than the one-date instruction's. A function attribute, not a pragma, so that
// g++ and clang++ both compile the lanes for AVX2 (clang ignores "#pragma GCC target").
#define ZEP_AVX2_LANES __attribute__((target("avx2")))
#endif

namespace zep::detail {

namespace {

std::size_t FirstPassingOneByOne(Passing rule, double bound, const TermComparison& comparison,
                                 const ScenarioPoint* points, std::size_t count, const double* x) {
    for (std::size_t i = 0; i < count; ++i)
        if (Passes(rule, Difference(comparison, points[i].spot, x), bound)) return i;
    return count;
}

#if defined(__x86_64__)
const bool kFourLanes = __builtin_cpu_supports("avx2");

ZEP_AVX2_LANES __m256d ValueLanes(const Term& term, __m256d spots, const double* x) {
    const __m256d base = term.fromSpot ? spots : _mm256_set1_pd(1.0);
    const __m256d factor = _mm256_set1_pd(term.variableFactor ? x[term.index] : term.value);
    return term.divides ? _mm256_div_pd(base, factor) : _mm256_mul_pd(base, factor);
}

// Which of the four points from `points` pass, as the bits of a mask.
template <int Predicate>
ZEP_AVX2_LANES int PassingLanes(__m256d bounds, const TermComparison& comparison, const ScenarioPoint* points,
                                const double* x) {
    // Two points a register: (s0, n0, s1, n1) and (s2, n2, s3, n3); the spots in date order.
    const __m256d first = _mm256_loadu_pd(&points[0].spot);
    const __m256d second = _mm256_loadu_pd(&points[2].spot);
    const __m256d spots = _mm256_permute4x64_pd(_mm256_unpacklo_pd(first, second), 0xD8);
    const __m256d difference =
        _mm256_sub_pd(ValueLanes(comparison.left, spots, x), ValueLanes(comparison.right, spots, x));
    return _mm256_movemask_pd(_mm256_cmp_pd(difference, bounds, Predicate));
}

template <int Predicate>
ZEP_AVX2_LANES std::size_t FirstInLanes(double bound, const TermComparison& comparison, const ScenarioPoint* points,
                         std::size_t count, const double* x) {
    const __m256d bounds = _mm256_set1_pd(bound);
    const auto first = [](std::size_t at, int passing) {
        return at + static_cast<std::size_t>(__builtin_ctz(static_cast<unsigned>(passing)));
    };
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4)
        if (const int passing = PassingLanes<Predicate>(bounds, comparison, points + i, x)) return first(i, passing);
    if (i == count || count < 4) return i;
    // The last partial four: the four dates that end the run. Those of them already scanned
    // are computed alike again and do not pass, so the first that passes is a new one.
    if (const int passing = PassingLanes<Predicate>(bounds, comparison, points + count - 4, x))
        return first(count - 4, passing);
    return count;
}

// The spots of four points, in lanes of an order of their own.
ZEP_AVX2_LANES __m256d SpotsInSomeOrder(const ScenarioPoint* four) {
    return _mm256_unpacklo_pd(_mm256_loadu_pd(&four[0].spot), _mm256_loadu_pd(&four[2].spot));
}

// The least and the greatest spot of `count` >= 4 points; false when a spot is NaN.
ZEP_AVX2_LANES bool SpotRangeInLanes(const ScenarioPoint* points, std::size_t count, double& least,
                                     double& greatest) {
    __m256d low = SpotsInSomeOrder(points + count - 4), high = low;
    __m256d unordered = _mm256_cmp_pd(low, low, _CMP_UNORD_Q);
    for (std::size_t i = 0; i + 4 < count; i += 4) {
        const __m256d spots = SpotsInSomeOrder(points + i);
        low = _mm256_min_pd(low, spots);
        high = _mm256_max_pd(high, spots);
        unordered = _mm256_or_pd(unordered, _mm256_cmp_pd(spots, spots, _CMP_UNORD_Q));
    }
    if (_mm256_movemask_pd(unordered) != 0) return false;
    alignas(32) double lows[4], highs[4];
    _mm256_store_pd(lows, low);
    _mm256_store_pd(highs, high);
    least = std::min({lows[0], lows[1], lows[2], lows[3]});
    greatest = std::max({highs[0], highs[1], highs[2], highs[3]});
    return true;
}

// +1 when the compared difference can only grow with the spot, -1 when it can only fall, 0 when
// that is not known: both sides or neither read the spot, the spot's factor is zero or not
// finite, or the other side is not finite. Correctly rounded products, quotients and differences
// keep such an order, so the date whose difference is greatest is the date of the greatest (or
// least) spot.
int SpotDirection(const TermComparison& comparison, const double* x) {
    const auto direction = [x](const Term& term) {
        if (!term.fromSpot) return std::isfinite(Value(term, 1.0, x)) ? 0 : 2;
        const double factor = term.variableFactor ? x[term.index] : term.value;
        if (!std::isfinite(factor) || factor == 0.0) return 2;
        return factor > 0.0 ? 1 : -1;
    };
    const int left = direction(comparison.left), right = direction(comparison.right);
    if (left == 2 || right == 2 || (left != 0) == (right != 0)) return 0;
    return left != 0 ? left : -right;
}
#endif

}  // namespace

std::size_t FirstPassing(Passing rule, double bound, const TermComparison& comparison,
                         const ScenarioPoint* points, std::size_t count, const double* x) {
    // The lanes stop at the first passing date, or scan all of a run of four dates or more;
    // one by one from where they stopped.
    std::size_t scanned = 0;
#if defined(__x86_64__)
    // A run of a guard that moves one way with the spot and passes from a bound up (the usual
    // barrier check, whose dates mostly all fail): when the date of the extreme spot fails, all
    // do, which its spot alone tells, without a quotient per date.
    if (kFourLanes && count >= 4 && rule != Passing::Equal) {
        double least = 0.0, greatest = 0.0;
        const int direction = SpotDirection(comparison, x);
        if (direction != 0 && SpotRangeInLanes(points, count, least, greatest) &&
            !Passes(rule, Difference(comparison, direction > 0 ? greatest : least, x), bound))
            return count;
    }
    if (kFourLanes) {
        switch (rule) {
            case Passing::Above: scanned = FirstInLanes<_CMP_GT_OQ>(bound, comparison, points, count, x); break;
            case Passing::AtLeast: scanned = FirstInLanes<_CMP_GE_OQ>(bound, comparison, points, count, x); break;
            case Passing::Equal: scanned = FirstInLanes<_CMP_EQ_OQ>(bound, comparison, points, count, x); break;
            case Passing::NotBelow: scanned = FirstInLanes<_CMP_NLT_UQ>(bound, comparison, points, count, x); break;
        }
    }
#endif
    return scanned + FirstPassingOneByOne(rule, bound, comparison, points + scanned, count - scanned, x);
}

}  // namespace zep::detail
