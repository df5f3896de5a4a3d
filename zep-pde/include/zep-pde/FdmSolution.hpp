// What a finite-difference engine leaves behind: its option values on the spot grid today and
// one time step later, read at any spot by "linear" or "cubic" interpolation, with the Greeks
// taken from the grid.
#pragma once

#include <string>
#include <vector>

namespace zep {

class FdmSolution {
public:
    // `discount` turns the undiscounted grid values into present values.
    FdmSolution(std::vector<double> spots, std::vector<double> today, std::vector<double> oneStepLater,
                double timeStep, double discount, std::string interpolation);

    double Value(double spot) const;
    // "price", "delta", "gamma" (from the grid, at the spot) or "theta" (per calendar day, from
    // the step after today); any other name fails "Unknown Greek: <name>".
    double Greek(const std::string& name, double spot) const;

private:
    double Position(double spot) const;
    double Spacing(double spot) const;
    double Interpolate(const std::vector<double>& values, double spot) const;

    std::vector<double> m_spots, m_today, m_later;
    double m_timeStep, m_discount;
    std::string m_interpolation;
};

}  // namespace zep
