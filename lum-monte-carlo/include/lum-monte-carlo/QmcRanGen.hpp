// Quasi-random normals: the Halton low-discrepancy sequence, one prime base per dimension (time
// step and factor), mapped to normals by Acklam's rational inverse of the normal distribution.
#pragma once

#include <cstdint>
#include <vector>

#include "lum-monte-carlo/RandomGen.hpp"

namespace zep {

class QmcRanGen final : public RandomGen {
public:
    // `dimensions` draws per path; dimension i uses the (i+1)-th prime as its base.
    explicit QmcRanGen(std::size_t dimensions);

    // The point counter k becomes the path index; the path uses Halton point k + 1.
    void StartPath(std::uint64_t pathIndex) override;
    // Uses point k + 1, then advances k by one.
    void NextPath(double* normals, std::size_t count) override;
    std::unique_ptr<RandomGen> ForThread() const override;

    std::uint64_t PointCounter() const { return m_counter; }
    const std::vector<std::uint32_t>& Bases() const { return m_bases; }

    // The digits of n in base b mirrored behind the radix point.
    static double RadicalInverse(std::uint64_t n, std::uint32_t base);
    // Acklam's approximation, u clamped to [1e-12, 0.999999999999] first.
    static double InverseNormal(double u);

private:
    std::vector<std::uint32_t> m_bases;
    std::uint64_t m_counter = 0;
};

}  // namespace zep
