#include <gtest/gtest.h>

#include "FailureText.hpp"

#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/Bisection.hpp"

namespace zep {
namespace {


TEST(Bisection, FindsRootsFromEitherSideOfTheBracket) {
    Bisection solver(1e-12);
    solver.SetDomain(0.0, 2.0);
    EXPECT_NEAR(solver.Solve([](double x) { return x * x - 2.0; }), std::sqrt(2.0), 1e-11);
    EXPECT_NEAR(solver.Solve([](double x) { return 2.0 - x * x; }), std::sqrt(2.0), 1e-11);
    solver.SetDomain(1.0, 4.0);
    EXPECT_EQ(solver.Solve([](double x) { return x - 1.0; }), 1.0);
}

TEST(Bisection, ReportsItsFailures) {
    Bisection solver;
    EXPECT_EQ(zep::testing::ErrorMessage([&] { solver.Solve([](double x) { return x; }); }), "Bisection: Domain is not set");
    solver.SetDomain(1.0, 2.0);
    EXPECT_EQ(zep::testing::ErrorMessage([&] { solver.Solve([](double x) { return x; }); }), "Bisection: root must be bracketed");
    EXPECT_EQ(zep::testing::ErrorMessage([&] { solver.Solve([](double) { return std::nan(""); }); }),
              "Bisection: root must be bracketed");
    Bisection impatient(1e-12, 5);
    impatient.SetDomain(0.0, 2.0);
    EXPECT_EQ(zep::testing::ErrorMessage([&] { impatient.Solve([](double x) { return x - 0.3; }); }),
              "Bisection: too many bisections");
}

}  // namespace
}  // namespace zep
