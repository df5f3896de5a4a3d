#include <gtest/gtest.h>

#include "ParamNames.hpp"

#include <cmath>
#include <vector>

#include "lum-auxiliary/Error.hpp"
#include "lum-monte-carlo/BasicRanGen.hpp"
#include "lum-monte-carlo/QmcRanGen.hpp"

namespace zep {
namespace {

double NormalCdf(double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); }

struct SerialOnlyGen final : RandomGen {
    void StartPath(std::uint64_t) override {}
    void NextPath(double*, std::size_t) override {}
};

TEST(RandomGen, BaseDerivationRefusesParallelUse) {
    SerialOnlyGen serial;
    try {
        serial.ForThread();
        FAIL() << "expected a failure";
    } catch (const Error& e) {
        EXPECT_EQ(e.Message(), "Concrete random generator cannot be used for parallel simulations");
    }
}

TEST(BasicRanGen, UniformTakes53BitsFromTwoDraws) {
    BasicRanGen draws(7);
    BasicRanGen uniforms(7);
    for (int i = 0; i < 100; ++i) {
        const std::uint64_t first = draws.NextUInt32();
        const std::uint64_t second = draws.NextUInt32();
        const double expected = static_cast<double>(second * 2097152ULL + (first >> 11)) /
                                9007199254740992.0;
        EXPECT_EQ(uniforms.NextUniform(), expected);
    }
}

// The polar method written out point by point from the generator's own uniforms: the block
// generator must keep the same points in the same order (values agree to the few ulp by which
// a vectorised logarithm may differ from the scalar one).
std::vector<double> PolarReference(BasicRanGen& uniforms, std::size_t count, double* smallestRadius = nullptr) {
    std::vector<double> normals;
    while (normals.size() < count) {
        double x1, x2, s;
        do {
            x1 = 2.0 * uniforms.NextUniform() - 1.0;
            x2 = 2.0 * uniforms.NextUniform() - 1.0;
            s = x1 * x1 + x2 * x2;
        } while (s >= 1.0 || s <= 0.0 || x1 == 0.0 || x2 == 0.0);
        if (smallestRadius) *smallestRadius = std::min(*smallestRadius, s);
        const double factor = std::sqrt(-2.0 * std::log(s) / s);
        normals.push_back(x1 * factor);
        normals.push_back(x2 * factor);
    }
    normals.resize(count);
    return normals;
}

class PolarBlocks : public ::testing::TestWithParam<std::size_t> {};
TEST_P(PolarBlocks, KeepThePointsOfThePolarMethodInOrder) {
    const std::size_t count = GetParam();
    for (std::uint64_t path : {0ULL, 1ULL, 977ULL}) {
        BasicRanGen blocks(2024), reference(2024);
        blocks.StartPath(path);
        reference.StartPath(path);
        std::vector<double> normals(count);
        blocks.NextPath(normals.data(), count);
        const std::vector<double> expected = PolarReference(reference, count);
        for (std::size_t i = 0; i < count; ++i)
            EXPECT_NEAR(normals[i], expected[i], 1e-14 * (1.0 + std::abs(expected[i])))
                << "path " << path << ", draw " << i << " of " << count;
        // Both consumed exactly the draws of their points, rejected ones included.
        EXPECT_EQ(blocks.NextUniform(), reference.NextUniform()) << "path " << path;
    }
}
INSTANTIATE_TEST_SUITE_P(AcrossBlockBoundaries, PolarBlocks, ::testing::Values(1, 2, 7, 127, 128, 129, 266, 1001),
                         [](const ::testing::TestParamInfo<PolarBlocks::ParamType>& info) { return std::to_string(info.param) + "Points"; });

// About one pair in ten thousand has s <= 0.0001 and takes the rescaled formula: paths are
// scanned until a few such pairs have gone through the block generator.
TEST(BasicRanGen, SmallRadiiKeepTheirPlaceInTheBlock) {
    int smallPairs = 0;
    for (std::uint64_t path = 0; smallPairs < 3 && path < 2000; ++path) {
        BasicRanGen blocks(99), reference(99);
        blocks.StartPath(path);
        reference.StartPath(path);
        double smallest = 1.0;
        const std::vector<double> expected = PolarReference(reference, 255, &smallest);
        std::vector<double> normals(255);
        blocks.NextPath(normals.data(), normals.size());
        for (std::size_t i = 0; i < normals.size(); ++i)
            ASSERT_NEAR(normals[i], expected[i], 1e-14 * (1.0 + std::abs(expected[i]))) << "path " << path << ", draw " << i;
        smallPairs += smallest <= 0.0001;
    }
    EXPECT_EQ(smallPairs, 3);
}

TEST(BasicRanGen, AnOddPathKeepsItsSpareForTheNextCall) {
    BasicRanGen split(5), whole(5);
    std::vector<double> first(3), second(3), all(6);
    split.NextPath(first.data(), 3);
    split.NextPath(second.data(), 3);
    whole.NextPath(all.data(), 6);
    first.insert(first.end(), second.begin(), second.end());
    EXPECT_EQ(first, all);
}

TEST(BasicRanGen, NormalsHaveUnitMomentsWithinFourStandardErrors) {
    BasicRanGen gen(42);
    const int n = 400000;
    double sum = 0, squares = 0, fourth = 0, below = 0;
    for (int i = 0; i < n; ++i) {
        const double z = gen.NextNormal();
        sum += z;
        squares += z * z;
        fourth += z * z * z * z;
        below += z < -1.0;
    }
    EXPECT_NEAR(sum / n, 0.0, 4.0 / std::sqrt(n));
    EXPECT_NEAR(squares / n, 1.0, 4.0 * std::sqrt(2.0 / n));
    EXPECT_NEAR(fourth / n, 3.0, 4.0 * std::sqrt(96.0 / n));
    const double p = NormalCdf(-1.0);
    EXPECT_NEAR(below / n, p, 4.0 * std::sqrt(p * (1 - p) / n));
}

TEST(BasicRanGen, PathStreamDependsOnlyOnSeedAndPathIndex) {
    BasicRanGen master(11);
    auto worker = master.ForThread();
    std::vector<double> a(50), b(50), c(50);
    master.StartPath(123);
    master.NextPath(a.data(), a.size());
    worker->StartPath(5);
    worker->NextPath(c.data(), c.size());
    worker->StartPath(123);
    worker->NextPath(b.data(), b.size());
    EXPECT_EQ(a, b);
    EXPECT_NE(a, c);
}

TEST(QmcRanGen, RadicalInverseMirrorsDigits) {
    EXPECT_DOUBLE_EQ(QmcRanGen::RadicalInverse(1, 2), 0.5);
    EXPECT_DOUBLE_EQ(QmcRanGen::RadicalInverse(2, 2), 0.25);
    EXPECT_DOUBLE_EQ(QmcRanGen::RadicalInverse(3, 2), 0.75);
    EXPECT_DOUBLE_EQ(QmcRanGen::RadicalInverse(6, 2), 0.375);
    EXPECT_DOUBLE_EQ(QmcRanGen::RadicalInverse(1, 3), 1.0 / 3);
    EXPECT_DOUBLE_EQ(QmcRanGen::RadicalInverse(5, 3), 2.0 / 3 + 1.0 / 9);
}

TEST(QmcRanGen, BasesAreTheFirstPrimes) {
    QmcRanGen gen(8);
    EXPECT_EQ(gen.Bases(), (std::vector<std::uint32_t>{2, 3, 5, 7, 11, 13, 17, 19}));
}

class InverseNormalAccuracy : public ::testing::TestWithParam<double> {};
TEST_P(InverseNormalAccuracy, InvertsTheNormalDistribution) {
    // Acklam's relative error on the quantile is below 1.15e-9; dx = du / density.
    const double u = GetParam();
    const double x = QmcRanGen::InverseNormal(u);
    const double density = std::exp(-x * x / 2) / std::sqrt(2 * M_PI);
    EXPECT_NEAR(NormalCdf(x), u, 1.2e-9 * std::abs(x) * density + 1e-16) << "u=" << u;
}
INSTANTIATE_TEST_SUITE_P(AcrossRegions, InverseNormalAccuracy,
                         ::testing::Values(1e-10, 1e-5, 0.01, 0.02425, 0.03, 0.2, 0.5, 0.77,
                                           0.97575, 0.99, 0.999999),
                         [](const ::testing::TestParamInfo<double>& info) {
                             return "U" + zep::testing::NameOf(info.param);
                         });

TEST(QmcRanGen, ClampsUniformsToTheOpenInterval) {
    EXPECT_EQ(QmcRanGen::InverseNormal(0.0), QmcRanGen::InverseNormal(1e-12));
    EXPECT_EQ(QmcRanGen::InverseNormal(-1.0), QmcRanGen::InverseNormal(1e-12));
    EXPECT_EQ(QmcRanGen::InverseNormal(1.0), QmcRanGen::InverseNormal(0.999999999999));
    EXPECT_LT(QmcRanGen::InverseNormal(1e-12), -7.0);
}

TEST(QmcRanGen, UsesPointCounterPlusOneAndAdvances) {
    QmcRanGen gen(2);
    double normals[2];
    EXPECT_EQ(gen.PointCounter(), 0u);
    gen.NextPath(normals, 2);  // point 1: (1/2, 1/3)
    EXPECT_EQ(gen.PointCounter(), 1u);
    EXPECT_NEAR(normals[0], 0.0, 1e-12);
    EXPECT_NEAR(NormalCdf(normals[1]), 1.0 / 3, 1e-9);
    gen.NextPath(normals, 2);  // point 2: (1/4, 2/3)
    EXPECT_NEAR(NormalCdf(normals[0]), 0.25, 1e-9);
    EXPECT_NEAR(NormalCdf(normals[1]), 2.0 / 3, 1e-9);
    gen.StartPath(2);  // point 3: (3/4, 1/9)
    gen.NextPath(normals, 2);
    EXPECT_NEAR(NormalCdf(normals[0]), 0.75, 1e-9);
    EXPECT_NEAR(NormalCdf(normals[1]), 1.0 / 9, 1e-9);
}

}  // namespace
}  // namespace zep
