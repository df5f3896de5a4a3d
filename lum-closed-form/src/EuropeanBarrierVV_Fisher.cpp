#include "lum-closed-form/EuropeanBarrierVV_Fisher.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <utility>

#include <fmt/format.h>

#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/Logger.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace zep {

namespace {

DeltaKind PivotDeltaKind(int deltaType, bool premiumAdjusted) {
    ZEP_REQUIRE(deltaType == 0 || deltaType == 1, "EuropeanBarrierVV_Fisher: delta type must be 0 (spot) or 1 (forward)");
    if (deltaType == 0) return premiumAdjusted ? DeltaKind::SpotPremiumAdjusted : DeltaKind::Spot;
    return premiumAdjusted ? DeltaKind::ForwardPremiumAdjusted : DeltaKind::Forward;
}

// Vega, vanna and volga of a vanilla: the three sensitivities the pivots hedge.
VannaVolgaBase::Vector3 VolatilityGreeks(BSVanilla option) {
    return {option.Vega(), option.Vanna(), option.DvegaDvol2()};
}

// Gaussian elimination with partial pivoting, then back-substitution.
VannaVolgaBase::Vector3 Solve(VannaVolgaBase::GreekMatrix a, VannaVolgaBase::Vector3 y) {
    for (int column = 0; column < 3; ++column) {
        int pivot = column;
        for (int row = column + 1; row < 3; ++row)
            if (std::abs(a[row][column]) > std::abs(a[pivot][column])) pivot = row;
        ZEP_REQUIRE(a[pivot][column] != 0.0, "EuropeanBarrierVV_Fisher: the pivot Greeks are singular");
        std::swap(a[pivot], a[column]);
        std::swap(y[pivot], y[column]);
        for (int row = column + 1; row < 3; ++row) {
            const double factor = a[row][column] / a[column][column];
            for (int k = column; k < 3; ++k) a[row][k] -= factor * a[column][k];
            y[row] -= factor * y[column];
        }
    }
    VannaVolgaBase::Vector3 x{};
    for (int row = 2; row >= 0; --row) {
        double sum = y[row];
        for (int k = row + 1; k < 3; ++k) sum -= a[row][k] * x[k];
        x[row] = sum / a[row][row];
    }
    return x;
}

std::string Triple(const VannaVolgaBase::Vector3& v) { return fmt::format("({}, {}, {})", v[0], v[1], v[2]); }

bool IsDoubleType(int type) {
    return type == static_cast<int>(BarrierType::DOUBLE_KNOCK_IN) || type == static_cast<int>(BarrierType::DOUBLE_KNOCK_OUT);
}
bool IsKnockInType(int type) {
    return type == static_cast<int>(BarrierType::DOWN_AND_IN) || type == static_cast<int>(BarrierType::UP_AND_IN) ||
           type == static_cast<int>(BarrierType::DOUBLE_KNOCK_IN);
}

}  // namespace

VannaVolgaBase::VannaVolgaBase(double spot, double domesticRate, double foreignRate, double atmVolatility,
                               double timeToExpiry, double timeToDelivery, double riskReversal25, double butterfly25,
                               int deltaType, bool premiumAdjusted)
    : m_spot(spot), m_domesticRate(domesticRate), m_foreignRate(foreignRate), m_atmVolatility(atmVolatility),
      m_timeToExpiry(timeToExpiry), m_timeToDelivery(timeToDelivery), m_riskReversal25(riskReversal25),
      m_butterfly25(butterfly25), m_deltaType(deltaType), m_premiumAdjusted(premiumAdjusted),
      m_trace(std::getenv("ZEP_VV_TRACE") && std::string(std::getenv("ZEP_VV_TRACE")) == "1") {
    ZEP_REQUIRE(spot > 0.0 && std::isfinite(spot), "EuropeanBarrierVV_Fisher: spot must be positive");
    ZEP_REQUIRE(atmVolatility > 0.0 && std::isfinite(atmVolatility), "volatility must be a positive percentage!");
    ZEP_REQUIRE(std::isfinite(riskReversal25) && std::isfinite(butterfly25),
                "EuropeanBarrierVV_Fisher: 25-delta quotes must be finite");
    ZEP_REQUIRE(timeToExpiry > 0.0 && timeToDelivery >= timeToExpiry && std::isfinite(timeToDelivery),
                "EuropeanBarrierVV_Fisher: times must satisfy 0 < time to expiry <= time to delivery");
    PivotDeltaKind(deltaType, premiumAdjusted);
}

