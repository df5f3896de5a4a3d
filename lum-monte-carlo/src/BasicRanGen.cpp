#include "lum-monte-carlo/BasicRanGen.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "lum-auxiliary/VectorMath.hpp"

namespace zep {

namespace {

std::uint64_t SplitMix64(std::uint64_t x) {
    x += 0x9E3779B97F4A7C15ULL;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBULL;
    return x ^ (x >> 31);
}

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
        kept += static_cast<std::size_t>((s < 1.0) & (s > 0.0) & (x1 != 0.0) & (x2 != 0.0));
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
        std::copy(m_s, m_s + pairs, m_factor);
        LogInPlace(m_factor, pairs);
        for (std::size_t k = 0; k < pairs; ++k) m_factor[k] = -2.0 * m_factor[k] / m_s[k];
        SqrtInPlace(m_factor, pairs);
        for (std::size_t k = 0; k < pairs; ++k) {
            double pair[2];
            if (m_s[k] <= 0.0001) [[unlikely]] {
                RescaledPair(m_x1[k], m_x2[k], pair);
            } else {
                pair[0] = m_x1[k] * m_factor[k];
                pair[1] = m_x2[k] * m_factor[k];
            }
            normals[i++] = pair[0];
            if (i < count) {
                normals[i++] = pair[1];
            } else {
                m_spareNormal = pair[1];
                m_hasSpare = true;
            }
        }
    }
}

std::unique_ptr<RandomGen> BasicRanGen::ForThread() const {
    return std::make_unique<BasicRanGen>(m_seed);
}

}  // namespace zep
