// FX forward points by time: what a yield curve implied from the other currency needs of it,
// namely the spot, the quoting scale of the points and the points at a time. A forward-points
// curve may itself be implied from two yield curves, in which case it hands them out.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

namespace zep {

class YieldCurve;

class ForwardPointsCurve {
public:
    virtual ~ForwardPointsCurve() = default;
    // Spot rate on the given side ("MID", "BID", "ASK").
    virtual double Spot(const std::string& side) const = 0;
    // Points per unit of the rate: forward = spot + points / scale.
    virtual double Scale() const = 0;
    // Points at t years from the curve's own interpolation.
    virtual double ForwardPoints(double t) const = 0;
    // The two curves whose rates imply the points (first currency, second currency), or null
    // pointers when the points are quoted.
    virtual boost::shared_ptr<const YieldCurve> FirstImpliedCurve() const { return nullptr; }
    virtual boost::shared_ptr<const YieldCurve> SecondImpliedCurve() const { return nullptr; }
};

}  // namespace zep
