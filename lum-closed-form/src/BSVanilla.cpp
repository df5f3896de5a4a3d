#include "lum-closed-form/BSVanilla.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "FiniteFigure.hpp"
#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace zep {

namespace {

constexpr const char* kVolatilityMessage = "volatility must be a positive percentage!";
constexpr const char* kSpotMessage = " Spot must be positive.";
constexpr const char* kForwardMessage = " Forward must be positive.";
constexpr const char* kForwardOverflowMessage =
    "the forward S exp((rd - rf) Td) cannot be represented in double precision";

double PhiOf(int optionType) { return optionType == BSVanilla::Call ? 1.0 : -1.0; }

// ln(F / K) from the ratio near the money, where it is exact to rounding; as a difference of
// logarithms where the ratio itself leaves double precision (a forward of 1e300 on a strike of
// 1e-300).
double LogMoneyness(double forward, double strike) {
    const double ratio = forward / strike;
    return std::isnormal(ratio) ? std::log(ratio) : std::log(forward) - std::log(strike);
}

// A normal density times a factor that grows without bound where the density vanishes (d1 as
// d1 -> -inf, 1 / F as F -> 0): the density falls faster than any such factor grows, so once it
// has underflowed to zero the product is zero, not inf * 0.
double DensityTimes(double density, double factor) { return density == 0.0 ? 0.0 : density * factor; }

bool IsFinite(double value) { return std::abs(value) <= std::numeric_limits<double>::max(); }

// The refusals of the setters, out of line so that the setters stay small enough to inline.
[[noreturn, gnu::cold, gnu::noinline]] void FailMarket(double strike, double timeToExpiry, double timeToDelivery) {
    const char* where = "zep::BSVanilla::SetBasicParameters";
    if (!(strike > 0.0 && IsFinite(strike))) ZEP_FAIL_IN(where, "strike must be a positive number");
    if (!(IsFinite(timeToExpiry) && IsFinite(timeToDelivery)))
        ZEP_FAIL_IN(where, "times to expiry and delivery must be finite numbers");
    ZEP_FAIL_IN(where, "rates must be finite numbers");
}

[[noreturn, gnu::cold, gnu::noinline]] void FailSpotOrForward(double spot, const char* where) {
    if (!IsFinite(spot)) ZEP_FAIL_IN(where, "spot must be a finite number");
    ZEP_FAIL_IN(where, kForwardOverflowMessage);
}

// The forward S DFf / DFd; the ratio of the discount factors first, so that a spot near the top
// of the double range does not overflow on the way to a forward that does not.
double ForwardOf(double spot, double foreignDiscount, double domesticDiscount) {
    return spot * (foreignDiscount / domesticDiscount);
}

// The undiscounted forward premium phi (F N(phi d1) - K N(phi d2)) as a function of the
// volatility alone: the solvers evaluate it dozens of times, so the moneyness and sqrt T are
// taken once.
struct ForwardPremium {
    ForwardPremium(int optionType, double strike, double forward, double time, const char* solver)
        : phi(PhiOf(optionType)), strike(strike), forward(forward), time(time),
          sqrtTime(std::sqrt(time)), logMoneyness(LogMoneyness(forward, strike)), solver(solver) {}

    double operator()(double sigma) const {
        if (!(sigma >= BSVanilla::kMinimumVolatility)) ZEP_FAIL_IN(solver, kVolatilityMessage);
        const double sigmaRootT = sigma * sqrtTime;
        const double d1 = (logMoneyness + sigma * sigma * 0.5 * time) / sigmaRootT;
        const double d2 = d1 - sigmaRootT;
        return phi * (forward * NormalCdf(phi * d1) - strike * NormalCdf(phi * d2));
    }

