#include "lum-closed-form/EuropeanBarrierBS.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace zep {

namespace {

bool IsDouble(int type) {
    return type == static_cast<int>(BarrierType::DOUBLE_KNOCK_IN) || type == static_cast<int>(BarrierType::DOUBLE_KNOCK_OUT);
}
bool IsDown(int type) {
    return type == static_cast<int>(BarrierType::DOWN_AND_IN) || type == static_cast<int>(BarrierType::DOWN_AND_OUT);
}
bool IsKnockIn(int type) {
    return type == static_cast<int>(BarrierType::DOWN_AND_IN) || type == static_cast<int>(BarrierType::UP_AND_IN) ||
           type == static_cast<int>(BarrierType::DOUBLE_KNOCK_IN);
}
bool IsKnownType(int type) {
    return type >= static_cast<int>(BarrierType::DOWN_AND_IN) && type <= static_cast<int>(BarrierType::DOUBLE_KNOCK_OUT);
}

void CheckCommonInputs(int optionType, double strike, double volatility, double timeToExpiry, double timeToDelivery,
                       double domesticRate, double foreignRate, double spot) {
    ZEP_REQUIRE(optionType == BSVanilla::Call || optionType == BSVanilla::Put,
                "EuropeanBarrierBS: option type must be 0 (call) or 1 (put)");
    ZEP_REQUIRE(spot > 0.0 && std::isfinite(spot), "EuropeanBarrierBS: spot must be positive");
    ZEP_REQUIRE(strike > 0.0 && std::isfinite(strike), "EuropeanBarrierBS: strike must be positive");
    ZEP_REQUIRE(volatility >= BSVanilla::kMinimumVolatility && std::isfinite(volatility),
                "volatility must be a positive percentage!");
    ZEP_REQUIRE(timeToExpiry >= 0.0 && timeToDelivery >= timeToExpiry && std::isfinite(timeToDelivery),
                "EuropeanBarrierBS: times must satisfy 0 <= time to expiry <= time to delivery");
    ZEP_REQUIRE(std::isfinite(domesticRate) && std::isfinite(foreignRate), "EuropeanBarrierBS: rates must be finite");
}

// What the closed forms share: the volatility over the life, the drift that carries the spot to
// the delivery forward, and the two discounted legs.
struct Market {
    double sigmaRootT;
    double mu;          // (b - sigma^2 / 2) / sigma^2
    double asset;       // S DFf(Td)
    double cashFactor;  // DFd(Td)
    double spot;

    // ln(x) / (sigma sqrt T) + (1 + mu) sigma sqrt T: the d1 of moneyness x.
    double D1(double logMoneyness) const { return logMoneyness / sigmaRootT + (1.0 + mu) * sigmaRootT; }
};

// phi (asset N(phi x) - cash N(phi (x - sigma sqrt T))), scaled by the reflection factors.
double Leg(const Market& m, double phi, double eta, double x, double strike, double assetScale, double cashScale) {
    return phi * (m.asset * assetScale * NormalCdf(eta * x) -
                  strike * m.cashFactor * cashScale * NormalCdf(eta * (x - m.sigmaRootT)));
}

}  // namespace

EuropeanBarrierBS::EuropeanBarrierBS(int optionType, int barrierType, double strike, double barrier,
                                     double volatility, double timeToExpiry, double timeToDelivery,
                                     double domesticRate, double foreignRate, double spot)
    : m_optionType(optionType), m_barrierType(barrierType), m_strike(strike), m_barrier(barrier), m_barrierUp(0.0),
      m_volatility(volatility), m_timeToExpiry(timeToExpiry), m_timeToDelivery(timeToDelivery),
      m_domesticRate(domesticRate), m_foreignRate(foreignRate), m_spot(spot) {
    CheckCommonInputs(optionType, strike, volatility, timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot);
    ZEP_REQUIRE(!IsDouble(barrierType), "Unsupported barrier type");
    ZEP_REQUIRE(barrier > 0.0 && std::isfinite(barrier), "EuropeanBarrierBS: barrier must be positive");
}

