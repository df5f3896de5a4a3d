// The Python face of a currency pair's curves in the M-class frame: the domestic and foreign
// discount curves and the forward points between them; every failure is reported with
// "MYieldCurve2::<operation> failed: " in front.
#pragma once

#include <vector>

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "lum-interest-rates/YieldCurve2.hpp"

namespace zep::python {

class MYieldCurve2 : public MWrapper<zep::YieldCurve2> {
public:
    MYieldCurve2() = default;  // an empty object: every call reports "not initialized!"
    explicit MYieldCurve2(const boost::shared_ptr<zep::YieldCurve2>& curves);
    // Both curves: the points follow from covered interest parity.
    MYieldCurve2(boost::shared_ptr<zep::YieldCurve> domestic, boost::shared_ptr<zep::YieldCurve> foreign, double spot,
                 double scale = 10000.0);
    // The domestic curve and quoted points at times in years: the foreign curve is implied.
    MYieldCurve2(boost::shared_ptr<zep::YieldCurve> domestic, double spot, double scale,
                 const std::vector<double>& times, const std::vector<double>& points);

    double Spot() const;
    double Scale() const;
    double Forward(const DateInput& date) const;
    double ForwardPoints(const DateInput& date) const;
    boost::shared_ptr<zep::YieldCurve> DomesticCurve() const;
    boost::shared_ptr<zep::YieldCurve> ForeignCurve() const;
    // The library object, for what is built on it.
    boost::shared_ptr<zep::YieldCurve2> Curves() const { return m_object; }
};

}  // namespace zep::python