    double phi, strike, forward, time, sqrtTime, logMoneyness;
    const char* solver;
};

// Bisection of scale * premium(sigma) - scale * target as the desks have always run it: the
// bracket [1.1 limit, 5 or 20] is not checked for a sign change, and the ends may be judged with
// a different premium (`bracketPremium`) from the one that drives the halvings (`loopPremium`).
template <class BracketPremium, class LoopPremium>
double BisectVolatility(const BracketPremium& bracketPremium, const LoopPremium& loopPremium,
                        double targetPrice, double volatilityLimit, const char* solver) {
    if (volatilityLimit < 0.0)
        ZEP_FAIL_IN(solver,
                    "VolatilityImpliedFromForwardPrice: volatility limit cannot be less than zero");
    // Tiny premiums are compared in millionths so that the exact-zero test still means something.
    const double scale = targetPrice < 1e-6 ? 1e6 : 1.0;
    const auto objective = [&](const auto& premium, double sigma) {
        return scale * premium(sigma) - scale * targetPrice;
    };

    const double low = 1.1 * volatilityLimit;
    const double high = objective(bracketPremium, 5.0) < 0.0 ? 20.0 : 5.0;
    const double atLow = objective(bracketPremium, low);
    if (std::isnan(atLow)) return std::numeric_limits<double>::quiet_NaN();
    double root = atLow < 0.0 ? low : high;
    double step = atLow < 0.0 ? high - low : low - high;
    for (int halving = 0; halving < 60; ++halving) {
        step *= 0.5;
        const double mid = root + step;
        const double atMid = objective(loopPremium, mid);
        if (atMid <= 0.0) root = mid;
        if (std::fabs(step) < 1e-10 || atMid == 0.0) return root;
    }
    ZEP_FAIL_IN(solver, "VolatilityImpliedFromForwardPrice: too many bisections");
}

bool IsKnown(DeltaKind kind) {
    return kind == DeltaKind::Spot || kind == DeltaKind::SpotPremiumAdjusted ||
           kind == DeltaKind::Forward || kind == DeltaKind::ForwardPremiumAdjusted;
}

double DeltaOfKind(BSVanilla& engine, DeltaKind kind) {
    const bool spotDelta = kind == DeltaKind::Spot || kind == DeltaKind::Forward;
    const bool onForward = kind == DeltaKind::Forward || kind == DeltaKind::ForwardPremiumAdjusted;
    return onForward ? engine.ForwardDelta(spotDelta) : engine.Delta(spotDelta);
}

}  // namespace

BSVanilla::BSVanilla(int optionType, double strike, double volatility, double timeToExpiry,
                     double timeToDelivery, double domesticRate, double foreignRate, double spot) {
    SetBasicParameters(optionType, strike, volatility, timeToExpiry, timeToDelivery, domesticRate,
                       foreignRate);
    SetSpot(spot);
}

BSVanilla BSVanilla::FromForward(int optionType, double strike, double volatility,
                                 double timeToExpiry, double timeToDelivery, double domesticRate,
                                 double foreignRate, double forward, double spot) {
    BSVanilla engine;
    engine.SetBasicParameters(optionType, strike, volatility, timeToExpiry, timeToDelivery,
                              domesticRate, foreignRate);
    engine.SetForward(forward, spot);
    return engine;
}

void BSVanilla::SetBasicParameters(int optionType, double strike, double volatility,
                                   double timeToExpiry, double timeToDelivery, double domesticRate,
                                   double foreignRate) {
    ZEP_REQUIRE(optionType == Call || optionType == Put, "option type must be 0 (call) or 1 (put)");
    if (!(volatility >= kMinimumVolatility && IsFinite(volatility))) ZEP_FAIL(kVolatilityMessage);
    // The log-moneyness needs a positive strike; the rest of the market must be numbers.
    if (!(strike > 0.0 && IsFinite(strike) && IsFinite(timeToExpiry) && IsFinite(timeToDelivery) &&
          IsFinite(domesticRate) && IsFinite(foreignRate))) [[unlikely]]
        FailMarket(strike, timeToExpiry, timeToDelivery);
    m_optionType = optionType;
    m_phi = PhiOf(optionType);
    m_strike = strike;
    m_sigma = volatility;
    m_timeToExpiry = timeToExpiry;
    m_timeToDelivery = timeToDelivery;
    m_domesticRate = domesticRate;
    m_foreignRate = foreignRate;
    m_domesticDiscount = std::exp(-domesticRate * timeToDelivery);
    m_foreignDiscount = std::exp(-foreignRate * timeToDelivery);
}

