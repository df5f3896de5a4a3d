#include "MCapFloor.hpp"

#include <boost/make_shared.hpp>

namespace zep::python {

MCapFloor::MCapFloor(const std::string& capFloor, double notional, double strike, const DateInput& startDate,
                     const DateInput& endDate, boost::shared_ptr<zep::YieldCurve> discountCurve,
                     boost::shared_ptr<zep::YieldCurve> projectionCurve, double volatility, const std::string& model,
                     double shift, const std::string& tenor, const zep::DayCounter& dayCounter,
                     const std::string& centres, int fixingLagDays) {
    Guarded("MCapFloor::MCapFloor", [&] {
        const auto kind = static_cast<zep::CapFloorKind>(ChoiceOf(capFloor, {"CAP", "FLOOR"}, "cap or floor"));
        CurvePair curves(discountCurve, projectionCurve, nullptr, "MCapFloor");
        const zep::RateVolatility quoted{zep::RateVolatilityModelOf(model.c_str()), volatility, shift};
        auto capFloorObject = boost::make_shared<zep::CapFloor>(
            MakeSchedule(startDate, endDate, {tenor, dayCounter, centres, fixingLagDays, 0}), kind, strike, notional);
        capFloorObject->PV(*curves.discount, *curves.projection, quoted);  // bad rates or volatility fail here
        m_curves.emplace(std::move(curves));
        m_volatility = quoted;
        m_object = std::move(capFloorObject);
    });
}

double MCapFloor::PV() const {
    return Guarded("MCapFloor::PV", [&] {
        return Object("zep::python::MCapFloor::PV").PV(*m_curves->discount, *m_curves->projection, m_volatility);
    });
}

std::vector<double> MCapFloor::CapletPVs() const {
    return Guarded("MCapFloor::CapletPVs", [&] {
        std::vector<double> values;
        for (const auto& caplet : Object("zep::python::MCapFloor::CapletPVs")
                                      .Caplets(*m_curves->discount, *m_curves->projection, m_volatility))
            values.push_back(caplet.value);
        return values;
    });
}

std::vector<double> MCapFloor::ForwardRates() const {
    return Guarded("MCapFloor::ForwardRates", [&] {
        std::vector<double> forwards;
        for (const auto& caplet : Object("zep::python::MCapFloor::ForwardRates")
                                      .Caplets(*m_curves->discount, *m_curves->projection, m_volatility))
            forwards.push_back(caplet.forward);
        return forwards;
    });
}

double MCapFloor::ImpliedVolatility(double price) const {
    return Guarded("MCapFloor::ImpliedVolatility", [&] {
        return Object("zep::python::MCapFloor::ImpliedVolatility")
            .ImpliedVolatility(price, *m_curves->discount, *m_curves->projection, m_volatility.model,
                               m_volatility.shift);
    });
}

std::string MCapFloor::Describe() const {
    return Guarded("MCapFloor::Describe", [&] { return Object("zep::python::MCapFloor::Describe").Describe(); });
}

std::vector<zep::CashFlow> MCapFloor::CashFlowSchedule() const {
    return Guarded("MCapFloor::CashFlowSchedule", [&] {
        return Object("zep::python::MCapFloor::CashFlowSchedule")
            .CashFlows(*m_curves->discount, *m_curves->projection, m_volatility);
    });
}

}  // namespace zep::python
