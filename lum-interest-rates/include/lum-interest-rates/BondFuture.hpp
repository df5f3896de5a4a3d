// A bond future: on the delivery date the short delivers any bond of the basket and receives the
// futures price times that bond's conversion factor, plus its accrued interest. The conversion
// factor is the bond's clean price per 1 of face at the contract's notional coupon as yield on the
// delivery date (the Bund, Bobl and Schatz rule; exchanges that round the remaining life to whole
// months or quarters give slightly different factors). The implied repo is the money-market
// return (Act/360) of buying a bond now and delivering it, coupons received on the way included;
// the cheapest to deliver is the bond with the highest.
#pragma once

#include <cstddef>
#include <vector>

#include "lum-interest-rates/Bond.hpp"

namespace zep {

class BondFuture {
public:
    BondFuture(std::vector<Bond> basket, const Date& delivery, double notionalCoupon = 0.06);

    double ConversionFactor(std::size_t bond) const;
    double ImpliedRepo(std::size_t bond, double futuresPrice, double cleanPrice, const Date& settlement) const;
    // Position in the basket of the bond with the highest implied repo; one clean price per bond.
    std::size_t CheapestToDeliver(double futuresPrice, const std::vector<double>& cleanPrices, const Date& settlement) const;

private:
    const Bond& BondAt(std::size_t bond) const;

    std::vector<Bond> m_basket;
    Date m_delivery;
    double m_notionalCoupon;
    std::vector<double> m_conversionFactors;
};

}  // namespace zep
