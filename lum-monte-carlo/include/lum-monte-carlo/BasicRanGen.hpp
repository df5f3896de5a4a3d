// Pseudo-random normals: a 32-bit PCG engine (permuted congruential, 64-bit state) feeding the
// Marsaglia polar method through 53-bit uniforms built from two 32-bit draws.
#pragma once

#include <cmath>
#include <cstdint>

#include "lum-monte-carlo/RandomGen.hpp"

namespace zep {

class BasicRanGen final : public RandomGen {
public:
    explicit BasicRanGen(std::uint64_t seed);

    // Each path gets its own engine state, mixed from the seed and the path index with a
    // SplitMix64 finaliser: seeding is a few integer operations, cheap enough to do per path.
    void StartPath(std::uint64_t pathIndex) override;
    void NextPath(double* normals, std::size_t count) override;
    std::unique_ptr<RandomGen> ForThread() const override;

    std::uint32_t NextUInt32() {
        const std::uint64_t old = m_state;
        m_state = old * 6364136223846793005ULL + m_increment;
        const auto xorShifted = static_cast<std::uint32_t>(((old >> 18U) ^ old) >> 27U);
        const auto rotation = static_cast<std::uint32_t>(old >> 59U);
        return (xorShifted >> rotation) | (xorShifted << ((-rotation) & 31U));
    }
    // (second draw * 2^21 + bits 11..31 of the first draw) * 2^-53, in [0, 1).
    double NextUniform() {
        const std::uint32_t first = NextUInt32();
        const std::uint32_t second = NextUInt32();
        return static_cast<double>((static_cast<std::uint64_t>(second) << 21) | (first >> 11)) *
               0x1.0p-53;
    }
    double NextNormal() {
        if (m_hasSpare) {
            m_hasSpare = false;
            return m_spareNormal;
        }
        double pair[2];
        NormalPair(pair);
        m_spareNormal = pair[1];
        m_hasSpare = true;
        return pair[0];
    }

private:
    // Marsaglia's polar method: two normals from one accepted point of the unit disc.
    void NormalPair(double* out) {
        double x1, x2, s;
        do {
            x1 = 2.0 * NextUniform() - 1.0;
            x2 = 2.0 * NextUniform() - 1.0;
            s = x1 * x1 + x2 * x2;
        } while (s >= 1.0 || s <= 0.0 || x1 == 0.0 || x2 == 0.0);
        if (s <= 0.0001) return RescaledPair(x1, x2, out);
        const double factor = std::sqrt(-2.0 * std::log(s) / s);
        out[0] = x1 * factor;
        out[1] = x2 * factor;
    }
    // Below s = 0.0001 the pair is scaled by a power of two before the logarithm, to keep
    // precision, and ln(4) per power is added back.
    static void RescaledPair(double x1, double x2, double* out);

    std::uint64_t m_seed;
    std::uint64_t m_state = 0;
    std::uint64_t m_increment = 1;
    double m_spareNormal = 0.0;
    bool m_hasSpare = false;
};

}  // namespace zep