void VannaVolgaBase::BuildPivots() {
    const double T = m_timeToExpiry, Td = m_timeToDelivery, rd = m_domesticRate, rf = m_foreignRate, S = m_spot;
    const double sigma = m_atmVolatility;
    Pivots p;
    p.vol25Call = sigma + m_butterfly25 + m_riskReversal25 / 2.0;
    p.vol25Put = sigma + m_butterfly25 - m_riskReversal25 / 2.0;
    ZEP_REQUIRE(p.vol25Call > 0.0 && p.vol25Put > 0.0, "EuropeanBarrierVV_Fisher: a 25-delta pivot volatility is not positive");
    p.strikeATM = S * std::exp((rd - rf) * Td);
    const DeltaKind kind = PivotDeltaKind(m_deltaType, m_premiumAdjusted);
    p.strike25Call = BSVanilla::StrikeImpliedFromDelta(BSVanilla::Call, 0.25, p.vol25Call, T, Td, rd, rf, S,
                                                       p.strikeATM, kind);
    p.strike25Put = BSVanilla::StrikeImpliedFromDelta(BSVanilla::Put, -0.25, p.vol25Put, T, Td, rd, rf, S,
                                                      p.strikeATM, kind);
    ZEP_REQUIRE(p.strike25Put < p.strikeATM && p.strikeATM < p.strike25Call,
                "EuropeanBarrierVV_Fisher: the 25-delta strikes do not straddle the at-the-money strike");

    const auto vanilla = [&](int type, double strike, double volatility) {
        return BSVanilla(type, strike, volatility, T, Td, rd, rf, S);
    };
    // The six vanillas: the pivots at sigma_atm (V1 to V3) and at their market volatilities (V4 to V6).
    BSVanilla v1 = vanilla(BSVanilla::Call, p.strikeATM, sigma), v2 = vanilla(BSVanilla::Call, p.strike25Call, sigma),
              v3 = vanilla(BSVanilla::Put, p.strike25Put, sigma), v4 = vanilla(BSVanilla::Call, p.strikeATM, sigma),
              v5 = vanilla(BSVanilla::Call, p.strike25Call, p.vol25Call),
              v6 = vanilla(BSVanilla::Put, p.strike25Put, p.vol25Put);
    const Vector3 g1 = VolatilityGreeks(v1), g2 = VolatilityGreeks(v2), g3 = VolatilityGreeks(v3);
    GreekMatrix greeks{};
    for (int k = 0; k < 3; ++k) {
        greeks[0][k] = g1[k];
        greeks[1][k] = g2[k] - g3[k];
        greeks[2][k] = (g3[k] + g2[k]) / 2.0 - g1[k];
    }
    const double p1 = v1.Price(), p2 = v2.Price(), p3 = v3.Price(), p4 = v4.Price(), p5 = v5.Price(), p6 = v6.Price();
    const Vector3 atATM{p1, p2 - p3, (p3 + p2) / 2.0 - p1};
    const Vector3 atMarket{p4, p5 - p6, (p6 + p5) / 2.0 - p4};
    const Vector3 costs{atMarket[0] - atATM[0], atMarket[1] - atATM[1], atMarket[2] - atATM[2]};
    const Vector3 omega = Solve(greeks, costs);

    m_pivots = p;
    m_greeks = greeks;
    m_pivotPricesATM = atATM;
    m_pivotPricesMarket = atMarket;
    m_costs = costs;
    m_omega = omega;
}

double VannaVolgaBase::SmileVolatility(double strike) const {
    const Pivots& p = m_pivots;
    if (strike <= p.strike25Put) return p.vol25Put;
    if (strike >= p.strike25Call) return p.vol25Call;
    // The parabola in x = ln(K / K_atm) through the three pivots, written in Lagrange's form.
    const double x = std::log(strike / p.strikeATM);
    const double xp = std::log(p.strike25Put / p.strikeATM), xc = std::log(p.strike25Call / p.strikeATM);
    return p.vol25Put * (x * (x - xc)) / (xp * (xp - xc)) + m_atmVolatility * ((x - xp) * (x - xc)) / (xp * xc) +
           p.vol25Call * (x * (x - xp)) / (xc * (xc - xp));
}

void VannaVolgaBase::Trace(const std::string& line) const {
    if (m_trace) Logger().info(line);
}