void BSVanilla::SetSpot(double spot) {
    ZEP_REQUIRE_TEXT(spot >= 0.0, kSpotMessage);
    const double forward = ForwardOf(spot, m_foreignDiscount, m_domesticDiscount);
    if (!(IsFinite(spot) && IsFinite(forward))) [[unlikely]]
        FailSpotOrForward(spot, "zep::BSVanilla::SetSpot");
    m_forward = forward;
    m_spot = spot;
    Setup();
}

void BSVanilla::SetForward(double forward, double spot) {
    ZEP_REQUIRE_TEXT(forward >= 0.0, kForwardMessage);
    ZEP_REQUIRE(IsFinite(forward), "forward must be a finite number");
    if (spot != kSpotFromForward) ZEP_REQUIRE_TEXT(spot >= 0.0, kSpotMessage);
    const double derivedSpot =
        spot != kSpotFromForward
            ? spot
            : forward / std::pow((1.0 + m_domesticRate) / (1.0 + m_foreignRate), m_timeToExpiry);
    if (!IsFinite(derivedSpot)) [[unlikely]]
        FailSpotOrForward(derivedSpot, "zep::BSVanilla::SetForward");
    m_forward = forward;
    m_spot = derivedSpot;
    Setup();
}

void BSVanilla::Setup() {
    m_sigmaSquared = m_sigma * m_sigma;
    m_sqrtT = std::sqrt(m_timeToExpiry);
    m_sigmaRootT = m_sigma * m_sqrtT;
    m_logMoneyness = LogMoneyness(m_forward, m_strike);
    m_d1 = (m_logMoneyness + m_sigmaSquared * 0.5 * m_timeToExpiry) / m_sigmaRootT;
    m_d2 = m_d1 - m_sigmaRootT;
    m_cdfPhiD1 = NormalCdf(m_phi * m_d1);
    m_cdfPhiD2 = NormalCdf(m_phi * m_d2);
    m_pdfD1 = NormalPdf(m_d1);
    // n(d2) = n(d1) F / K exactly (d1^2 - d2^2 = 2 ln(F/K)): one exponential fewer on the
    // pricing path. Computed directly where the ratio is not usable or n(d1) has lost its
    // precision below the normal range.
    const double ratio = m_forward / m_strike;
    m_pdfD2 = (std::isnormal(m_pdfD1) && std::isfinite(ratio)) ? m_pdfD1 * ratio : NormalPdf(m_d2);
    m_priceValid = false;
}

double BSVanilla::Intrinsic() const { return std::max(m_phi * (m_spot - m_strike), 0.0); }

// At expiry the delta is the step of the payoff, with the step itself (S = K) counted as in the
// money: +1 for a call and -1 for a put.
double BSVanilla::ExpiredDelta() const {
    const bool outOfTheMoney = (m_optionType == Call && m_strike > m_spot) ||
                               (m_optionType == Put && m_spot > m_strike);
    return outOfTheMoney ? 0.0 : m_phi;
}

[[gnu::always_inline]] inline double BSVanilla::Finite(double value, const char* figure,
                                                       const SourceLine& where) const {
    return detail::FiniteFigure(value, "zep::BSVanilla", figure, [this] { return DescribeMarket(); }, where);
}

std::string BSVanilla::DescribeMarket() const {
    return fmt::format("a {} struck at {:.6g} on spot {:.6g} (forward {:.6g}), volatility {:.6g}, "
                       "{:.6g} years to expiry and {:.6g} to delivery, rates {:.6g} and {:.6g}",
                       m_optionType == Call ? "call" : "put", m_strike, m_spot, m_forward, m_sigma,
                       m_timeToExpiry, m_timeToDelivery, m_domesticRate, m_foreignRate);
}

