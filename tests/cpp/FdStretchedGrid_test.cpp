#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "lum-closed-form/BSVanilla.hpp"
#include "zep-pde/BlackScholesFdSolver.hpp"
#include "zep-pde/FdmSolution.hpp"

namespace {

// A European put rolled back on a grid of 101 spots, read at the spot.
double FdPut(double concentration) {
    const double strike = 100.0, spot = 97.0, vol = 0.25, t = 0.75, rd = 0.03, rf = 0.01;
    zep::FdGridSpec grid{101, 400, 25.0, 400.0};
    grid.concentration = concentration;
    grid.centre = strike;
    const zep::BlackScholesFdSolver solver(grid, vol, rd - rf, t);
    std::vector<double> values(solver.Spots().size());
    std::transform(solver.Spots().begin(), solver.Spots().end(), values.begin(),
                   [&](double s) { return std::max(strike - s, 0.0); });
    std::vector<double> later;
    solver.Roll(values, nullptr, &later);
    return zep::FdmSolution(solver.Spots(), values, later, solver.TimeStep(), std::exp(-rd * t), "cubic").Value(spot);
}

TEST(FdStretchedGrid, GatheringNodesAtTheStrikeCutsTheErrorOfAEuropeanPut) {
    const double exact = zep::BSVanilla(1, 100.0, 0.25, 0.75, 0.75, 0.03, 0.01, 97.0).Price();
    const double uniformError = std::abs(FdPut(0.0) - exact);
    const double stretchedError = std::abs(FdPut(0.05) - exact);
    EXPECT_LT(stretchedError, 5e-3);
    EXPECT_LT(stretchedError, 0.5 * uniformError) << "uniform " << uniformError << ", stretched " << stretchedError;
}

TEST(FdStretchedGrid, KeepsItsEndsAndOrder) {
    zep::FdGridSpec grid{51, 10, 20.0, 300.0};
    grid.concentration = 0.05;
    grid.centre = 100.0;
    const zep::BlackScholesFdSolver solver(grid, 0.2, 0.0, 1.0);
    const std::vector<double>& spots = solver.Spots();
    EXPECT_EQ(spots.front(), 20.0);
    EXPECT_EQ(spots.back(), 300.0);
    EXPECT_TRUE(std::is_sorted(spots.begin(), spots.end()));
    // Densest at the strike: the spacing there is the smallest.
    const auto nearest = std::lower_bound(spots.begin(), spots.end(), 100.0) - spots.begin();
    EXPECT_LT(spots[nearest] - spots[nearest - 1], 0.25 * (spots[1] - spots[0]));
}

}  // namespace
