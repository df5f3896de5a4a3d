#include "lum-closed-form/HestonModel.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <span>
#include <string>

#include "lum-auxiliary/AdaptiveGaussKronrod.hpp"
#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"

namespace zep {
namespace {

using Complex = std::complex<double>;

bool IsFinite(double x) { return std::isfinite(x); }

// The complex functions below replace the library's generic ones on the characteristic function's
// path, which dominates every Heston price: the generic division guards against overflow with a
// call per quotient, and the generic logarithm of a number near 1 sorts partial sums to get
// |z|^2 - 1 exactly. The arguments here are moderate, so neither guard is needed.
Complex Reciprocal(Complex z) {
    const double inverseNorm = 1.0 / (z.real() * z.real() + z.imag() * z.imag());
    return {z.real() * inverseNorm, -z.imag() * inverseNorm};
}

// Principal square root, from |z| and the half-angle formulas without cancellation.
Complex Sqrt(Complex z) {
    const double modulus = std::sqrt(z.real() * z.real() + z.imag() * z.imag());
    if (modulus == 0.0) return {0.0, 0.0};
    if (z.real() >= 0.0) {
        const double t = std::sqrt(0.5 * (modulus + z.real()));
        return {t, 0.5 * z.imag() / t};
    }
    const double t = std::sqrt(0.5 * (modulus - z.real()));
    return {0.5 * std::abs(z.imag()) / t, std::copysign(t, z.imag())};
}

// log(1 + q): |1 + q|^2 - 1 = 2 Re q + |q|^2 keeps its digits when q is small. From |q| = 1/16 on
// the plain logarithm of |1 + q|^2, a third cheaper, serves: rounding 1 + q costs it an absolute
// 2^-52 or so, far below the integral's tolerance. The argument is a plain arc tangent in the right
// half-plane, where it is cheaper than the two-argument one.
Complex Log1p(Complex q) {
    const double x = 1.0 + q.real();
    const double squaredModulus = std::norm(q);
    const double logModulus = squaredModulus < 0.00390625 ? 0.5 * std::log1p(2.0 * q.real() + squaredModulus)
                                                          : 0.5 * std::log(x * x + q.imag() * q.imag());
    return {logModulus, x > 0.0 ? std::atan(q.imag() / x) : std::atan2(q.imag(), x)};
}

Complex Exp(Complex z) {
    const double modulus = std::exp(z.real());
    return {modulus * std::cos(z.imag()), modulus * std::sin(z.imag())};
}

// exp(z) - 1 without the cancellation of short maturities: e^x cos y - 1 = expm1(x) cos y - 2 sin^2(y/2),
// and one half-angle sine and cosine give both cos y and sin y; e^x is expm1(x) + 1.
Complex Expm1(Complex z) {
    const double halfSine = std::sin(0.5 * z.imag()), halfCosine = std::cos(0.5 * z.imag());
    const double cosine = 1.0 - 2.0 * halfSine * halfSine;
    const double growthLessOne = std::expm1(z.real());
    return {growthLessOne * cosine - 2.0 * halfSine * halfSine, (growthLessOne + 1.0) * 2.0 * halfSine * halfCosine};
}

// The integration tail left out beyond the truncation point, as a share of the tolerance.
constexpr double kTailShare = 0.1;
// The truncation point moves out by this factor a step, a bounded number of steps.
constexpr double kTruncationStep = 1.25;
constexpr int kMaxTruncationSteps = 200;

}  // namespace

HestonModel::HestonModel(double v0, double kappa, double theta, double sigma, double rho)
    : m_v0(v0), m_kappa(kappa), m_theta(theta), m_sigma(sigma), m_rho(rho) {
    ZEP_REQUIRE(v0 >= 0.0 && IsFinite(v0), "Heston initial variance v0 must be a finite number >= 0");
    ZEP_REQUIRE(theta >= 0.0 && IsFinite(theta), "Heston long-run variance theta must be a finite number >= 0");
    ZEP_REQUIRE(kappa > 0.0 && IsFinite(kappa), "Heston mean reversion kappa must be a finite number > 0");
    ZEP_REQUIRE(sigma > 0.0 && IsFinite(sigma), "Heston volatility of variance sigma must be a finite number > 0");
    ZEP_REQUIRE(rho > -1.0 && rho < 1.0, "Heston correlation rho must lie strictly between -1 and 1");
}

double HestonModel::MeanVariance(double timeToExpiry) const {
    const double kt = m_kappa * timeToExpiry;
    // (1 - e^-x) / x, -expm1(-x) / x, is 1 at x = 0.
    const double weight = kt > 1e-12 ? -std::expm1(-kt) / kt : 1.0;
    return m_theta + (m_v0 - m_theta) * weight;
}

// For real u = -i w: xi = kappa - rho sigma w and d^2 = xi^2 - sigma^2 w (w - 1). With d^2 < 0 the
// moment explodes at 2 / gamma (atan(gamma / xi) + pi [xi < 0]), gamma = sqrt(-d^2); with d^2 >= 0
// only when xi < 0, at ln((xi + d) / (xi - d)) / d.
double HestonModel::MomentExplosionTime(double order) const {
    const double xi = m_kappa - m_rho * m_sigma * order;
    const double d2 = xi * xi - m_sigma * m_sigma * order * (order - 1.0);
    if (d2 < 0.0) {
        const double gamma = std::sqrt(-d2);
        return 2.0 / gamma * (xi == 0.0 ? 0.5 * M_PI : std::atan(gamma / xi) + (xi < 0.0 ? M_PI : 0.0));
    }
    if (xi >= 0.0) return std::numeric_limits<double>::infinity();
    const double d = std::sqrt(d2);
    return std::log((xi + d) / (xi - d)) / d;
}

// With xi = kappa - sigma rho i u and d = sqrt(xi^2 + sigma^2 (u^2 + i u)), xi - d is written
// -sigma^2 (u^2 + i u) / (xi + d): no cancellation, and the divisions by sigma^2 of the textbook
// form cancel out analytically, so that small volatilities of variance lose no precision.
Complex HestonModel::LogCharacteristicFunction(Complex u, double timeToExpiry) const {
    const Complex i(0.0, 1.0);
    const double sigma2 = m_sigma * m_sigma;
    const Complex a = u * u + i * u;
    const Complex xi = m_kappa - m_sigma * m_rho * i * u;
    const Complex d = Sqrt(xi * xi + sigma2 * a);
    const Complex inverseXiPlusD = Reciprocal(xi + d);
    const Complex xiMinusDOverSigma2 = -a * inverseXiPlusD;
    const Complex g = sigma2 * xiMinusDOverSigma2 * inverseXiPlusD;  // (xi - d) / (xi + d)
    const Complex oneMinusE = -Expm1(-d * timeToExpiry);
    const Complex e = 1.0 - oneMinusE;
    const Complex oneMinusEOverOneMinusG = oneMinusE * Reciprocal(1.0 - g);
    const Complex q = g * oneMinusEOverOneMinusG;
    // log((1 - g e) / (1 - g)) = log(1 + q); divided by sigma^2 through its series when small.
    const Complex logOverSigma2 = std::norm(q) < 1e-8
                                      ? xiMinusDOverSigma2 * inverseXiPlusD * oneMinusEOverOneMinusG *
                                            (1.0 - q * (0.5 - q * (1.0 / 3.0 - 0.25 * q)))
                                      : Log1p(q) / sigma2;
    const Complex c = m_kappa * m_theta * (xiMinusDOverSigma2 * timeToExpiry - 2.0 * logOverSigma2);
    const Complex dTerm = xiMinusDOverSigma2 * oneMinusE * Reciprocal(1.0 - g * e);
    return c + dTerm * m_v0;
}

Complex HestonModel::CharacteristicFunction(Complex u, double timeToExpiry) const {
    return Exp(LogCharacteristicFunction(u, timeToExpiry));
}

namespace {

// N integrands' values at one node, integrated on one adaptive subdivision.
template <int N>
struct Lanes {
    std::array<double, N> v{};
    friend Lanes operator+(Lanes x, const Lanes& y) {
        for (int j = 0; j < N; ++j) x.v[j] += y.v[j];
        return x;
    }
    friend Lanes operator-(Lanes x, const Lanes& y) {
        for (int j = 0; j < N; ++j) x.v[j] -= y.v[j];
        return x;
    }
    friend Lanes operator*(double s, Lanes x) {
        for (double& value : x.v) value *= s;
        return x;
    }
    friend double LargestMagnitude(const Lanes& x) {
        double largest = 0.0;
        for (const double value : x.v) largest = std::max(largest, std::abs(value));
        return largest;
    }
    friend bool AllFinite(const Lanes& x) {
        return std::all_of(x.v.begin(), x.v.end(), [](double value) { return std::isfinite(value); });
    }
};

// The Black-Scholes characteristic function at total variance w less Heston's, both at u - i/2:
// the Gaussian and Heston's logarithm, so that a phase e^(i u k) costs one cosine for each.
struct ControlledCharacteristicFunction {
    double gaussian;
    Complex logHeston;

