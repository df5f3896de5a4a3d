#include "MYieldCurve2.hpp"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

namespace zep::python {

namespace {

constexpr const char* kConstructor = "MYieldCurve2::MYieldCurve2";

// Python holds curves as mutable shared pointers; the pair hands its own back the same way.
boost::shared_ptr<zep::YieldCurve> Mutable(const boost::shared_ptr<const zep::YieldCurve>& curve) {
    return boost::const_pointer_cast<zep::YieldCurve>(curve);
}

}  // namespace

MYieldCurve2::MYieldCurve2(const boost::shared_ptr<zep::YieldCurve2>& curves)
    : MWrapper(Guarded(kConstructor, [&] {
          if (!curves) throw std::invalid_argument("no YieldCurve2");
          return curves;
      })) {}

MYieldCurve2::MYieldCurve2(boost::shared_ptr<zep::YieldCurve> domestic, boost::shared_ptr<zep::YieldCurve> foreign,
                           double spot, double scale)
    : MWrapper(Guarded(kConstructor, [&] { return boost::make_shared<zep::YieldCurve2>(domestic, foreign, spot, scale); })) {}

MYieldCurve2::MYieldCurve2(boost::shared_ptr<zep::YieldCurve> domestic, double spot, double scale,
                           const std::vector<double>& times, const std::vector<double>& points)
    : MWrapper(Guarded(kConstructor,
                       [&] { return boost::make_shared<zep::YieldCurve2>(domestic, spot, scale, times, points); })) {}

double MYieldCurve2::Spot() const {
    return Guarded("MYieldCurve2::Spot", [&] { return Object("zep::MYieldCurve2::Spot").Spot(); });
}

double MYieldCurve2::Scale() const {
    return Guarded("MYieldCurve2::Scale", [&] { return Object("zep::MYieldCurve2::Scale").Scale(); });
}

double MYieldCurve2::Forward(const DateInput& date) const {
    return Guarded("MYieldCurve2::Forward", [&] { return Object("zep::MYieldCurve2::Forward").Forward(date.Value()); });
}

double MYieldCurve2::ForwardPoints(const DateInput& date) const {
    return Guarded("MYieldCurve2::ForwardPoints",
                   [&] { return Object("zep::MYieldCurve2::ForwardPoints").ForwardPoints(date.Value()); });
}

boost::shared_ptr<zep::YieldCurve> MYieldCurve2::DomesticCurve() const {
    return Guarded("MYieldCurve2::DomesticCurve",
                   [&] { return Mutable(Object("zep::MYieldCurve2::DomesticCurve").Domestic()); });
}

boost::shared_ptr<zep::YieldCurve> MYieldCurve2::ForeignCurve() const {
    return Guarded("MYieldCurve2::ForeignCurve",
                   [&] { return Mutable(Object("zep::MYieldCurve2::ForeignCurve").Foreign()); });
}

}  // namespace zep::python