// The figures below multiply the bounded factors (discount factors, probabilities, densities,
// sqrt T) first and the spot, forward or strike last, so that no product overflows on the way to
// a figure that does not.
double BSVanilla::Price() {
    const double price =
        IsExpired() ? Intrinsic()
                    : m_phi * m_domesticDiscount * (m_forward * m_cdfPhiD1 - m_strike * m_cdfPhiD2);
    m_price = Finite(price, "Price");
    m_priceValid = true;
    return m_price;
}

double BSVanilla::Delta(bool spotDelta) {
    const double delta = IsExpired() ? ExpiredDelta() : m_foreignDiscount * m_phi * m_cdfPhiD1;
    m_delta = Finite(spotDelta ? delta : delta - (m_priceValid ? m_price : Price()) / m_spot, "Delta");
    return m_delta;
}

double BSVanilla::ForwardDelta(bool spotDelta) {
    if (IsExpired())
        return Finite(spotDelta ? ExpiredDelta() : ExpiredDelta() - Intrinsic() / m_spot, "ForwardDelta");
    return Finite(spotDelta ? m_phi * m_cdfPhiD1 : m_phi * m_cdfPhiD2 * m_strike / m_forward, "ForwardDelta");
}

// DFf n(d1) / (S sigma sqrt T), the spot's own form of DFf^2 n(d1) / (DFd F sigma sqrt T); dividing
// twice where S sigma sqrt T underflows (a spot of 1e-300, sigma sqrt T of 1e-13) keeps its digits.
// The density vanishes faster than 1 / S grows, so a zero spot has a zero gamma.
double BSVanilla::Gamma() {
    const double spotSigmaRootT = m_spot * m_sigmaRootT;
    const double gamma = IsExpired() || m_pdfD1 == 0.0   ? 0.0
                         : std::isnormal(spotSigmaRootT) ? m_foreignDiscount * m_pdfD1 / spotSigmaRootT
                                                         : m_foreignDiscount * m_pdfD1 / m_sigmaRootT / m_spot;
    m_gamma = Finite(gamma, "Gamma");
    return m_gamma;
}

double BSVanilla::Vega() {
    m_vega = Finite(IsExpired() ? 0.0 : m_domesticDiscount * m_sqrtT * m_pdfD1 * m_forward, "Vega");
    return m_vega;
}

double BSVanilla::ThetaPerYear() {
    if (IsExpired()) return m_thetaPerYear = 0.0;
    // Theta discounts over the time to expiry, not to delivery; with equal times the discount
    // factors already held serve.
    const bool sameTimes = m_timeToExpiry == m_timeToDelivery;
    const double foreignDiscount =
        sameTimes ? m_foreignDiscount : std::exp(-m_foreignRate * m_timeToExpiry);
    const double domesticDiscount =
        sameTimes ? m_domesticDiscount : std::exp(-m_domesticRate * m_timeToExpiry);
    const double theta = -foreignDiscount * m_pdfD1 * m_sigma / (2.0 * m_sqrtT) * m_spot +
                         m_phi * m_foreignRate * foreignDiscount * m_cdfPhiD1 * m_spot -
                         m_phi * m_domesticRate * domesticDiscount * m_cdfPhiD2 * m_strike;
    m_thetaPerYear = Finite(theta, "Theta");
    return m_thetaPerYear;
}

double BSVanilla::Theta() { return ThetaPerYear() / 365.0; }

double BSVanilla::Rho() {
    m_rho = Finite(IsExpired() ? 0.0
                               : m_timeToExpiry * m_phi * m_domesticDiscount * m_cdfPhiD2 * m_strike,
                   "Rho");
    return m_rho;
}

double BSVanilla::Phi() {
    if (IsExpired()) return 0.0;
    return Finite(m_timeToDelivery * m_phi * m_foreignDiscount * m_cdfPhiD1 * m_spot, "Phi");
}

double BSVanilla::Vanna() {
    if (IsExpired()) return 0.0;
    return Finite(-m_foreignDiscount * DensityTimes(m_pdfD1, m_d2 / m_sigma), "Vanna");
}