    ControlledCharacteristicFunction(const HestonModel& model, double u, double timeToExpiry, double totalVariance)
        : gaussian(Gaussian(-0.5 * totalVariance * (u * u + 0.25))),
          logHeston(model.LogCharacteristicFunction(Complex(u, -0.5), timeToExpiry)) {}

    // Below e^-80 the Gaussian is nothing next to any tolerance: taken as 0, its cosine is skipped
    // on the tail, where Heston's slower decay alone sets the integrand.
    static double Gaussian(double exponent) { return exponent < -80.0 ? 0.0 : std::exp(exponent); }

    Complex Value() const { return gaussian - Exp(logHeston); }
    // e^(i phase) (gaussian - heston).
    Complex TurnedBy(double phase) const {
        return gaussian * Exp(Complex(0.0, phase)) - Exp(logHeston + Complex(0.0, phase));
    }
    // Its real part alone: two cosines.
    double RealPartTurnedBy(double phase) const {
        const double heston = std::exp(logHeston.real()) * std::cos(logHeston.imag() + phase);
        return gaussian == 0.0 ? -heston : gaussian * std::cos(phase) - heston;
    }
};

// How the integrand's tail is bounded: scale |phi(u)| / u^weightPower.
struct TailBound {
    double scale;
    int weightPower;
};

// Where the integral is cut, and how fast phi turns there.
struct IntegrationRange {
    double upper;
    double phaseRate;  // d arg phi / du
};

// Past u = 9 s (s below) the control variate's Gaussian is below e^-81, and Heston's
// |phi(u - i/2)| falls exponentially, at a rate that grows towards
// sqrt(1 - rho^2) (v0 + kappa theta T) / sigma (Kahl and Jaeckel); with the rate measured between
// two trial points, the last a lower bound for what follows, the tail leaves at most
// scale |phi(U)| / (rate U^weightPower) out. The point moves out until that is below kTailShare of
// the tolerance.
IntegrationRange FindIntegrationRange(const HestonModel& model, double timeToExpiry, double totalVariance,
                                      const TailBound& tail, double tolerance) {
    // log |phi| and arg phi are the real and imaginary parts of the logarithm.
    const auto logPhi = [&](double u) { return model.LogCharacteristicFunction(Complex(u, -0.5), timeToExpiry); };
    double upper = 9.0 * std::sqrt(2.0 / totalVariance);
    Complex previous = logPhi(upper / kTruncationStep);
    for (int step = 0; step < kMaxTruncationSteps; ++step) {
        const Complex current = logPhi(upper);
        const double width = upper - upper / kTruncationStep;
        const double rate = (previous.real() - current.real()) / width;
        if (rate > 0.0 &&
            tail.scale * std::exp(current.real()) / (rate * std::pow(upper, tail.weightPower)) <= kTailShare * tolerance)
            return {upper, std::abs(current.imag() - previous.imag()) / width};
        previous = current;
        upper *= kTruncationStep;
    }
    ZEP_FAIL("the Heston characteristic function does not decay: no finite integration range");
}

// Intervals the quadrature starts from. The control variate's Gaussian e^(-w u^2 / 2) falls from
// 1 to e^-1, e^-9 and e^-81 at u = s, 3s and 9s, s = sqrt(2 / w); beyond, only Heston's slower
// decay is left. And no interval spans more than kPeriodsPerInterval turns of the integrand's
// phase (the strike's u k and phi's own): over more, the 10- and 21-point rules can both miss a
// decaying oscillation and still agree. Starting there saves the halvings that would find the
// same places.
constexpr double kPeriodsPerInterval = 3.0;
constexpr std::size_t kMaxPiecesPerInterval = 32;

struct BreakPoints {
    std::array<double, 4 * kMaxPiecesPerInterval + 1> points;
    std::size_t count;
    std::span<const double> Span() const { return {points.data(), count}; }
};

BreakPoints IntegrationBreakPoints(double totalVariance, const IntegrationRange& range, double largestLogMoneyness) {
    std::array<double, 4> ends{};
    std::size_t endCount = 0;
    const double scale = std::sqrt(2.0 / totalVariance);
    for (const double factor : {1.0, 3.0, 9.0})
        if (factor * scale < range.upper) ends[endCount++] = factor * scale;
    ends[endCount++] = range.upper;
    const double phaseRate = largestLogMoneyness + range.phaseRate;
    const double longest = phaseRate > 0.0 ? kPeriodsPerInterval * 2.0 * M_PI / phaseRate : range.upper;
    BreakPoints breaks{{0.0}, 1};
    double start = 0.0;
    for (std::size_t i = 0; i < endCount; ++i) {
        const std::size_t pieces =
            std::clamp<std::size_t>(static_cast<std::size_t>(std::ceil((ends[i] - start) / longest)), 1, kMaxPiecesPerInterval);
        for (std::size_t j = 1; j <= pieces; ++j)
            breaks.points[breaks.count++] = start + (ends[i] - start) * static_cast<double>(j) / static_cast<double>(pieces);
        start = ends[i];
    }
    return breaks;
}

// The Lewis integrand's quadrature over its whole range, to `tolerance` (absolute) on each value;
// largestLogMoneyness is the largest |ln(F / K)| of the strikes it prices.
template <class Integrand, class Value>
Value IntegrateLewis(const Integrand& integrand, const HestonModel& model, double timeToExpiry, double totalVariance,
                     const TailBound& tail, double largestLogMoneyness, double tolerance, const char* what) {
    AdaptiveGaussKronrod<Integrand, Value> quadrature(integrand, KronrodSettings{tolerance}, what);
    const IntegrationRange range = FindIntegrationRange(model, timeToExpiry, totalVariance, tail, tolerance);
    return quadrature.Integrate(IntegrationBreakPoints(totalVariance, range, largestLogMoneyness).Span());
}

// Lewis: call / F = 1 - sqrt(K / F) / pi * Integral_0^inf Re[e^(i u k) phi(u - i/2)] / (u^2 + 1/4) du,
// k = ln(F / K). The same integral of the Black-Scholes model at the mean variance, known in
// closed form, is subtracted under the integral (Andersen and Piterbarg's control variate):
// both characteristic functions are 1 at u = i/2, so the difference has no pole there and is
// small, and the quadrature needs about half the points. |phi(u - i/2)| <= 1 bounds the tail.
// Each strike's integral is found to `tolerance` times the forward.
// The undiscounted calls of N strikes of one expiry are integrated together: the strike enters
// only through e^(i u k), so each characteristic-function value serves all N.
template <int N>
Lanes<N> UndiscountedCalls(const HestonModel& model, const std::array<double, N>& strikes, double forward,
                           double timeToExpiry, double tolerance) {
    std::array<double, N> k, scale;
    for (int j = 0; j < N; ++j) {
        k[j] = std::log(forward / strikes[j]);
        scale[j] = forward * std::sqrt(strikes[j] / forward) / M_PI;
    }
    const double meanVariance = std::max(model.MeanVariance(timeToExpiry), BSVanilla::kMinimumVolatility);
    const double totalVariance = meanVariance * timeToExpiry;
    const auto integrand = [&](double u) {
        const ControlledCharacteristicFunction gap(model, u, timeToExpiry, totalVariance);
        const double weight = 1.0 / (u * u + 0.25);
        Lanes<N> values;
        if constexpr (N == 1) {
            values.v[0] = scale[0] * weight * gap.RealPartTurnedBy(u * k[0]);
        } else {
            // Several strikes share one value of the function: a sine and cosine each.
            const Complex value = gap.Value();
            for (int j = 0; j < N; ++j)
                values.v[j] = scale[j] * weight * (std::cos(u * k[j]) * value.real() - std::sin(u * k[j]) * value.imag());
        }
        return values;
    };
    const TailBound tail{*std::max_element(scale.begin(), scale.end()), 2};
    double largestLogMoneyness = 0.0;
    for (const double logMoneyness : k) largestLogMoneyness = std::max(largestLogMoneyness, std::abs(logMoneyness));
    Lanes<N> calls = IntegrateLewis<decltype(integrand), Lanes<N>>(integrand, model, timeToExpiry, totalVariance, tail,
                                                                  largestLogMoneyness, tolerance * forward, "Heston price");
    for (int j = 0; j < N; ++j) {
        BSVanilla blackScholes(BSVanilla::Call, strikes[j], std::sqrt(meanVariance), timeToExpiry, 0.0, 0.0, 0.0,
                               forward);
        calls.v[j] += blackScholes.Price();
    }
    return calls;
}

// The undiscounted call and its first two derivatives in the forward, times F and F^2 so that
// all three are found to `tolerance` times the forward. With F sqrt(K / F) e^(i u k) =
// K e^((1/2 + i u) k), k = ln(F / K), each derivative in F brings down (1/2 + i u) / F, then
// (-1/2 + i u) / F: the first derivative's integrand has 1 / (1/2 - i u) for its weight, the
// second's -1.
Lanes<3> UndiscountedCallAndForwardDerivatives(const HestonModel& model, double strike, double forward,
                                               double timeToExpiry, double tolerance) {
    const double k = std::log(forward / strike);
    const double meanVariance = std::max(model.MeanVariance(timeToExpiry), BSVanilla::kMinimumVolatility);
    const double totalVariance = meanVariance * timeToExpiry;
    const auto integrand = [&](double u) {
        const ControlledCharacteristicFunction gap(model, u, timeToExpiry, totalVariance);
        const Complex term = strike / M_PI * std::exp(0.5 * k) * gap.TurnedBy(u * k);
        return Lanes<3>{{(term / (u * u + 0.25)).real(), (term / Complex(0.5, -u)).real(), -term.real()}};
    };
    // The second derivative's integrand has no 1 / u^2 weight: its tail falls with phi alone.
    const TailBound tail{std::sqrt(strike * forward) / M_PI, 0};
    Lanes<3> values = IntegrateLewis<decltype(integrand), Lanes<3>>(integrand, model, timeToExpiry, totalVariance, tail,
                                                                   std::abs(k), tolerance * forward, "Heston Greeks");
    BSVanilla blackScholes(BSVanilla::Call, strike, std::sqrt(meanVariance), timeToExpiry, 0.0, 0.0, 0.0, forward);
    values.v[0] += blackScholes.Price();
    values.v[1] += forward * blackScholes.Delta();
    values.v[2] += forward * forward * blackScholes.Gamma();
    return values;
}

// A discounted call or put from the undiscounted call. The integral is exact to about the
// tolerance; rounding can leave a worthless option at -0.
double Settle(int optionType, double call, double forward, double strike, double discount) {
    const double undiscounted = optionType == BSVanilla::Call ? call : call - (forward - strike);
    return discount * std::max(undiscounted, 0.0);
}

void RequirePricingInputs(int optionType, double timeToExpiry, double timeToDelivery, double domesticRate,
                          double foreignRate, double spot, double tolerance) {
    ZEP_REQUIRE(optionType == BSVanilla::Call || optionType == BSVanilla::Put,
                "option type must be 0 (call) or 1 (put)");
    ZEP_REQUIRE(spot > 0.0 && IsFinite(spot), "spot must be a finite number > 0");
    ZEP_REQUIRE(timeToExpiry >= 0.0 && IsFinite(timeToExpiry) && timeToDelivery >= 0.0 && IsFinite(timeToDelivery),
                "times to expiry and delivery must be finite numbers >= 0");
    ZEP_REQUIRE(IsFinite(domesticRate) && IsFinite(foreignRate), "rates must be finite numbers");
    ZEP_REQUIRE(tolerance >= 1e-15 && tolerance <= 1e-2, "Heston price tolerance must lie between 1e-15 and 1e-2");
}

void RequireStrike(double strike) {
    ZEP_REQUIRE(strike > 0.0 && IsFinite(strike), "strike must be a finite number > 0");
}

// Strikes priced together in Prices: enough to share the characteristic function well, few
// enough that the subdivision the hardest of them needs stays close to each one's own.
constexpr int kStrikeLanes = 8;

}  // namespace

double HestonModel::Price(int optionType, double strike, double timeToExpiry, double timeToDelivery,
                          double domesticRate, double foreignRate, double spot, double tolerance) const {
    double price;
    Prices(optionType, std::span<const double>(&strike, 1), timeToExpiry, timeToDelivery, domesticRate, foreignRate,
           spot, std::span<double>(&price, 1), tolerance);
    return price;
}

void HestonModel::Prices(int optionType, std::span<const double> strikes, double timeToExpiry,
                         double timeToDelivery, double domesticRate, double foreignRate, double spot,
                         std::span<double> prices, double tolerance) const {
    RequirePricingInputs(optionType, timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot, tolerance);
    ZEP_REQUIRE(strikes.size() == prices.size(), "strikes and prices must have the same length");
    for (const double strike : strikes) RequireStrike(strike);
    const double phi = optionType == BSVanilla::Call ? 1.0 : -1.0;
    if (timeToExpiry < BSVanilla::kExpiryThreshold) {
        for (std::size_t i = 0; i < strikes.size(); ++i) prices[i] = std::max(phi * (spot - strikes[i]), 0.0);
        return;
    }
    const double discount = std::exp(-domesticRate * timeToDelivery);
    const double forward = spot * std::exp((domesticRate - foreignRate) * timeToDelivery);
    ZEP_REQUIRE(IsFinite(forward), "the forward of this spot and these rates is not a finite number");
    if (m_v0 == 0.0 && m_theta == 0.0) {
        // No variance now and none to revert to: the variance stays 0 and the forward is certain.
        for (std::size_t i = 0; i < strikes.size(); ++i) prices[i] = discount * std::max(phi * (forward - strikes[i]), 0.0);
        return;
    }
    if (strikes.size() == 1) {
        const double call = UndiscountedCalls<1>(*this, {strikes[0]}, forward, timeToExpiry, tolerance).v[0];
        prices[0] = Settle(optionType, call, forward, strikes[0], discount);
        return;
    }
    for (std::size_t first = 0; first < strikes.size(); first += kStrikeLanes) {
        // A short last group repeats its last strike in the unused lanes.
        const std::size_t count = std::min<std::size_t>(kStrikeLanes, strikes.size() - first);
        std::array<double, kStrikeLanes> group;
        for (std::size_t j = 0; j < kStrikeLanes; ++j) group[j] = strikes[first + std::min(j, count - 1)];
        const Lanes<kStrikeLanes> calls = UndiscountedCalls<kStrikeLanes>(*this, group, forward, timeToExpiry, tolerance);
        for (std::size_t j = 0; j < count; ++j)
            prices[first + j] = Settle(optionType, calls.v[j], forward, group[j], discount);
    }
}

// Delta and gamma in the spot come from the forward's, dF / dS = F / S; the put's delta is the
// call's less the discounted forward's. Vega is the central difference of the price in sqrt(v0).
HestonGreeks HestonModel::Greeks(int optionType, double strike, double timeToExpiry, double timeToDelivery,
                                 double domesticRate, double foreignRate, double spot, double tolerance) const {
    RequirePricingInputs(optionType, timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot, tolerance);
    RequireStrike(strike);
    ZEP_REQUIRE(timeToExpiry >= BSVanilla::kExpiryThreshold, "Heston Greeks need a time to expiry > 0");
    const double discount = std::exp(-domesticRate * timeToDelivery);
    const double forward = spot * std::exp((domesticRate - foreignRate) * timeToDelivery);
    ZEP_REQUIRE(IsFinite(forward), "the forward of this spot and these rates is not a finite number");
    const Lanes<3> call = UndiscountedCallAndForwardDerivatives(*this, strike, forward, timeToExpiry, tolerance);
    const double forwardPerSpot = forward / spot;
    HestonGreeks greeks;
    greeks.price = Settle(optionType, call.v[0], forward, strike, discount);
    greeks.delta = discount * forwardPerSpot * (call.v[1] / forward - (optionType == BSVanilla::Put ? 1.0 : 0.0));
    greeks.gamma = discount * forwardPerSpot * forwardPerSpot * call.v[2] / (forward * forward);
    const double volatility = std::sqrt(m_v0);
    const double bump = std::max(1e-4 * volatility, 1e-5);
    const auto priceAt = [&](double initialVolatility) {
        return HestonModel(initialVolatility * initialVolatility, m_kappa, m_theta, m_sigma, m_rho)
            .Price(optionType, strike, timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot, tolerance);
    };
    const double down = std::max(volatility - bump, 0.0);
    greeks.vega = (priceAt(volatility + bump) - priceAt(down)) / (volatility + bump - down);
    return greeks;
}

}  // namespace zep
