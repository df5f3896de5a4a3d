// Pseudo-random normals: a 32-bit PCG engine (permuted congruential, 64-bit state) feeding the
// Marsaglia polar method through 53-bit uniforms built from two 32-bit draws.
#pragma once

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

    std::uint32_t NextUInt32();
    // (second draw * 2^21 + bits 11..31 of the first draw) * 2^-53, in [0, 1).
    double NextUniform();
    double NextNormal();

private:
    std::uint64_t m_seed;
    std::uint64_t m_state = 0;
    std::uint64_t m_increment = 1;
    double m_spareNormal = 0.0;
    bool m_hasSpare = false;
};

}  // namespace zep