double BSVanilla::DvegaDspot() {
    if (IsExpired()) return m_dvegaDspot = 0.0;
    m_inverseSigmaRootT = 1.0 / m_sigmaRootT;
    m_dvegaDspot = Finite(
        DensityTimes(m_pdfD1, 1.0 - m_d1 * m_inverseSigmaRootT) * m_foreignDiscount * m_sqrtT, "DvegaDspot");
    return m_dvegaDspot;
}

double BSVanilla::Dd1Dvol() {
    if (IsExpired()) return m_dd1Dsigma = 0.0;
    m_dd1Dsigma = Finite((m_sigmaSquared * m_timeToExpiry / 2.0 - m_logMoneyness) / (m_sigmaSquared * m_sqrtT),
                         "Dd1Dvol");
    return m_dd1Dsigma;
}

double BSVanilla::Volga() {
    if (IsExpired()) return m_volga = 0.0;
    // Where n(d1) has vanished so has the volga, whatever dd1/dsigma is (infinite at a zero spot).
    const double dd1Dsigma =
        (m_sigmaSquared * m_timeToExpiry / 2.0 - m_logMoneyness) / (m_sigmaSquared * m_sqrtT);
    m_volga = Finite(-m_domesticDiscount * m_sqrtT * DensityTimes(m_pdfD1, m_d1 * dd1Dsigma) * m_forward, "Volga");
    return m_volga;
}

double BSVanilla::DvegaDvol() { return Volga(); }

double BSVanilla::DvegaDvol2() {
    if (IsExpired()) return m_volga = 0.0;
    m_volga = Finite(
        m_domesticDiscount * m_sqrtT * DensityTimes(m_pdfD1, m_d1 * m_d2 / m_sigma) * m_forward, "DvegaDvol2");
    return m_volga;
}

double BSVanilla::VegaDigital() {
    m_dN2Dsigma = Finite(IsExpired() ? 0.0 : -DensityTimes(m_pdfD2, m_d2 / m_sigma + m_sqrtT), "VegaDigital");
    return m_dN2Dsigma;
}

double BSVanilla::VegaIDDigital() {
    m_minusDN1Dsigma = Finite(IsExpired() ? 0.0 : DensityTimes(m_pdfD1, m_d2 / m_sigma), "VegaIDDigital");
    return m_minusDN1Dsigma;
}

double BSVanilla::DeltaImpliedFromStrike(int optionType, double strike, double volatility,
                                         double timeToExpiry, double timeToDelivery,
                                         double domesticRate, double foreignRate, double spot,
                                         bool spotDelta) noexcept {
    try {
        BSVanilla engine(optionType, strike, volatility, timeToExpiry, timeToDelivery,
                         domesticRate, foreignRate, spot);
        return engine.Delta(spotDelta);
    } catch (...) {
        return kDeltaUnavailable;
    }
}

double BSVanilla::StrikeImpliedFromDelta(int optionType, double targetDelta, double volatility,
                                         double timeToExpiry, double timeToDelivery,
                                         double domesticRate, double foreignRate, double spot,
                                         double initialStrike, DeltaKind kind, bool noThrow) {
    // The sign test multiplies by the type code, so with call = 0 only a put with a positive
    // target is refused; a call with a negative target goes on to the solver.
    if (targetDelta * optionType > 0.0)
        ZEP_FAIL("OptionType = Call, delta must > 0. eg. 0.6; OptionType = Put, delta must < 0. eg. -0.6");
    ZEP_REQUIRE(IsKnown(kind), "unknown delta kind");
    // A step out of the positive strikes gives no delta: the search then fails as Newton-Raphson.
    const auto excess = [&](double strike) {
        if (!(strike > 0.0)) return std::numeric_limits<double>::quiet_NaN();
        BSVanilla engine(optionType, strike, volatility, timeToExpiry, timeToDelivery,
                         domesticRate, foreignRate, spot);
        return DeltaOfKind(engine, kind) - targetDelta;
    };
    constexpr double h = 1e-10;
    double strike = initialStrike;
    for (int step = 0; step < 100; ++step) {
        const double g = excess(strike);
        if (std::fabs(g) <= 1e-10) return strike;
        const double slope = (excess(strike + h) - excess(strike - h)) * (1.0 / (2.0 * h));
        if (!(std::fabs(slope) > 1e-10)) break;
        strike -= g / slope;
    }
    if (noThrow) return -1.0;
    throw " Newton-Raphson failed.";
}

