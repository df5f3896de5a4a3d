#include "MBasisSwap.hpp"

#include <boost/make_shared.hpp>

#include "lum-time/Calendar.hpp"

namespace zep::python {

namespace {
zep::Leg IndexLeg(double notional, const std::string& index, double spread, const zep::Schedule& schedule) {
    zep::LegTerms terms;
    terms.kind = zep::CouponKind::Floating;
    terms.notionals = {notional};
    terms.index = index;
    terms.spread = spread;
    return zep::Leg(schedule, terms, zep::Calendar::Shared());
}
}  // namespace

MBasisSwap::MBasisSwap(double notional, const DateInput& startDate, const DateInput& endDate,
                       boost::shared_ptr<zep::YieldCurve> discountCurve, boost::shared_ptr<zep::YieldCurve> receivedCurve,
                       boost::shared_ptr<zep::YieldCurve> paidCurve, const std::string& receivedIndex,
                       const std::string& receivedTenor, const std::string& paidIndex, const std::string& paidTenor,
                       double receivedSpread, double paidSpread, const zep::DayCounter& dayCounter,
                       const std::string& centres, int fixingLagDays, boost::shared_ptr<zep::FixingStore> fixings) {
    Guarded("MBasisSwap::MBasisSwap", [&] {
        CurvePair received(discountCurve, receivedCurve, fixings, "MBasisSwap");
        CurvePair paid(discountCurve, paidCurve, fixings, "MBasisSwap");
        const LegInput receivedInput{receivedTenor, dayCounter, centres, fixingLagDays, 0};
        const LegInput paidInput{paidTenor, dayCounter, centres, fixingLagDays, 0};
        auto swap = boost::make_shared<zep::Swap>(
            IndexLeg(notional, receivedIndex, receivedSpread, MakeSchedule(startDate, endDate, receivedInput)),
            IndexLeg(notional, paidIndex, paidSpread, MakeSchedule(startDate, endDate, paidInput)));
        swap->PV(received.Market(), paid.Market());
        m_received.emplace(std::move(received));
        m_paid.emplace(std::move(paid));
        m_object = std::move(swap);
    });
}

double MBasisSwap::PV() const {
    return Guarded("MBasisSwap::PV", [&] {
        return Object("zep::python::MBasisSwap::PV").PV(m_received->Market(), m_paid->Market());
    });
}

double MBasisSwap::ParSpread() const {
    return Guarded("MBasisSwap::ParSpread", [&] {
        return Object("zep::python::MBasisSwap::ParSpread")
            .ParCoupon(zep::SwapSide::Receive, m_received->Market(), m_paid->Market());
    });
}

std::vector<zep::CashFlow> MBasisSwap::CashFlowSchedule() const {
    return Guarded("MBasisSwap::CashFlowSchedule", [&] {
        return Object("zep::python::MBasisSwap::CashFlowSchedule").CashFlows(m_received->Market(), m_paid->Market());
    });
}

std::string MBasisSwap::Describe() const {
    return Guarded("MBasisSwap::Describe", [&] { return Object("zep::python::MBasisSwap::Describe").Describe(); });
}

}  // namespace zep::python