EuropeanBarrierVV_Fisher::EuropeanBarrierVV_Fisher(double spot, double domesticRate, double foreignRate,
                                                   double atmVolatility, double timeToExpiry, double timeToDelivery,
                                                   double riskReversal25, double butterfly25, double strike,
                                                   int optionType, int barrierType, double barrier, int deltaType,
                                                   bool premiumAdjusted)
    : VannaVolgaBase(spot, domesticRate, foreignRate, atmVolatility, timeToExpiry, timeToDelivery, riskReversal25,
                     butterfly25, deltaType, premiumAdjusted),
      m_strike(strike), m_optionType(optionType), m_barrierType(barrierType), m_barrier(barrier), m_barrierLow(0.0),
      m_barrierUp(0.0) {
    ZEP_REQUIRE(!IsDoubleType(barrierType), "EuropeanBarrierVV_Fisher: use the double-barrier constructor for DKI/DKO.");
    // The knock-out twin is built once here so that bad terms fail with the object.
    KnockOutBS(spot, atmVolatility);
    BuildPivots();
}

EuropeanBarrierVV_Fisher::EuropeanBarrierVV_Fisher(double spot, double domesticRate, double foreignRate,
                                                   double atmVolatility, double timeToExpiry, double timeToDelivery,
                                                   double riskReversal25, double butterfly25, double strike,
                                                   int optionType, int barrierType, double barrierLow,
                                                   double barrierUp, int deltaType, bool premiumAdjusted)
    : VannaVolgaBase(spot, domesticRate, foreignRate, atmVolatility, timeToExpiry, timeToDelivery, riskReversal25,
                     butterfly25, deltaType, premiumAdjusted),
      m_strike(strike), m_optionType(optionType), m_barrierType(barrierType), m_barrier(0.0), m_barrierLow(barrierLow),
      m_barrierUp(barrierUp) {
    ZEP_REQUIRE(barrierLow < barrierUp, "EuropeanBarrierVV_Fisher: barrierLow must be less than barrierUp.");
    ZEP_REQUIRE(IsDoubleType(barrierType), "EuropeanBarrierVV_Fisher: double-barrier ctor requires DKI/DKO type.");
    KnockOutBS(spot, atmVolatility);
    BuildPivots();
}

int EuropeanBarrierVV_Fisher::KnockOutType() const {
    // Each knock-in code is one below its knock-out twin.
    return IsKnockInType(m_barrierType) ? m_barrierType + 1 : m_barrierType;
}

double EuropeanBarrierVV_Fisher::KnockOutBS(double spot, double volatility) const {
    const int type = KnockOutType();
    if (IsDoubleType(type))
        return EuropeanBarrierBS(m_optionType, type, m_strike, m_barrierLow, m_barrierUp, volatility, m_timeToExpiry,
                                 m_timeToDelivery, m_domesticRate, m_foreignRate, spot)
            .Price();
    return EuropeanBarrierBS(m_optionType, type, m_strike, m_barrier, volatility, m_timeToExpiry, m_timeToDelivery,
                             m_domesticRate, m_foreignRate, spot)
        .Price();
}

double EuropeanBarrierVV_Fisher::SurvivalProbability() const {
    const double sigma = m_atmVolatility, T = m_timeToExpiry, S = m_spot;
    double lambda = 1.0;
    if (m_barrier > 0.0 && sigma > 0.0 && T > 0.0) {
        const double mu = (m_domesticRate - m_foreignRate) - sigma * sigma / 2.0;
        const double s = sigma * std::sqrt(T);
        const double logRatio = std::log(m_barrier / S);
        const double p = std::pow(m_barrier / S, 2.0 * mu / (sigma * sigma));
        const double x1 = (mu * T + logRatio) / s, x2 = (mu * T - logRatio) / s;
        if (m_barrierType == static_cast<int>(BarrierType::DOWN_AND_IN) ||
            m_barrierType == static_cast<int>(BarrierType::DOWN_AND_OUT))
            lambda = 1.0 - (NormalCdf(-x2) + p * NormalCdf(x1));
        else if (m_barrierType == static_cast<int>(BarrierType::UP_AND_IN) ||
                 m_barrierType == static_cast<int>(BarrierType::UP_AND_OUT))
            lambda = 1.0 - (NormalCdf(x2) + p * NormalCdf(-x1));
    } else if (m_barrier == 0.0 && m_barrierLow > 0.0 && m_barrierLow < S && S < m_barrierUp) {
        const double l = std::log(m_barrierUp / m_barrierLow), x = std::log(S / m_barrierLow);
        const double m = ((m_domesticRate - m_foreignRate) - sigma * sigma / 2.0) / (sigma * sigma);
        double sum = 0.0;
        for (int n = 1; n <= 20; ++n) {
            const double k = n * std::numbers::pi / l;
            const double sine = std::sin(k * x);
            if (std::abs(sine) < 1e-15) continue;
            sum += std::exp(-0.5 * k * k * sigma * sigma * T) * (k / (k * k + m * m)) * (2.0 / l) * sine;
        }
        lambda = sum;
    }
    lambda = std::min(lambda, 1.0);
    return lambda <= 0.0 ? 0.0 : lambda;
}

