// Private to the vanilla book: four doubles in one AVX2 register and glibc's vector exp, log and
// erfc (libmvec, within a few ulp of the scalar functions). Include only from a source compiled
// for AVX2 and FMA (after `#pragma GCC target("avx2,fma")`) where ZEP_HAVE_VECTOR_MATH is set.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <span>

extern "C" __m256d _ZGVdN4v_exp(__m256d);
extern "C" __m256d _ZGVdN4v_log(__m256d);
extern "C" __m256d _ZGVdN4v_erfc(__m256d);

namespace zep::detail {

using Lanes = __m256d;

inline Lanes Load(std::span<const double> column, std::size_t first) { return _mm256_loadu_pd(&column[first]); }
inline void Store(std::span<double> column, std::size_t first, Lanes values) {
    _mm256_storeu_pd(&column[first], values);
}
inline Lanes Broadcast(double value) { return _mm256_set1_pd(value); }
inline Lanes Exp(Lanes x) { return _ZGVdN4v_exp(x); }
inline Lanes Log(Lanes x) { return _ZGVdN4v_log(x); }
inline Lanes Erfc(Lanes x) { return _ZGVdN4v_erfc(x); }
inline Lanes Abs(Lanes x) { return _mm256_andnot_pd(Broadcast(-0.0), x); }
// Lane-wise choice: where `mask` is set, `whereSet`, else `otherwise`.
inline Lanes Select(Lanes mask, Lanes whereSet, Lanes otherwise) { return _mm256_blendv_pd(otherwise, whereSet, mask); }

// One bit per lane (bit k for lane k) where the comparison mask holds.
inline unsigned LaneBits(Lanes mask) { return static_cast<unsigned>(_mm256_movemask_pd(mask)); }
// True in every lane where the comparison holds; NaN compares false, so NaN rows go scalar.
inline bool AllLanes(Lanes mask) { return LaneBits(mask) == 0xF; }
inline bool AnyLane(Lanes mask) { return LaneBits(mask) != 0; }
// True when no lane holds an infinity or a NaN (x - x is zero only for a finite x).
inline bool AllFinite(Lanes x) { return AllLanes(_mm256_cmp_pd(_mm256_sub_pd(x, x), Broadcast(0.0), _CMP_EQ_OQ)); }

}  // namespace zep::detail
