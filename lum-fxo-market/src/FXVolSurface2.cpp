#include "lum-fxo-market/FXVolSurface2.hpp"

#include <algorithm>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

std::size_t QuoteCount(const FXVolSurface& surface) {
    std::size_t count = 0;
    for (const auto& row : surface.Quotes()) count += row.size();
    return count;
}

}  // namespace

FXVolSurface2::FXVolSurface2(boost::shared_ptr<const FXVolSurface> bid,
                             boost::shared_ptr<const FXVolSurface> ask)
    : m_bid(std::move(bid)), m_ask(std::move(ask)) {
    ZEP_REQUIRE(m_bid && m_ask, "BID/ASK surface is Null!");
    ZEP_REQUIRE(m_bid->ReferenceDate() == m_ask->ReferenceDate(), "Reference Date of two surface not same!");
    ZEP_REQUIRE(QuoteCount(*m_bid) == QuoteCount(*m_ask), "BID/ASK vols size should be same!");
}

double FXVolSurface2::GetVolatility(int side, double timeToExpiry, double strike) const {
    switch (side) {
        case Bid: return m_bid->GetVolatility(timeToExpiry, strike);
        case Ask: return m_ask->GetVolatility(timeToExpiry, strike);
        case Mid:
            return 0.5 * (m_bid->GetVolatility(timeToExpiry, strike) + m_ask->GetVolatility(timeToExpiry, strike));
        default: ZEP_FAIL("BidMidAsk error!");
    }
}

double FXVolSurface2::GetVolatility(int side, const Date& expiry, double strike) const {
    return GetVolatility(side, m_bid->TimeToExpiry(expiry), strike);
}

double FXVolSurface2::GetATMVol(int side, const Date& expiry) const {
    switch (side) {
        case Bid: return m_bid->GetATMVol(expiry);
        case Ask: return m_ask->GetATMVol(expiry);
        case Mid: return 0.5 * (m_bid->GetATMVol(expiry) + m_ask->GetATMVol(expiry));
        default: ZEP_FAIL("BidMidAsk error!");
    }
}

double FXVolSurface2::GetSpread(double timeToExpiry, double strike) const {
    return m_ask->GetVolatility(timeToExpiry, strike) - m_bid->GetVolatility(timeToExpiry, strike);
}

std::vector<double> FXVolSurface2::RelativePillarSpreads(std::size_t expiry) const {
    const auto& deltas = m_bid->PillarDeltas(expiry);
    const auto& bidVols = m_bid->PillarVolatilities(expiry);
    const auto& askVols = m_ask->PillarVolatilities(expiry);
    ZEP_REQUIRE(askVols.size() == bidVols.size(), "BID/ASK vols size should be same!");
    const auto atm = std::find(deltas.begin(), deltas.end(), 0.0);
    if (atm == deltas.end()) ZEP_FAIL("ATM delta not found in FXVolSurface2 spread interps");
    const std::size_t at = static_cast<std::size_t>(atm - deltas.begin());
    const double atmSpread = askVols[at] - bidVols[at];
    ZEP_REQUIRE(atmSpread != 0.0, "The ATM bid-ask spread is zero: spreads cannot be relative to it.");
    std::vector<double> relative;
    for (std::size_t k = 0; k < bidVols.size(); ++k) relative.push_back((askVols[k] - bidVols[k]) / atmSpread);
    return relative;
}

}  // namespace zep
