#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <memory>
#include <utility>
#include <vector>

#include "FailureText.hpp"
#include "lum-solvers/DifferentialEvolution.hpp"
#include "lum-solvers/LevenbergMarquardt.hpp"
#include "lum-solvers/NloptOptimizer.hpp"
#include "lum-solvers/RootFinders.hpp"

namespace zep {
namespace {

// Roots known in closed form: cube root, Kepler-like transcendental, a root at a bracket end.
TEST(RootFinders, NewtonAndBrentFindKnownRoots) {
    const auto cube = [](double x) { return x * x * x - 2.0; };
    EXPECT_NEAR(BrentSolve(cube, 0.0, 3.0), std::cbrt(2.0), 1e-12);
    EXPECT_NEAR(NewtonSolve([&](double x) { return std::pair{cube(x), 3.0 * x * x}; }, 2.5, 0.0, 3.0), std::cbrt(2.0),
                1e-12);
    // x - 0.5 sin x = 1: no closed form, but the answer satisfies the equation to the accuracy.
    const double kepler = BrentSolve([](double x) { return x - 0.5 * std::sin(x) - 1.0; }, 0.0, 3.0);
    EXPECT_NEAR(kepler - 0.5 * std::sin(kepler), 1.0, 1e-12);
    EXPECT_EQ(BrentSolve([](double x) { return x - 1.0; }, 1.0, 2.0), 1.0);
}

TEST(RootFinders, NewtonFallsBackOnBisectionWhereItsStepWouldLeave) {
    // atan's Newton step from 1.5 overshoots past the bracket; the safeguard keeps it inside.
    const double root = NewtonSolve([](double x) { return std::pair{std::atan(x), 1.0 / (1.0 + x * x)}; }, 1.5, -2.0, 10.0);
    EXPECT_NEAR(root, 0.0, 1e-12);
}

TEST(RootFinders, FailuresNameTheSolver) {
    EXPECT_EQ(testing::ErrorMessage([] { BrentSolve([](double x) { return x * x + 1.0; }, -1.0, 1.0); }),
              "Brent: root must be bracketed");
    EXPECT_EQ(testing::ErrorMessage([] {
                  NewtonSolve([](double x) { return std::pair{std::exp(x) - 1.3, std::exp(x)}; }, 0.9, 0.0, 1.0, {1e-300, 3});
              }),
              "Newton: no convergence after 3 iterations");
}

// Rosenbrock's valley: the minimum (1, 1) is known and hard to reach.
double Rosenbrock(const std::vector<double>& x) {
    return 100.0 * std::pow(x[1] - x[0] * x[0], 2) + std::pow(1.0 - x[0], 2);
}

TEST(LevenbergMarquardt, FitsAnExponentialDecayToItsOwnData) {
    std::vector<double> times, observed;
    for (int i = 0; i < 12; ++i) {
        times.push_back(0.25 * i);
        observed.push_back(2.5 * std::exp(-0.8 * times.back()) + 0.3);
    }
    const auto residuals = [&](const std::vector<double>& p) {
        std::vector<double> r;
        for (std::size_t i = 0; i < times.size(); ++i) r.push_back(p[0] * std::exp(-p[1] * times[i]) + p[2] - observed[i]);
        return r;
    };
    const auto fit = LevenbergMarquardt().Minimize(residuals, {1.0, 0.1, 0.0}, {{0.0, 0.0, -1.0}, {10.0, 5.0, 1.0}});
    EXPECT_NEAR(fit.x[0], 2.5, 1e-7);
    EXPECT_NEAR(fit.x[1], 0.8, 1e-7);
    EXPECT_NEAR(fit.x[2], 0.3, 1e-7);
    EXPECT_LT(fit.value, 1e-16);
}

TEST(LevenbergMarquardt, RosenbrockAsResidualsReachesTheValleyFloor) {
    const auto residuals = [](const std::vector<double>& x) {
        return std::vector<double>{10.0 * (x[1] - x[0] * x[0]), 1.0 - x[0]};
    };
    const auto fit = LevenbergMarquardt().Minimize(residuals, {-1.2, 1.0}, {{-5.0, -5.0}, {5.0, 5.0}});
    EXPECT_NEAR(fit.x[0], 1.0, 1e-6);
    EXPECT_NEAR(fit.x[1], 1.0, 1e-6);
}

TEST(LevenbergMarquardt, AtTheIterationCapFailsOrHandsBackTheBestPointReached) {
    const auto residuals = [](const std::vector<double>& x) {
        return std::vector<double>{10.0 * (x[1] - x[0] * x[0]), 1.0 - x[0]};
    };
    const Box box{{-5.0, -5.0}, {5.0, 5.0}};
    EXPECT_EQ(testing::ErrorMessage([&] { LevenbergMarquardt({3}).Minimize(residuals, {-1.2, 1.0}, box); }),
              "LevenbergMarquardt: no convergence after 3 iterations");
    const auto fit = LevenbergMarquardt({3, 1e-12, 1e-7, false}).Minimize(residuals, {-1.2, 1.0}, box);
    EXPECT_FALSE(fit.converged);
    // Rosenbrock's value at the start is 24.2; the point handed back is the lowest reached.
    EXPECT_LT(fit.value, 24.2);
    EXPECT_NEAR(fit.value, Rosenbrock(fit.x), 1e-12 * fit.value);
    EXPECT_TRUE(LevenbergMarquardt().Minimize(residuals, {-1.2, 1.0}, box).converged);
}

class Optimizers : public ::testing::TestWithParam<std::string> {};

std::unique_ptr<Optimizer> Make(const std::string& name) {
    if (name == "DifferentialEvolution") return std::make_unique<DifferentialEvolution>();
    if (name == "COBYLA") return std::make_unique<NloptOptimizer>(NloptAlgorithm::COBYLA, 20000);
    if (name == "DIRECT") return std::make_unique<NloptOptimizer>(NloptAlgorithm::DIRECT, 20000);
    return std::make_unique<NloptOptimizer>(NloptAlgorithm::Subplex, 20000);
}

TEST_P(Optimizers, FindTheMinimumOfAShiftedBowlInsideTheBox) {
    const auto bowl = [](const std::vector<double>& x) {
        return std::pow(x[0] - 0.3, 2) + 2.0 * std::pow(x[1] + 0.7, 2) + 1.5;
    };
    const auto result = Make(GetParam())->Minimize(bowl, {0.9, 0.9}, {{-1.0, -1.0}, {1.0, 1.0}});
    EXPECT_NEAR(result.x[0], 0.3, 1e-3);
    EXPECT_NEAR(result.x[1], -0.7, 1e-3);
    EXPECT_NEAR(result.value, 1.5, 1e-6);
    EXPECT_GT(result.evaluations, 0);
}

TEST_P(Optimizers, RefuseAnUpsideDownBoxNamingThemselves) {
    const std::string text = testing::ErrorMessage(
        [&] { Make(GetParam())->Minimize(Rosenbrock, {0.0, 0.0}, {{1.0, -1.0}, {-1.0, 1.0}}); });
    EXPECT_NE(text.find("lower bound above upper bound for parameter 0"), std::string::npos) << text;
}

TEST(NloptOptimizer, AnObjectiveThatThrowsStopsTheSearchWithItsError) {
    const NloptOptimizer cobyla(NloptAlgorithm::COBYLA);
    EXPECT_EQ(testing::ErrorMessage([&] {
                  cobyla.Minimize([](const std::vector<double>&) -> double { ZEP_FAIL("objective failed"); }, {0.5},
                                  {{0.0}, {1.0}});
              }),
              "objective failed");
}

INSTANTIATE_TEST_SUITE_P(DerivativeFree, Optimizers,
                         ::testing::Values("DifferentialEvolution", "COBYLA", "DIRECT", "Subplex"),
                         [](const ::testing::TestParamInfo<std::string>& info) { return info.param; });

}  // namespace
}  // namespace zep