EuropeanBarrierBS::EuropeanBarrierBS(int optionType, int barrierType, double strike, double barrierLow,
                                     double barrierUp, double volatility, double timeToExpiry, double timeToDelivery,
                                     double domesticRate, double foreignRate, double spot)
    : m_optionType(optionType), m_barrierType(barrierType), m_strike(strike), m_barrier(barrierLow),
      m_barrierUp(barrierUp), m_volatility(volatility), m_timeToExpiry(timeToExpiry),
      m_timeToDelivery(timeToDelivery), m_domesticRate(domesticRate), m_foreignRate(foreignRate), m_spot(spot) {
    CheckCommonInputs(optionType, strike, volatility, timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot);
    ZEP_REQUIRE(barrierLow > 0.0 && std::isfinite(barrierUp), "EuropeanBarrierBS: barrier must be positive");
    ZEP_REQUIRE(barrierLow < barrierUp, "For double barrier, barrierLow must be less than barrierUp.");
    ZEP_REQUIRE(IsDouble(barrierType), "For double barrier, barrierType must be DOUBLE_KNOCK_IN or DOUBLE_KNOCK_OUT.");
}

bool EuropeanBarrierBS::IsKnocked() const {
    if (IsDouble(m_barrierType)) return m_spot <= m_barrier || m_spot >= m_barrierUp;
    return IsDown(m_barrierType) ? m_spot <= m_barrier : m_spot >= m_barrier;
}

double EuropeanBarrierBS::VanillaPrice() const {
    BSVanilla vanilla(m_optionType, m_strike, m_volatility, m_timeToExpiry, m_timeToDelivery, m_domesticRate,
                      m_foreignRate, m_spot);
    return vanilla.Price();
}

double EuropeanBarrierBS::Price() const {
    // Checked here rather than at construction: the text names the pricing call, as desks know it.
    if (!IsKnownType(m_barrierType)) ZEP_FAIL("Unknown barrier type in EuropeanBarrierBS::Price().");
    const bool knockIn = IsKnockIn(m_barrierType);
    if (m_timeToExpiry < BSVanilla::kExpiryThreshold) {
        const double intrinsic = std::max(m_optionType == BSVanilla::Call ? m_spot - m_strike : m_strike - m_spot, 0.0);
        return IsKnocked() == knockIn ? intrinsic : 0.0;
    }
    if (IsKnocked()) return knockIn ? VanillaPrice() : 0.0;
    if (IsDouble(m_barrierType)) return knockIn ? VanillaPrice() - DoubleKnockOut() : DoubleKnockOut();
    return knockIn ? SingleKnockIn() : SingleKnockOut();
}

double EuropeanBarrierBS::SingleKnockIn() const {
    // In and out together are the vanilla: no rebate is paid on either side.
    return VanillaPrice() - SingleKnockOut();
}

double EuropeanBarrierBS::SingleKnockOut() const {
    const double sigma2 = m_volatility * m_volatility;
    const double carry = (m_domesticRate - m_foreignRate) * m_timeToDelivery / m_timeToExpiry;
    const Market m{m_volatility * std::sqrt(m_timeToExpiry), (carry - sigma2 / 2.0) / sigma2,
                   m_spot * std::exp(-m_foreignRate * m_timeToDelivery), std::exp(-m_domesticRate * m_timeToDelivery),
                   m_spot};
    const double phi = m_optionType == BSVanilla::Call ? 1.0 : -1.0;
    const double eta = IsDown(m_barrierType) ? 1.0 : -1.0;
    const double H = m_barrier, K = m_strike, S = m_spot;
    const double ratio = H / S;
    const double assetReflection = std::pow(ratio, 2.0 * (m.mu + 1.0));
    const double cashReflection = std::pow(ratio, 2.0 * m.mu);
    // Reiner and Rubinstein's four terms: A the vanilla, B the vanilla struck at the barrier,
    // C and D their reflections in the barrier.
    const double A = Leg(m, phi, phi, m.D1(std::log(S / K)), K, 1.0, 1.0);
    const double B = Leg(m, phi, phi, m.D1(std::log(S / H)), K, 1.0, 1.0);
    const double C = Leg(m, phi, eta, m.D1(std::log(H * H / (S * K))), K, assetReflection, cashReflection);
    const double D = Leg(m, phi, eta, m.D1(std::log(H / S)), K, assetReflection, cashReflection);
    const bool call = phi > 0.0, down = eta > 0.0, strikeAbove = K >= H;
    if (call && down) return strikeAbove ? A - C : B - D;
    if (call) return strikeAbove ? 0.0 : A - B + C - D;
    if (down) return strikeAbove ? A - B + C - D : 0.0;
    return strikeAbove ? B - D : A - C;
}

