#include "lum-interest-rates/YieldCurve2.hpp"

#include <cmath>

#include <boost/make_shared.hpp>

#include "lum-auxiliary/Error.hpp"
#include "lum-interest-rates/QuotedForwardPoints.hpp"

namespace zep {

namespace {

void RequireSpotAndScale(double spot, double scale) {
    ZEP_REQUIRE(std::isfinite(spot) && spot > 0.0, "YieldCurve2: the spot must be positive");
    ZEP_REQUIRE(std::isfinite(scale) && scale > 0.0, "YieldCurve2: the scale must be positive");
}

// The foreign curve carries only the domestic curve's dates and day count: every rate it gives
// comes from the domestic curve and the points.
boost::shared_ptr<const YieldCurve> ImpliedForeign(const boost::shared_ptr<const YieldCurve>& domestic,
                                                   const boost::shared_ptr<const ForwardPointsCurve>& points) {
    const Date& reference = domestic->ReferenceDate();
    auto foreign = boost::make_shared<YieldCurve>(reference, std::vector<Date>{reference + 365}, std::vector<double>{1.0},
                                                  domestic->GetDayCounter());
    foreign->SetImpliedCurve(domestic, points, false);
    return foreign;
}

}  // namespace

YieldCurve2::YieldCurve2(boost::shared_ptr<const YieldCurve> domestic, boost::shared_ptr<const YieldCurve> foreign,
                         double spot, double scale)
    : m_domestic(std::move(domestic)), m_foreign(std::move(foreign)), m_spot(spot), m_scale(scale) {
    ZEP_REQUIRE(m_domestic != nullptr, "YieldCurve2: no domestic curve");
    ZEP_REQUIRE(m_foreign != nullptr, "YieldCurve2: no foreign curve");
    RequireSpotAndScale(spot, scale);
}

YieldCurve2::YieldCurve2(boost::shared_ptr<const YieldCurve> domestic, double spot, double scale,
                         std::vector<double> times, std::vector<double> points)
    : m_domestic(std::move(domestic)), m_spot(spot), m_scale(scale) {
    ZEP_REQUIRE(m_domestic != nullptr, "YieldCurve2: no domestic curve");
    RequireSpotAndScale(spot, scale);
    m_points = boost::make_shared<QuotedForwardPoints>(spot, scale, std::move(times), std::move(points));
    m_foreign = ImpliedForeign(m_domestic, m_points);
}

double YieldCurve2::Forward(const Date& date) const {
    if (!m_points) return m_spot * m_foreign->DiscountFactor(date) / m_domestic->DiscountFactor(date);
    return m_spot + m_points->ForwardPoints(m_domestic->GetDayCounter().YearFraction(m_domestic->ReferenceDate(), date)) /
                        m_scale;
}

}  // namespace zep
