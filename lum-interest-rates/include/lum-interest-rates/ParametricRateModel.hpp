// A term structure given by a formula (Nelson-Siegel, Svensson, short-rate models) rather than
// by pillars: all a parametric yield curve needs from it is its zero rate at a time.
#pragma once

namespace zep {

class ParametricRateModel {
public:
    virtual ~ParametricRateModel() = default;
    // Zero rate at t years, in the convention of the curve that reads it.
    virtual double Rate(double t) const = 0;
};

}  // namespace zep
