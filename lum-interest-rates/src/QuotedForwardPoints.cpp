#include "lum-interest-rates/QuotedForwardPoints.hpp"

#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

Interpolation<double, double, double> PointsFromZero(std::vector<double> times, std::vector<double> points) {
    ZEP_REQUIRE(!times.empty() && times.size() == points.size(), "QuotedForwardPoints: one point per time, at least one");
    for (std::size_t i = 0; i < times.size(); ++i) {
        ZEP_REQUIRE(std::isfinite(points[i]), "QuotedForwardPoints: the points must be numbers");
        ZEP_REQUIRE(times[i] > (i == 0 ? 0.0 : times[i - 1]), "QuotedForwardPoints: times must be positive and increasing");
    }
    times.insert(times.begin(), 0.0);
    points.insert(points.begin(), 0.0);
    return Interpolation<double, double, double>(std::move(times), std::move(points), LinearInterpolation,
                                                 FlatExtrapolation);
}

}  // namespace

QuotedForwardPoints::QuotedForwardPoints(double spot, double scale, std::vector<double> times, std::vector<double> points)
    : m_spot(spot), m_scale(scale), m_points(PointsFromZero(std::move(times), std::move(points))) {
    ZEP_REQUIRE(std::isfinite(spot) && spot > 0.0, "QuotedForwardPoints: the spot must be positive");
    ZEP_REQUIRE(std::isfinite(scale) && scale > 0.0, "QuotedForwardPoints: the scale must be positive");
}

}  // namespace zep
