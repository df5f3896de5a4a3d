// The discount curves of a currency pair and the FX forward between them, in domestic units per
// foreign unit. From two curves the forward follows covered interest parity,
// forward(t) = spot * DF_foreign(t) / DF_domestic(t); from the domestic curve and quoted forward
// points (forward = spot + points / scale) the foreign curve is the one the yield curve implies
// from the other currency and the points (YieldCurve::SetImpliedCurve).
#pragma once

#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/ForwardPointsCurve.hpp"
#include "lum-interest-rates/YieldCurve.hpp"

namespace zep {

class YieldCurve2 {
public:
    YieldCurve2(boost::shared_ptr<const YieldCurve> domestic, boost::shared_ptr<const YieldCurve> foreign, double spot,
                double scale = 10000.0);
    // times in years on the domestic curve's day count.
    YieldCurve2(boost::shared_ptr<const YieldCurve> domestic, double spot, double scale, std::vector<double> times,
                std::vector<double> points);

    double Spot() const { return m_spot; }
    double Scale() const { return m_scale; }
    double Forward(const Date& date) const;
    double ForwardPoints(const Date& date) const { return (Forward(date) - m_spot) * m_scale; }
    const boost::shared_ptr<const YieldCurve>& Domestic() const { return m_domestic; }
    const boost::shared_ptr<const YieldCurve>& Foreign() const { return m_foreign; }
    bool HasQuotedPoints() const { return m_points != nullptr; }

private:
    boost::shared_ptr<const YieldCurve> m_domestic;
    boost::shared_ptr<const YieldCurve> m_foreign;
    double m_spot;
    double m_scale;
    boost::shared_ptr<const ForwardPointsCurve> m_points;  // null when both curves are given
};

}  // namespace zep
