#include "MBondFuture.hpp"

#include <boost/make_shared.hpp>

#include "RateInputs.hpp"

namespace zep::python {

namespace {
std::size_t Position(int bond) {
    if (bond < 0) throw std::invalid_argument("Bond future: bond " + std::to_string(bond) + " is not in the basket.");
    return static_cast<std::size_t>(bond);
}
}  // namespace

MBondFuture::MBondFuture(const DateInput& deliveryDate, const std::vector<double>& coupons,
                         const std::vector<DateInput>& issueDates, const std::vector<DateInput>& maturityDates,
                         double notionalCoupon, const std::string& tenor, const zep::DayCounter& dayCounter) {
    Guarded("MBondFuture::MBondFuture", [&] {
        if (issueDates.size() != coupons.size() || maturityDates.size() != coupons.size())
            throw std::invalid_argument("Bond future: give one coupon, issue date and maturity per bond.");
        std::vector<zep::Bond> basket;
        for (std::size_t i = 0; i < coupons.size(); ++i)
            basket.push_back(MakeBond(coupons[i], issueDates[i], maturityDates[i], tenor, dayCounter,
                                      std::vector<double>(1, 100.0), "", false));
        m_object = boost::make_shared<zep::BondFuture>(std::move(basket), deliveryDate.Value(), notionalCoupon);
    });
}

double MBondFuture::ConversionFactor(int bond) const {
    return Guarded("MBondFuture::ConversionFactor", [&] {
        return Object("zep::python::MBondFuture::ConversionFactor").ConversionFactor(Position(bond));
    });
}

double MBondFuture::ImpliedRepo(int bond, double futuresPrice, double cleanPrice, const DateInput& settlement) const {
    return Guarded("MBondFuture::ImpliedRepo", [&] {
        return Object("zep::python::MBondFuture::ImpliedRepo").ImpliedRepo(Position(bond), futuresPrice, cleanPrice,
                                                                          settlement.Value());
    });
}

int MBondFuture::CheapestToDeliver(double futuresPrice, const std::vector<double>& cleanPrices,
                                   const DateInput& settlement) const {
    return Guarded("MBondFuture::CheapestToDeliver", [&] {
        return static_cast<int>(Object("zep::python::MBondFuture::CheapestToDeliver")
                                    .CheapestToDeliver(futuresPrice, cleanPrices, settlement.Value()));
    });
}

}  // namespace zep::python
