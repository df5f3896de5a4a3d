#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/Bisection.hpp"

namespace zep {
namespace {

std::string Failure(auto&& action) {
    try {
        action();
    } catch (const Error& e) {
        return e.Message();
    }
    return "(no failure)";
}

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
    EXPECT_EQ(Failure([&] { solver.Solve([](double x) { return x; }); }), "Bisection: Domain is not set");
    solver.SetDomain(1.0, 2.0);
    EXPECT_EQ(Failure([&] { solver.Solve([](double x) { return x; }); }), "Bisection: root must be bracketed");
    EXPECT_EQ(Failure([&] { solver.Solve([](double) { return std::nan(""); }); }),
              "Bisection: root must be bracketed");
    Bisection impatient(1e-12, 5);
    impatient.SetDomain(0.0, 2.0);
    EXPECT_EQ(Failure([&] { impatient.Solve([](double x) { return x - 0.3; }); }),
              "Bisection: too many bisections");
}

}  // namespace
}  // namespace zep
