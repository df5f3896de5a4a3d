// Pseudo-random normals: a 32-bit PCG engine (permuted congruential, 64-bit state) feeding the
// Marsaglia polar method through 53-bit uniforms built from two 32-bit draws.
#pragma once

#include <cstddef>
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
        m_state = old * kMultiplier + m_increment;
        return Output(old);
    }
    // (second draw * 2^21 + bits 11..31 of the first draw) * 2^-53, in [0, 1).
    double NextUniform() {
        const std::uint32_t first = NextUInt32();
        return Uniform(first, NextUInt32());
    }
    // One normal at a time, from the same stream as NextPath.
    double NextNormal() {
        double normal;
        NextPath(&normal, 1);
        return normal;
    }

private:
    static constexpr std::uint64_t kMultiplier = 6364136223846793005ULL;
    // PCG's output permutation of a state: xorshift high, then a random rotation.
    static std::uint32_t Output(std::uint64_t state) {
        const auto xorShifted = static_cast<std::uint32_t>(((state >> 18U) ^ state) >> 27U);
        const auto rotation = static_cast<std::uint32_t>(state >> 59U);
        return (xorShifted >> rotation) | (xorShifted << ((-rotation) & 31U));
    }
    static double Uniform(std::uint32_t first, std::uint32_t second) {
        return static_cast<double>((static_cast<std::uint64_t>(second) << 21) | (first >> 11)) * 0x1.0p-53;
    }
    // Marsaglia's polar method, in blocks: the points of the square are drawn and the ones
    // inside the unit disc kept without a branch per point, then each kept point (x1, x2) with
    // s = x1^2 + x2^2 gives the two normals x * sqrt(-2 ln(s) / s), the logarithms of a block
    // taken together.
    static constexpr std::size_t kBlockPairs = 64;
    void DrawPointsInDisc(std::size_t pairs);
    // Below s = 0.0001 the pair is scaled by a power of two before the logarithm, to keep
    // precision, and ln(4) per power is added back.
    static void RescaledPair(double x1, double x2, double* out);
    // Replaces the block's points of small radius by their normals, with a factor of one.
    void RescaleSmallRadii(std::size_t pairs);

    std::uint64_t m_seed;
    std::uint64_t m_state = 0;
    std::uint64_t m_increment = 1;
    double m_spareNormal = 0.0;
    bool m_hasSpare = false;
    // The current block: kept points and, once computed, their polar factors. The vector draw
    // stores eight lanes past its last kept point.
    static constexpr std::size_t kSlack = 8;
    double m_x1[kBlockPairs + kSlack];
    double m_x2[kBlockPairs + kSlack];
    double m_s[kBlockPairs + kSlack];
    double m_factor[kBlockPairs];
};

}  // namespace zep