double EuropeanBarrierBS::DoubleKnockOut() const {
    // Ikeda and Kunitomo's images of the corridor (L, U), flat barriers: each term reflects the
    // density n times in both levels. Asset(a, c) and Cash(a, c) are the values of S_T and of 1
    // paid when the spot stays inside the corridor and ends in (a, c).
    const double L = m_barrier, U = m_barrierUp, S = m_spot, K = m_strike;
    const double sigmaRootT = m_volatility * std::sqrt(m_timeToExpiry);
    const double carry = (m_domesticRate - m_foreignRate) * m_timeToDelivery / m_timeToExpiry;
    const double mu1 = 2.0 * carry / (m_volatility * m_volatility) + 1.0;
    const double drift = (carry + m_volatility * m_volatility / 2.0) * m_timeToExpiry;
    const double logL = std::log(L), logU = std::log(U), logS = std::log(S);
    const bool call = m_optionType == BSVanilla::Call;
    // A call collects S_T - K on (max(K, L), U), a put K - S_T on (L, min(K, U)).
    const double a = call ? std::clamp(K, L, U) : L;
    const double c = call ? U : std::clamp(K, L, U);
    const double logA = std::log(a), logC = std::log(c);

    const auto term = [&](int n, double& asset, double& cash) {
        const double shift = 2.0 * n * (logU - logL);                        // ln(U^2n / L^2n)
        const double mirror = 2.0 * (n + 1) * logL - 2.0 * n * logU - logS;  // ln(L^(2n+2) / (S U^2n))
        const double direct = n * (logU - logL);                             // ln(U^n / L^n)
        const double reflected = (n + 1) * logL - n * logU - logS;           // ln(L^(n+1) / (U^n S))
        const double e1a = (logS + shift - logA + drift) / sigmaRootT, e1c = (logS + shift - logC + drift) / sigmaRootT;
        const double e3a = (mirror - logA + drift) / sigmaRootT, e3c = (mirror - logC + drift) / sigmaRootT;
        asset = std::exp(mu1 * direct) * (NormalCdf(e1a) - NormalCdf(e1c)) -
                std::exp(mu1 * reflected) * (NormalCdf(e3a) - NormalCdf(e3c));
        cash = std::exp((mu1 - 2.0) * direct) * (NormalCdf(e1a - sigmaRootT) - NormalCdf(e1c - sigmaRootT)) -
               std::exp((mu1 - 2.0) * reflected) * (NormalCdf(e3a - sigmaRootT) - NormalCdf(e3c - sigmaRootT));
    };
    double asset = 0.0, cash = 0.0;
    term(0, asset, cash);
    for (int n = 1; n <= kMaxSeriesTerms; ++n) {
        double assetUp, cashUp, assetDown, cashDown;
        term(n, assetUp, cashUp);
        term(-n, assetDown, cashDown);
        asset += assetUp + assetDown;
        cash += cashUp + cashDown;
        if (std::abs(assetUp + assetDown) <= kSeriesTolerance * std::abs(asset) &&
            std::abs(cashUp + cashDown) <= kSeriesTolerance * std::abs(cash))
            break;
    }
    const double assetValue = S * std::exp(-m_foreignRate * m_timeToDelivery) * asset;
    const double cashValue = K * std::exp(-m_domesticRate * m_timeToDelivery) * cash;
    // Rounding can leave a corridor with no room a hair below zero.
    return std::max(call ? assetValue - cashValue : cashValue - assetValue, 0.0);
}

}  // namespace zep
