// FX forward points as the market quotes them: points at a few times, linear in between and held
// flat beyond the last (and from zero points at time zero before the first).
#pragma once

#include <vector>

#include "lum-auxiliary/Interpolation.hpp"
#include "lum-interest-rates/ForwardPointsCurve.hpp"

namespace zep {

class QuotedForwardPoints : public ForwardPointsCurve {
public:
    // times ascending and positive, in years; forward = spot + points / scale.
    QuotedForwardPoints(double spot, double scale, std::vector<double> times, std::vector<double> points);

    double Spot(const std::string&) const override { return m_spot; }
    double Scale() const override { return m_scale; }
    double ForwardPoints(double t) const override { return t <= 0.0 ? 0.0 : m_points.Evaluate(t); }

private:
    double m_spot;
    double m_scale;
    Interpolation<double, double, double> m_points;
};

}  // namespace zep
