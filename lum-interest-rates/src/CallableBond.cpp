#include "lum-interest-rates/CallableBond.hpp"

#include <algorithm>
#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/RootFinders.hpp"

namespace zep {

namespace {

// The times the tree must land on, once the call schedule is checked against the bond.
std::vector<double> TreeTimes(const HullWhiteSwap& coupons, const std::vector<double>& callTimes,
                              const std::vector<double>& callPrices) {
    coupons.Validate();
    const double maturity = coupons.payments.back();
    ZEP_REQUIRE(maturity > 0.0, "the bond has matured: its last payment is not after today");
    ZEP_REQUIRE(callTimes.size() == callPrices.size(), "give one call price for every call date");
    std::vector<double> times;
    for (std::size_t i = 0; i < callTimes.size(); ++i) {
        ZEP_REQUIRE(callTimes[i] > 0.0, "call date " + std::to_string(i) + " is not after today");
        ZEP_REQUIRE(callTimes[i] < maturity, "call date " + std::to_string(i) + " is on or after the bond's maturity");
        ZEP_REQUIRE(i == 0 || callTimes[i] > callTimes[i - 1], "the call dates must be in increasing order");
        ZEP_REQUIRE(std::isfinite(callPrices[i]) && callPrices[i] > 0.0,
                    "call price " + std::to_string(i) + " must be positive");
        times.push_back(callTimes[i]);
    }
    for (double payment : coupons.payments)
        if (payment > 0.0) times.push_back(payment);
    return times;
}

}  // namespace

CallableBond::CallableBond(const HullWhite& model, HullWhiteSwap coupons, std::vector<double> callTimes,
                           std::vector<double> callPrices, std::size_t steps)
    : m_coupons(std::move(coupons)),
      m_callTimes(std::move(callTimes)),
      m_callPrices(std::move(callPrices)),
      m_tree(model, TreeTimes(m_coupons, m_callTimes, m_callPrices), steps) {
    m_firstPaid = 0;
    while (m_coupons.payments[m_firstPaid] <= 0.0) ++m_firstPaid;
    for (std::size_t i = m_firstPaid; i < m_coupons.payments.size(); ++i)
        m_paymentLevels.push_back(m_tree.LevelAt(m_coupons.payments[i]));
    for (double t : m_callTimes) m_callLevels.push_back(m_tree.LevelAt(t));
}

double CallableBond::AccruedAt(double t) const {
    for (std::size_t i = 0; i < m_coupons.starts.size(); ++i) {
        const double start = m_coupons.starts[i], end = m_coupons.payments[i];
        if (start <= t && t < end)
            return m_coupons.notional * m_coupons.strike * m_coupons.accruals[i] * (t - start) / (end - start);
    }
    return 0.0;
}

double CallableBond::Induce(double oas, bool callable) const {
    ZEP_REQUIRE(std::isfinite(oas), "the option-adjusted spread " + std::to_string(oas) + " must be finite");
    std::vector<double> values(m_tree.MaxNodeCount(), 0.0), earlier(m_tree.MaxNodeCount());
    std::size_t payment = m_paymentLevels.size(), call = m_callLevels.size();
    for (std::size_t level = m_tree.LastLevel() + 1; level-- > 0;) {
        if (level < m_tree.LastLevel()) {
            m_tree.StepBack(level, values.data(), earlier.data(), oas);
            std::swap(values, earlier);
        }
        const std::size_t nodes = m_tree.NodeCount(level);
        // The call pays its price and the accrued interest; a coupon due that day goes to the
        // holder either way, so it is added after the issuer's choice.
        if (callable && call > 0 && m_callLevels[call - 1] == level) {
            --call;
            const double paid = m_callPrices[call] + AccruedAt(m_callTimes[call]);
            for (std::size_t node = 0; node < nodes; ++node) values[node] = std::min(values[node], paid);
        }
        if (payment > 0 && m_paymentLevels[payment - 1] == level) {
            --payment;
            const double amount = m_coupons.FixedAmount(m_firstPaid + payment);
            for (std::size_t node = 0; node < nodes; ++node) values[node] += amount;
        }
    }
    return values[0];
}

double CallableBond::DirtyPrice(double oas) const { return Induce(oas, true); }

double CallableBond::StraightCleanPrice(double oas) const { return Induce(oas, false) - AccruedAt(0.0); }

double CallableBond::OAS(double cleanPrice) const {
    ZEP_REQUIRE(std::isfinite(cleanPrice) && cleanPrice > 0.0,
                "the clean price " + std::to_string(cleanPrice) + " must be positive");
    const auto gap = [&](double oas) { return CleanPrice(oas) - cleanPrice; };
    double low = -0.0625, high = 0.0625, atLow = gap(low), atHigh = gap(high);
    for (int widening = 0; atLow * atHigh > 0.0; ++widening) {
        ZEP_REQUIRE(widening < 4, "OAS: no spread in [-100%, 100%] prices the bond at " + std::to_string(cleanPrice));
        low *= 2.0;
        high *= 2.0;
        atLow = gap(low);
        atHigh = gap(high);
    }
    return BrentSolve(gap, low, high, atLow, atHigh, {1e-12, 100});
}

}  // namespace zep