double BSVanilla::StrikeImpliedFromPrice(int optionType, double targetPrice, double volatility,
                                         double timeToExpiry, double timeToDelivery,
                                         double domesticRate, double foreignRate, double spot,
                                         double initialStrike, double tolerance, int maxIterations) {
    // As for the delta: a step out of the positive strikes ends in "didn't converge".
    const auto price = [&](double strike) {
        if (!(strike > 0.0)) return std::numeric_limits<double>::quiet_NaN();
        return BSVanilla(optionType, strike, volatility, timeToExpiry, timeToDelivery,
                         domesticRate, foreignRate, spot)
            .Price();
    };
    constexpr double h = 1e-10;
    double strike = initialStrike != 0.0
                        ? initialStrike
                        : spot * std::exp((domesticRate - foreignRate) * timeToExpiry);
    for (int iteration = 1;; ++iteration) {
        const double error = price(strike) - targetPrice;
        if (std::fabs(error) / targetPrice <= tolerance) return strike;
        if (iteration >= maxIterations)
            throw " Newton-Raphson didn't converge: can't find implied strike.";
        const double slope = (price(strike + h) - price(strike - h)) / (2.0 * h);
        if (std::fabs(slope) < 1e-10)
            throw " Can't find implied strike: function has local min or max.";
        strike -= error / slope;
    }
}

double BSVanilla::VolImpliedFromForwardPrice(int optionType, double strike, double forward,
                                             double time, double targetPrice,
                                             double volatilityLimit) {
    const char* solver = "zep::BSVanilla::VolImpliedFromForwardPrice";
    ZEP_REQUIRE_TEXT(forward >= 0.0, kForwardMessage);
    const ForwardPremium premium(optionType, strike, forward, time, solver);
    return BisectVolatility(premium, premium, targetPrice, volatilityLimit, solver);
}

double BSVanilla::VolImpliedFromPrice(int optionType, double strike, double timeToExpiry,
                                      double timeToDelivery, double domesticRate,
                                      double foreignRate, double spot, double targetPrice,
                                      double volatilityLimit) {
    const char* solver = "zep::BSVanilla::VolImpliedFromPrice";
    ZEP_REQUIRE_TEXT(spot >= 0.0, kSpotMessage);
    const double domesticDiscount = std::exp(-domesticRate * timeToDelivery);
    const double forward = ForwardOf(spot, std::exp(-foreignRate * timeToDelivery), domesticDiscount);
    if (!std::isfinite(forward)) ZEP_FAIL_IN(solver, kForwardOverflowMessage);
    const ForwardPremium premium(optionType, strike, forward, timeToExpiry, solver);
    return BisectVolatility(premium, premium, targetPrice / domesticDiscount, volatilityLimit,
                            solver);
}

double BSVanilla::VolImpliedFromFutureOptPrice(int optionType, double strike, double forward,
                                               double time, double rate, double targetPrice,
                                               double volatilityLimit) {
    const char* solver = "zep::BSVanilla::VolImpliedFromFutureOptPrice";
    ZEP_REQUIRE_TEXT(forward >= 0.0, kForwardMessage);
    const ForwardPremium undiscounted(optionType, strike, forward, time, solver);
    const double discount = std::exp(-rate * time);
    const auto discounted = [&](double sigma) { return discount * undiscounted(sigma); };
    // The bracket is judged on the discounted premium while the halvings follow the
    // undiscounted one; the quoted vols of this book were fitted that way and depend on it.
    return BisectVolatility(discounted, undiscounted, targetPrice, volatilityLimit, solver);
}

}  // namespace zep