double EuropeanBarrierVV_Fisher::priceKO_Fisher() const {
    const double S = m_spot, sigma = m_atmVolatility, h = kVolatilityBump, dS = S * kRelativeSpotBump;
    const double p0 = KnockOutBS(S, sigma), p1 = KnockOutBS(S, sigma + h), p2 = KnockOutBS(S, sigma + 2.0 * h);
    const double vega = (p1 - p0) / h;
    const double volga = ((p2 - p1) / h - vega) / h;
    const double vanna = ((KnockOutBS(S + dS, sigma + h) - KnockOutBS(S - dS, sigma + h)) / (2.0 * dS) -
                          (KnockOutBS(S + dS, sigma) - KnockOutBS(S - dS, sigma)) / (2.0 * dS)) / h;
    const double adjustment = vega * m_omega[0] + vanna * m_omega[1] + volga * m_omega[2];
    const double lambda = SurvivalProbability();
    const double scaled = lambda * adjustment;
    const double price = p0 + scaled;
    if (m_trace) {
        const Pivots& p = m_pivots;
        Trace("[Fisher-KO DEBUG]");
        Trace(fmt::format("  S = {}, T_del = {}, sigma_atm = {}, RR25 = {}, BF25 = {}", S, m_timeToDelivery, sigma,
                          m_riskReversal25, m_butterfly25));
        Trace(fmt::format("  K_atm = {}, K_25c = {}, K_25p = {}", p.strikeATM, p.strike25Call, p.strike25Put));
        Trace(fmt::format("  sigma_25c = {}, sigma_25p = {}", p.vol25Call, p.vol25Put));
        Trace("  vega  (ATM, RR, BF) = " + Triple({m_greeks[0][0], m_greeks[1][0], m_greeks[2][0]}));
        Trace("  vanna (ATM, RR, BF) = " + Triple({m_greeks[0][1], m_greeks[1][1], m_greeks[2][1]}));
        Trace("  volga (ATM, RR, BF) = " + Triple({m_greeks[0][2], m_greeks[1][2], m_greeks[2][2]}));
        Trace("  price at market (ATM, RR, BF) = " + Triple(m_pivotPricesMarket));
        Trace("  price at sigma_atm (ATM, RR, BF) = " + Triple(m_pivotPricesATM));
        Trace("  Y = " + Triple(m_costs));
        Trace("  Omega = " + Triple(m_omega));
        Trace(fmt::format("  lambda = {} (survival prob, no-touch)", lambda));
        Trace(fmt::format("  BS_KO = {}, vega_KO = {}, vanna_KO = {}, volga_KO = {}", p0, vega, vanna, volga));
        Trace(fmt::format("  adj_raw = {} ( = vega*Omega_atm + vanna*Omega_rr + volga*Omega_bf )", adjustment));
        Trace(fmt::format("  adj_scaled = {}", scaled));
        Trace(fmt::format("  KO_VV = {}", price));
        Trace(fmt::format("  KO_VV in pips = {}", price * 10000.0));
    }
    return price;
}

double EuropeanBarrierVV_Fisher::priceKI_Fisher() const {
    if (!IsKnockInType(m_barrierType)) ZEP_FAIL("priceKI_Fisher called on non-KI barrierType");
    const double knockOut = priceKO_Fisher();
    const double smileVolatility = SmileVolatility(m_strike);
    const double vanilla = BSVanilla(m_optionType, m_strike, smileVolatility, m_timeToExpiry, m_timeToDelivery,
                                     m_domesticRate, m_foreignRate, m_spot)
                               .Price();
    Trace("[Fisher-KI DEBUG] parity decomposition: KI = vanilla_smile - KO_VV");
    Trace("[Fisher-VanillaSmile DEBUG]");
    Trace(fmt::format("  sigma_K = {}", smileVolatility));
    Trace(fmt::format("  vanilla_smile = {} (no VV adjustment applied ? smile vol already in price)", vanilla));
    return vanilla - knockOut;
}

double EuropeanBarrierVV_Fisher::Price() const {
    return IsKnockInType(m_barrierType) ? priceKI_Fisher() : priceKO_Fisher();
}

}  // namespace zep
