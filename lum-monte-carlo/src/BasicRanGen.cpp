#include "lum-monte-carlo/BasicRanGen.hpp"

#include <cmath>
#include <numbers>

namespace zep {

namespace {

constexpr std::uint64_t kPcgMultiplier = 6364136223846793005ULL;

std::uint64_t SplitMix64(std::uint64_t x) {
    x += 0x9E3779B97F4A7C15ULL;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBULL;
    return x ^ (x >> 31);
}

// Below this s the logarithm of the tiny radius loses relative precision in x * sqrt(-2 ln s / s);
// scaling both coordinates by 2^k keeps every operand near 1.
constexpr double kRescaleThreshold = 0.0001;

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

std::uint32_t BasicRanGen::NextUInt32() {
    const std::uint64_t old = m_state;
    m_state = old * kPcgMultiplier + m_increment;
    const auto xorShifted = static_cast<std::uint32_t>(((old >> 18U) ^ old) >> 27U);
    const auto rotation = static_cast<std::uint32_t>(old >> 59U);
    return (xorShifted >> rotation) | (xorShifted << ((-rotation) & 31U));
}

double BasicRanGen::NextUniform() {
    const std::uint32_t first = NextUInt32();
    const std::uint32_t second = NextUInt32();
    const std::uint64_t bits = (static_cast<std::uint64_t>(second) << 21) | (first >> 11);
    return static_cast<double>(bits) * 0x1.0p-53;
}

double BasicRanGen::NextNormal() {
    if (m_hasSpare) {
        m_hasSpare = false;
        return m_spareNormal;
    }
    double x1 = 0.0;
    double x2 = 0.0;
    double s = 0.0;
    do {
        x1 = 2.0 * NextUniform() - 1.0;
        x2 = 2.0 * NextUniform() - 1.0;
        s = x1 * x1 + x2 * x2;
    } while (s >= 1.0 || s <= 0.0 || x1 == 0.0 || x2 == 0.0);

    double logS = 0.0;
    if (s <= kRescaleThreshold) {
        int exponent = 0;
        std::frexp(s, &exponent);
        const int k = -exponent / 2;  // s * 4^k lands in [1/8, 1)
        x1 = std::ldexp(x1, k);
        x2 = std::ldexp(x2, k);
        s = x1 * x1 + x2 * x2;
        logS = std::log(s) - k * 2.0 * std::numbers::ln2;  // ln(4) per power of two
    } else {
        logS = std::log(s);
    }
    const double factor = std::sqrt(-2.0 * logS / s);
    m_spareNormal = x2 * factor;
    m_hasSpare = true;
    return x1 * factor;
}

void BasicRanGen::NextPath(double* normals, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) normals[i] = NextNormal();
}

std::unique_ptr<RandomGen> BasicRanGen::ForThread() const {
    return std::make_unique<BasicRanGen>(m_seed);
}

}  // namespace zep
