#include "lum-monte-carlo/BasicRanGen.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "lum-auxiliary/VectorMath.hpp"

#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace zep {

namespace {

std::uint64_t SplitMix64(std::uint64_t x) {
    x += 0x9E3779B97F4A7C15ULL;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBULL;
    return x ^ (x >> 31);
}

// The polar method keeps a point of the square when it falls inside the unit disc, off its
// centre and off both axes.
bool IsInsideDisc(double x1, double x2, double s) {
    return (s < 1.0) & (s > 0.0) & (x1 != 0.0) & (x2 != 0.0);
}

#ifdef __x86_64__
// 64-bit lane multiplication, variable rotation and unsigned conversion to double are single
// instructions with AVX-512 (F and DQ); without them the vector loop is no faster than the scalar one.
const bool kSixteenLanes = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq");

// PCG's output permutation of eight states, each result in the low half of its lane.
__attribute__((target("avx512f,avx512dq"))) __m512i OutputLanes(__m512i state) {
    const __m512i xorShifted = _mm512_srli_epi64(_mm512_xor_si512(_mm512_srli_epi64(state, 18), state), 27);
    const __m512i rotated = _mm512_rorv_epi32(xorShifted, _mm512_srli_epi64(state, 59));
    return _mm512_and_si512(rotated, _mm512_set1_epi64(0xFFFFFFFF));
}

// The scalar loop of DrawPointsInDisc four points at a time: `early` holds the four states of
// points A and B, `late` those of C and D, all jumping sixteen states per step. Every operation
// is the scalar one (no fused multiply-add), so the points are the same bits. Returns the state
// after the last point taken: a step that fills the block leaves the later points' draws unused.
__attribute__((target("avx512f,avx512dq"))) std::uint64_t DrawPointsInDiscSixteenLanes(
    std::uint64_t state, std::uint64_t multiplier, std::uint64_t increment, std::size_t pairs, double* x1,
    double* x2, double* s) {
    if (pairs == 0) return state;
    alignas(64) std::uint64_t lanes[16];
    lanes[0] = state;
    for (int k = 1; k < 16; ++k) lanes[k] = lanes[k - 1] * multiplier + increment;
    std::uint64_t jump = 1, jumpIncrement = 0;  // sixteen steps of state -> a state + c
    for (int k = 0; k < 16; ++k) {
        jumpIncrement = jumpIncrement * multiplier + increment;
        jump *= multiplier;
    }
    const __m512i jumpVector = _mm512_set1_epi64(static_cast<std::int64_t>(jump));
    const __m512i jumpIncrementVector = _mm512_set1_epi64(static_cast<std::int64_t>(jumpIncrement));
    __m512i early = _mm512_load_si512(lanes);
    __m512i late = _mm512_load_si512(lanes + 8);
    const __m512d two = _mm512_set1_pd(2.0), one = _mm512_set1_pd(1.0), zero = _mm512_setzero_pd();
    std::size_t kept = 0;
    while (true) {
        const __m512i outEarly = OutputLanes(early), outLate = OutputLanes(late);
        // Each 128-bit block pairs a first and a second draw of two points; the uniforms come out
        // as [x1 A, x1 C, x2 A, x2 C, x1 B, x1 D, x2 B, x2 D].
        const __m512i firsts = _mm512_srli_epi64(_mm512_unpacklo_epi64(outEarly, outLate), 11);
        const __m512i seconds = _mm512_slli_epi64(_mm512_unpackhi_epi64(outEarly, outLate), 21);
        const __m512d uniforms = _mm512_mul_pd(_mm512_cvtepu64_pd(_mm512_or_si512(firsts, seconds)),
                                               _mm512_set1_pd(0x1.0p-53));
        // Reordered to [x1 A, x1 B, x1 C, x1 D, x2 A, x2 B, x2 C, x2 D]: stream order, x2 four lanes on.
        const __m512d x = _mm512_permutexvar_pd(_mm512_setr_epi64(0, 4, 1, 5, 2, 6, 3, 7),
                                                _mm512_sub_pd(_mm512_mul_pd(two, uniforms), one));
        const __m512d squares = _mm512_mul_pd(x, x);
        const __m512d radius = _mm512_add_pd(squares, _mm512_shuffle_f64x2(squares, squares, 0x4E));
        const unsigned nonZero = _mm512_cmp_pd_mask(x, zero, _CMP_NEQ_OQ);
        const unsigned taken = _mm512_cmp_pd_mask(radius, one, _CMP_LT_OQ) &
                               _mm512_cmp_pd_mask(radius, zero, _CMP_GT_OQ) & nonZero & (nonZero >> 4) & 0xFU;
        // The kept points packed to the front and stored whole: the lanes past them land in
        // the arrays' slack and are overwritten by the next step.
        _mm512_storeu_pd(x1 + kept, _mm512_maskz_compress_pd(static_cast<__mmask8>(taken), x));
        _mm512_storeu_pd(x2 + kept, _mm512_maskz_compress_pd(static_cast<__mmask8>(taken),
                                                             _mm512_shuffle_f64x2(x, x, 0x4E)));
        _mm512_storeu_pd(s + kept, _mm512_maskz_compress_pd(static_cast<__mmask8>(taken), radius));
        const auto count = static_cast<std::size_t>(__builtin_popcount(taken));
        early = _mm512_add_epi64(_mm512_mullo_epi64(early, jumpVector), jumpIncrementVector);
        if (kept + count >= pairs) {
            // The state after the point that completes the block: the next point's first draw.
            unsigned remaining = taken;
            for (std::size_t k = kept + 1; k < pairs; ++k) remaining &= remaining - 1;
            const int last = __builtin_ctz(remaining);
            if (last < 3) return lanes[4 * (last + 1)];
            return static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm512_castsi512_si128(early)));
        }
        kept += count;
        late = _mm512_add_epi64(_mm512_mullo_epi64(late, jumpVector), jumpIncrementVector);
        _mm512_store_si512(lanes, early);
        _mm512_store_si512(lanes + 8, late);
    }
}
#endif

}  // namespace

