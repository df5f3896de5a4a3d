// A two-way FX volatility market: a bid and an ask surface on the same quotes, read on one side
// or at mid (their average), with the bid-ask spread of the smile.
#pragma once

#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-fxo-market/FXVolSurface.hpp"

namespace zep {

enum BidMidAsk : int { Bid = 0, Mid = 1, Ask = 2 };

class FXVolSurface2 {
public:
    // Both surfaces on one reference date ("Reference Date of two surface not same!") and with
    // as many quotes ("BID/ASK vols size should be same!").
    FXVolSurface2(boost::shared_ptr<const FXVolSurface> bid, boost::shared_ptr<const FXVolSurface> ask);

    // Side Bid, Mid or Ask; another fails "BidMidAsk error!".
    double GetVolatility(int side, double timeToExpiry, double strike) const;
    double GetVolatility(int side, const Date& expiry, double strike) const;
    double GetATMVol(int side, const Date& expiry) const;
    // Ask minus bid volatility at an expiry and strike.
    double GetSpread(double timeToExpiry, double strike) const;
    // The pillar spreads of one expiry as multiples of its ATM spread, in the pillars' strike
    // order: how much wider the wings trade than the money.
    std::vector<double> RelativePillarSpreads(std::size_t expiry) const;

    const boost::shared_ptr<const FXVolSurface>& BidSurface() const { return m_bid; }
    const boost::shared_ptr<const FXVolSurface>& AskSurface() const { return m_ask; }

private:
    boost::shared_ptr<const FXVolSurface> m_bid;
    boost::shared_ptr<const FXVolSurface> m_ask;
};

}  // namespace zep
