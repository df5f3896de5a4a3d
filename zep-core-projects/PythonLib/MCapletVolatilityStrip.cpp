#include "MCapletVolatilityStrip.hpp"

#include <boost/make_shared.hpp>

namespace zep::python {

MCapletVolatilityStrip::MCapletVolatilityStrip(const std::string& capFloor, double strike, const DateInput& startDate,
                                               const std::vector<DateInput>& maturityDates,
                                               const std::vector<double>& flatVolatilities,
                                               boost::shared_ptr<zep::YieldCurve> discountCurve,
                                               boost::shared_ptr<zep::YieldCurve> projectionCurve,
                                               const std::string& model, double shift, const std::string& tenor,
                                               const zep::DayCounter& dayCounter, const std::string& centres,
                                               int fixingLagDays) {
    Guarded("MCapletVolatilityStrip::MCapletVolatilityStrip", [&] {
        const auto kind = static_cast<zep::CapFloorKind>(ChoiceOf(capFloor, {"CAP", "FLOOR"}, "cap or floor"));
        CurvePair curves(discountCurve, projectionCurve, nullptr, "MCapletVolatilityStrip");
        std::vector<zep::CapFloor> caps;
        for (const DateInput& maturity : maturityDates)
            caps.emplace_back(MakeSchedule(startDate, maturity, {tenor, dayCounter, centres, fixingLagDays, 0}), kind,
                              strike, 1.0);
        auto strip = boost::make_shared<zep::CapletVolatilityStrip>(caps, flatVolatilities, *curves.discount,
                                                                     *curves.projection,
                                                                     zep::RateVolatilityModelOf(model.c_str()), shift);
        m_curves.emplace(std::move(curves));
        m_caps = std::move(caps);
        m_object = std::move(strip);
    });
}

std::vector<double> MCapletVolatilityStrip::CapletExpiries() const {
    return Guarded("MCapletVolatilityStrip::CapletExpiries",
                   [&] { return Object("zep::python::MCapletVolatilityStrip::CapletExpiries").Expiries(); });
}

std::vector<double> MCapletVolatilityStrip::CapletVolatilities() const {
    return Guarded("MCapletVolatilityStrip::CapletVolatilities",
                   [&] { return Object("zep::python::MCapletVolatilityStrip::CapletVolatilities").Volatilities(); });
}

double MCapletVolatilityStrip::Volatility(double expiry) const {
    return Guarded("MCapletVolatilityStrip::Volatility",
                   [&] { return Object("zep::python::MCapletVolatilityStrip::Volatility").Volatility(expiry); });
}

std::vector<double> MCapletVolatilityStrip::CapPVs() const {
    return Guarded("MCapletVolatilityStrip::CapPVs", [&] {
        const zep::CapletVolatilityStrip& strip = Object("zep::python::MCapletVolatilityStrip::CapPVs");
        std::vector<double> values;
        for (const zep::CapFloor& cap : m_caps)
            values.push_back(strip.CapPV(cap, *m_curves->discount, *m_curves->projection));
        return values;
    });
}

}  // namespace zep::python
