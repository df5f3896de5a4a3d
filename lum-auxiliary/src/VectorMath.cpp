#include "lum-auxiliary/VectorMath.hpp"

#include <cmath>

#if defined(ZEP_HAVE_VECTOR_MATH) && defined(__x86_64__)
#pragma GCC target("avx2,fma")
#include <immintrin.h>

extern "C" __m256d _ZGVdN4v_exp(__m256d);
extern "C" __m256d _ZGVdN4v_log(__m256d);
extern "C" __m512d _ZGVeN8v_exp(__m512d);
#endif

namespace zep {

namespace {

#if defined(ZEP_HAVE_VECTOR_MATH) && defined(__x86_64__)
const bool kFourLanes = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");

// The tail shorter than four lanes goes through the same vector routine, padded, so that a
// value does not depend on its position in the array.
// glibc's eight-lane exp gives the bits of its four-lane one (checked on 8 million arguments;
// its eight-lane log does not), so exp takes eight lanes where the processor has them.
const bool kEightLanes = __builtin_cpu_supports("avx512f");

template <__m512d (*Function)(__m512d)>
__attribute__((target("avx512f"))) void InPlaceEightLanes(double* values, std::size_t count) {
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) _mm512_storeu_pd(values + i, Function(_mm512_loadu_pd(values + i)));
    if (i == count) return;
    alignas(64) double tail[8] = {1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0};
    for (std::size_t k = i; k < count; ++k) tail[k - i] = values[k];
    _mm512_store_pd(tail, Function(_mm512_load_pd(tail)));
    for (std::size_t k = i; k < count; ++k) values[k] = tail[k - i];
}

template <__m256d (*Function)(__m256d), double (*Scalar)(double)>
void InPlace(double* values, std::size_t count) {
    if (!kFourLanes) {
        for (std::size_t i = 0; i < count; ++i) values[i] = Scalar(values[i]);
        return;
    }
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) _mm256_storeu_pd(values + i, Function(_mm256_loadu_pd(values + i)));
    if (i == count) return;
    alignas(32) double tail[4] = {1.0, 1.0, 1.0, 1.0};
    for (std::size_t k = i; k < count; ++k) tail[k - i] = values[k];
    _mm256_store_pd(tail, Function(_mm256_load_pd(tail)));
    for (std::size_t k = i; k < count; ++k) values[k] = tail[k - i];
}

double ScalarExp(double x) { return std::exp(x); }
double ScalarLog(double x) { return std::log(x); }
double ScalarSqrt(double x) { return std::sqrt(x); }
__m256d Sqrt(__m256d x) { return _mm256_sqrt_pd(x); }

}  // namespace

void ExpInPlace(double* values, std::size_t count) {
    if (kEightLanes) return InPlaceEightLanes<_ZGVeN8v_exp>(values, count);
    InPlace<_ZGVdN4v_exp, ScalarExp>(values, count);
}
void LogInPlace(double* values, std::size_t count) { InPlace<_ZGVdN4v_log, ScalarLog>(values, count); }
void SqrtInPlace(double* values, std::size_t count) { InPlace<Sqrt, ScalarSqrt>(values, count); }

#else

}  // namespace

void ExpInPlace(double* values, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) values[i] = std::exp(values[i]);
}
void LogInPlace(double* values, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) values[i] = std::log(values[i]);
}
void SqrtInPlace(double* values, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) values[i] = std::sqrt(values[i]);
}

#endif

}  // namespace zep
