#include "MCreditDefaultSwap.hpp"

#include <boost/make_shared.hpp>

#include "lum-time/Calendar.hpp"

namespace zep::python {

MCreditDefaultSwap::MCreditDefaultSwap(const std::string& buySell, double notional, double coupon,
                                       const DateInput& startDate, const DateInput& maturityDate,
                                       const zep::CreditCurve* creditCurve,
                                       boost::shared_ptr<zep::YieldCurve> discountCurve,
                                       const std::string& premiumTenor, const zep::DayCounter& dayCounter,
                                       const std::string& centres) {
    Guarded("MCreditDefaultSwap::MCreditDefaultSwap", [&] {
        const auto side = static_cast<zep::CdsSide>(ChoiceOf(buySell, {"BUYER", "SELLER"}, "protection side"));
        if (!creditCurve) throw std::invalid_argument("MCreditDefaultSwap: the credit curve is None.");
        if (!discountCurve) throw std::invalid_argument("MCreditDefaultSwap: the discount curve is None.");
        auto credit = boost::make_shared<const zep::CreditCurve>(*creditCurve);
        auto cds = boost::make_shared<zep::CreditDefaultSwap>(
            MakeSchedule(startDate, maturityDate, {premiumTenor, dayCounter, centres, 0, 0}), side, coupon, notional,
            credit->Recovery());
        m_credit = std::move(credit);
        m_discount = std::move(discountCurve);
        m_object = std::move(cds);
    });
}

double MCreditDefaultSwap::PV() const { return ZEP_M_OPERATION(MCreditDefaultSwap, PV, *m_credit, *m_discount); }

double MCreditDefaultSwap::ParSpread() const { return ZEP_M_OPERATION(MCreditDefaultSwap, ParSpread, *m_credit, *m_discount); }

double MCreditDefaultSwap::Upfront() const { return ZEP_M_OPERATION(MCreditDefaultSwap, Upfront, *m_credit, *m_discount); }

double MCreditDefaultSwap::ProtectionLegPV() const { return ZEP_M_OPERATION(MCreditDefaultSwap, ProtectionLegPV, *m_credit, *m_discount); }

double MCreditDefaultSwap::PremiumLegPV() const { return ZEP_M_OPERATION(MCreditDefaultSwap, PremiumLegPV, *m_credit, *m_discount); }

double MCreditDefaultSwap::RiskyAnnuity() const { return ZEP_M_OPERATION(MCreditDefaultSwap, RiskyAnnuity, *m_credit, *m_discount); }

double MCreditDefaultSwap::CS01() const { return ZEP_M_OPERATION(MCreditDefaultSwap, CS01, *m_credit, *m_discount); }

double MCreditDefaultSwap::RiskyPV01() const { return 1e-4 * RiskyAnnuity(); }

double MCreditDefaultSwap::UpfrontFromQuotedSpread(double quotedSpread) const {
    return Guarded("MCreditDefaultSwap::UpfrontFromQuotedSpread", [&] {
        return Object("zep::python::MCreditDefaultSwap::UpfrontFromQuotedSpread")
            .UpfrontFromQuotedSpread(quotedSpread, m_credit->ReferenceDate(), *m_discount);
    });
}

double MCreditDefaultSwap::QuotedSpreadFromUpfront(double upfront) const {
    return Guarded("MCreditDefaultSwap::QuotedSpreadFromUpfront", [&] {
        return Object("zep::python::MCreditDefaultSwap::QuotedSpreadFromUpfront")
            .QuotedSpreadFromUpfront(upfront, m_credit->ReferenceDate(), *m_discount);
    });
}

std::string MCreditDefaultSwap::Describe() const {
    return Guarded("MCreditDefaultSwap::Describe",
                   [&] { return Object("zep::python::MCreditDefaultSwap::Describe").Describe(); });
}

std::vector<zep::CashFlow> MCreditDefaultSwap::CashFlowSchedule() const {
    return Guarded("MCreditDefaultSwap::CashFlowSchedule", [&] {
        return Object("zep::python::MCreditDefaultSwap::CashFlowSchedule").CashFlows(*m_credit, *m_discount);
    });
}

}  // namespace zep::python