BasicRanGen::BasicRanGen(std::uint64_t seed) : m_seed(seed) { StartPath(0); }

void BasicRanGen::StartPath(std::uint64_t pathIndex) {
    const std::uint64_t mixed = SplitMix64(m_seed ^ SplitMix64(pathIndex));
    m_increment = (SplitMix64(mixed) << 1) | 1U;
    m_state = 0;
    NextUInt32();
    m_state += mixed;
    NextUInt32();
    m_hasSpare = false;
}

void BasicRanGen::RescaleSmallRadii(std::size_t pairs) {
    for (std::size_t k = 0; k < pairs; ++k) {
        if (m_s[k] > 0.0001) continue;
        double pair[2];
        RescaledPair(m_x1[k], m_x2[k], pair);
        m_x1[k] = pair[0];
        m_x2[k] = pair[1];
        m_factor[k] = 1.0;
    }
}

void BasicRanGen::RescaledPair(double x1, double x2, double* out) {
    int exponent = 0;
    std::frexp(x1 * x1 + x2 * x2, &exponent);
    const int k = -exponent / 2;  // s * 4^k lands in [1/8, 1)
    x1 = std::ldexp(x1, k);
    x2 = std::ldexp(x2, k);
    const double s = x1 * x1 + x2 * x2;
    const double logS = std::log(s) - k * 2.0 * std::numbers::ln2;
    const double factor = std::sqrt(-2.0 * logS / s);
    out[0] = x1 * factor;
    out[1] = x2 * factor;
}

void BasicRanGen::DrawPointsInDisc(std::size_t pairs) {
#ifdef __x86_64__
    if (kSixteenLanes) {
        m_state = DrawPointsInDiscSixteenLanes(m_state, kMultiplier, m_increment, pairs, m_x1, m_x2, m_s);
        return;
    }
#endif
    // A point takes four consecutive draws. They come from four interleaved copies of the
    // congruential recursion, each jumping four states at a time (state -> a^4 state + c4), so
    // the four multiplications of a point run side by side: the same draws, in the same order.
    const std::uint64_t a = kMultiplier, c = m_increment;
    const std::uint64_t a4 = a * a * a * a;
    const std::uint64_t c4 = c * (a * a * a + a * a + a + 1);
    std::uint64_t s0 = m_state;
    std::uint64_t s1 = s0 * a + c;
    std::uint64_t s2 = s1 * a + c;
    std::uint64_t s3 = s2 * a + c;
    std::size_t kept = 0;
    while (kept < pairs) {
        const double x1 = 2.0 * Uniform(Output(s0), Output(s1)) - 1.0;
        const double x2 = 2.0 * Uniform(Output(s2), Output(s3)) - 1.0;
        s0 = s0 * a4 + c4;
        s1 = s1 * a4 + c4;
        s2 = s2 * a4 + c4;
        s3 = s3 * a4 + c4;
        const double s = x1 * x1 + x2 * x2;
        m_x1[kept] = x1;
        m_x2[kept] = x2;
        m_s[kept] = s;
        // A rejected point is overwritten by the next draw.
        kept += static_cast<std::size_t>(IsInsideDisc(x1, x2, s));
    }
    m_state = s0;
}

void BasicRanGen::NextPath(double* normals, std::size_t count) {
    std::size_t i = 0;
    if (m_hasSpare && count > 0) {
        normals[i++] = m_spareNormal;
        m_hasSpare = false;
    }
    while (i < count) {
        const std::size_t pairs = std::min((count - i + 1) / 2, kBlockPairs);
        DrawPointsInDisc(pairs);
        double smallest = 1.0;
        for (std::size_t k = 0; k < pairs; ++k) {
            m_factor[k] = m_s[k];
            smallest = std::min(smallest, m_s[k]);
        }
        LogInPlace(m_factor, pairs);
        for (std::size_t k = 0; k < pairs; ++k) m_factor[k] = -2.0 * m_factor[k] / m_s[k];
        SqrtInPlace(m_factor, pairs);
        // The normals are formed in place by loops the compiler vectorises; a rare small radius
        // gets its pair from the rescaled formula and a factor of one.
        if (smallest <= 0.0001) [[unlikely]] RescaleSmallRadii(pairs);
        for (std::size_t k = 0; k < pairs; ++k) {
            m_x1[k] *= m_factor[k];
            m_x2[k] *= m_factor[k];
        }
        const std::size_t whole = std::min(pairs, (count - i) / 2);
        double* out = normals + i;
        for (std::size_t k = 0; k < whole; ++k) {
            out[2 * k] = m_x1[k];
            out[2 * k + 1] = m_x2[k];
        }
        i += 2 * whole;
        if (whole < pairs) {  // an odd count keeps the last pair's second normal for the next call
            normals[i++] = m_x1[whole];
            m_spareNormal = m_x2[whole];
            m_hasSpare = true;
        }
    }
}

std::unique_ptr<RandomGen> BasicRanGen::ForThread() const {
    return std::make_unique<BasicRanGen>(m_seed);
}

}  // namespace zep
