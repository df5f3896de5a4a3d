#include "lum-interest-rates/HullWhiteSwap.hpp"

#include <algorithm>
#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/RootFinders.hpp"

namespace zep {

namespace {

constexpr double kOneDay = 1.0 / 366.0;

}  // namespace

void HullWhiteSwap::Validate() const {
    ZEP_REQUIRE(!starts.empty() && starts.size() == payments.size() && starts.size() == accruals.size(),
                "the swap needs as many period starts, payments and accruals, and at least one period");
    ZEP_REQUIRE(std::isfinite(strike) && std::isfinite(notional) && notional > 0.0,
                "the swap's strike must be finite and its notional positive");
    for (std::size_t i = 0; i < starts.size(); ++i) {
        ZEP_REQUIRE(std::isfinite(starts[i]) && std::isfinite(accruals[i]) && payments[i] > starts[i] &&
                        (i == 0 || starts[i] >= starts[i - 1]),
                    "the swap's period " + std::to_string(i) +
                        " must start after the previous one and pay after it starts");
    }
}

std::size_t HullWhiteSwap::FirstPeriodFrom(double exerciseTime) const {
    for (std::size_t i = 0; i < starts.size(); ++i)
        if (starts[i] >= exerciseTime - kOneDay) return i;
    ZEP_FAIL("no fixed period starts on or after the exercise time " + std::to_string(exerciseTime));
}

double HullWhiteSwap::FixedAmount(std::size_t period) const {
    return notional * (strike * accruals[period] + (period + 1 == accruals.size() ? 1.0 : 0.0));
}

HullWhiteSwap SwapOnCurve(const YieldCurve& curve, const Schedule& schedule, double strike, double notional,
                          bool isPayer) {
    HullWhiteSwap swap;
    for (const SchedulePeriod& period : schedule.Periods()) {
        swap.starts.push_back(CurveTime(curve, period.accrualStart));
        swap.payments.push_back(CurveTime(curve, period.payment));
        swap.accruals.push_back(period.accrualFraction);
    }
    swap.strike = strike;
    swap.notional = notional;
    swap.isPayer = isPayer;
    swap.Validate();
    return swap;
}

SwapExerciseValue::SwapExerciseValue(const HullWhite& model, const HullWhiteSwap& swap, double exerciseTime)
    : m_sign(swap.isPayer ? 1.0 : -1.0) {
    const std::size_t first = swap.FirstPeriodFrom(exerciseTime);
    // An exercise a day or so after its period's start enters the swap as if on that start.
    m_startTime = std::max(swap.starts[first], exerciseTime);
    double logWeight, slope;
    model.DiscountBondTerms(exerciseTime, m_startTime, logWeight, slope);
    m_notional = swap.notional;
    m_startWeight = std::exp(logWeight);
    m_startSlope = slope;
    for (std::size_t i = first; i < swap.starts.size(); ++i) {
        model.DiscountBondTerms(exerciseTime, swap.payments[i], logWeight, slope);
        m_paymentTimes.push_back(swap.payments[i]);
        m_amounts.push_back(swap.FixedAmount(i));
        m_accruals.push_back(swap.accruals[i]);
        m_weights.push_back(std::exp(logWeight));
        m_slopes.push_back(slope);
    }
    const auto usable = [](double weight) { return std::isnormal(weight) && weight > 0.0; };
    ZEP_REQUIRE(usable(m_startWeight) && std::all_of(m_weights.begin(), m_weights.end(), usable),
                "the model's bond prices at time " + std::to_string(exerciseTime) +
                    " are not positive numbers: sigma " + std::to_string(model.Sigma()) + " is out of scale");
}

double SwapExerciseValue::operator()(double x) const {
    double fixed = 0.0;
    for (std::size_t i = 0; i < m_weights.size(); ++i)
        fixed += m_amounts[i] * m_weights[i] * std::exp(-m_slopes[i] * x);
    return m_sign * (m_notional * m_startWeight * std::exp(-m_startSlope * x) - fixed);
}

double SwapExerciseValue::ParRate(double x) const {
    double annuity = 0.0;
    for (std::size_t i = 0; i < m_weights.size(); ++i)
        annuity += m_accruals[i] * m_weights[i] * std::exp(-m_slopes[i] * x);
    const double start = m_startWeight * std::exp(-m_startSlope * x);
    const double end = m_weights.back() * std::exp(-m_slopes.back() * x);
    return (start - end) / annuity;
}

std::vector<double> SwapExerciseValue::BreakEvenBondRatios() const {
    // The fixed side over the floating one, sum_i a_i P_i / (N P_start), falls in x from +inf to 0
    // when every amount is positive (later bonds move more with x), so it meets 1 exactly once.
    const auto ratioAt = [&](std::size_t i, double x) {
        return m_weights[i] / m_startWeight * std::exp(-(m_slopes[i] - m_startSlope) * x);
    };
    const auto gap = [&](double x) {
        double ratio = 0.0, slope = 0.0;
        for (std::size_t i = 0; i < m_weights.size(); ++i) {
            const double term = m_amounts[i] / m_notional * ratioAt(i, x);
            ratio += term;
            slope -= (m_slopes[i] - m_startSlope) * term;
        }
        return std::pair{1.0 - ratio, -slope};
    };
    double low = -0.05, high = 0.05;
    for (int widening = 0; gap(high).first <= 0.0 || gap(low).first >= 0.0; ++widening) {
        ZEP_REQUIRE(widening < 60, "Jamshidian: no short rate makes the swap worth zero");
        low *= 2.0;
        high *= 2.0;
    }
    const double breakEven = NewtonSolve(gap, 0.0, low, high, {1e-14, 200});
    std::vector<double> ratios;
    for (std::size_t i = 0; i < m_weights.size(); ++i)
        ratios.push_back(ratioAt(i, breakEven));
    return ratios;
}

double JamshidianSwaption(const HullWhite& model, const HullWhiteSwap& swap, double expiry) {
    swap.Validate();
    ZEP_REQUIRE(swap.strike >= 0.0, "Jamshidian's decomposition needs a strike >= 0, not " +
                                        std::to_string(swap.strike));
    ZEP_REQUIRE(expiry > 0.0, "the swaption's expiry must be after the curve's reference date");
    const SwapExerciseValue value(model, swap, expiry);
    const std::vector<double> ratios = value.BreakEvenBondRatios();
    double price = 0.0;
    // A payer holds puts on the fixed side's bonds, a receiver calls, struck at the break-even.
    for (std::size_t i = 0; i < ratios.size(); ++i)
        price += value.Amounts()[i] * model.BondExchangeOption(!swap.isPayer, ratios[i], expiry, value.StartTime(),
                                                                value.PaymentTimes()[i]);
    return price;
}

}  // namespace zep
