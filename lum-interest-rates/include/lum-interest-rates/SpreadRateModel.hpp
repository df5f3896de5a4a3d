// A curve over a base curve: its continuously compounded zero rate at t is the base curve's plus
// a spread, constant or read off a spread curve (its continuous zero rate at t), so that its
// discount factors are the base curve's times the spread's. Attached to a yield curve through
// the parametric hook, on the base curve's reference date and day count.
#pragma once

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/ParametricRateModel.hpp"
#include "lum-interest-rates/YieldCurve.hpp"

namespace zep {

class SpreadRateModel final : public ParametricRateModel {
public:
    SpreadRateModel(boost::shared_ptr<const YieldCurve> base, double spread);
    SpreadRateModel(boost::shared_ptr<const YieldCurve> base, boost::shared_ptr<const YieldCurve> spreadCurve);
    double Rate(double t) const override;

private:
    boost::shared_ptr<const YieldCurve> m_base;
    boost::shared_ptr<const YieldCurve> m_spreadCurve;  // null: the constant spread
    double m_spread = 0.0;
};

}  // namespace zep
