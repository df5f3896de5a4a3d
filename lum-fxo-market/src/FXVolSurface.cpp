#include "lum-fxo-market/FXVolSurface.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <optional>
#include <regex>
#include <stdexcept>

#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/UserTextRegex.hpp"
#include "lum-closed-form/NormalDistribution.hpp"
#include "lum-solvers/Bisection.hpp"

namespace zep {

namespace {

constexpr double kNoVolatility = std::numeric_limits<double>::quiet_NaN();
// The delta pillars a market-form quote set can carry, in percent.
constexpr int kQuotedDeltas[] = {25, 10, 5, 2};

std::string Trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

// Pillars run from the far put wing through at-the-money to the far call wing, the order in
// which their strikes rise: a put's strike rises with |delta|, a call's falls with it.
double StrikeOrderKey(double delta) {
    if (delta < 0.0) return std::fabs(delta) - 1.0;
    if (delta > 0.0) return 1.0 - delta;
    return 0.0;
}

std::string PillarLabel(double delta) {
    if (delta == 0.0) return "ATM";
    const long percent = std::lround(std::fabs(delta) * 100.0);
    return std::to_string(percent) + (delta < 0.0 ? "P" : "C");
}

// The number in front of a pillar letter, or nothing when the text is not a plain number.
std::optional<double> NumberBefore(const std::string& text, std::size_t letter) {
    const std::string number = text.substr(0, letter);
    if (number.empty()) return std::nullopt;
    char* end = nullptr;
    const double value = std::strtod(number.c_str(), &end);
    if (end != number.c_str() + number.size() || !std::isfinite(value)) return std::nullopt;
    return value;
}

// The delta coordinate of the delta-space modes: N(-d1), the size of the forward put delta,
// which rises from 0 to 1 with the strike.
double DeltaCoordinate(double logMoneyness, double vol, double time) {
    const double sigmaRootT = vol * std::sqrt(time);
    return NormalCdf((logMoneyness - 0.5 * sigmaRootT * sigmaRootT) / sigmaRootT);
}

std::vector<Date> DatesFromTenors(const Date& referenceDate, const std::vector<Period>& tenors) {
    std::vector<Date> dates;
    dates.reserve(tenors.size());
    for (const Period& tenor : tenors) dates.push_back(referenceDate + tenor);
    return dates;
}

}  // namespace

// ---- construction ---------------------------------------------------------------------------

FXVolSurface::FXVolSurface(const Date& referenceDate, const Date& spotDate, double spot,
                           const std::vector<Period>& tenors,
                           const std::vector<std::string>& deltaStrings,
                           const std::vector<std::vector<double>>& vols,
                           boost::shared_ptr<const YieldCurve> domesticCurve,
                           boost::shared_ptr<const YieldCurve> foreignCurve,
                           const FXVolConventions& conventions, int smileInterpolation,
                           const std::vector<double>& smileParameters)
    : FXVolSurface(referenceDate, spotDate, spot, DatesFromTenors(referenceDate, tenors),
                   deltaStrings, vols, std::move(domesticCurve), std::move(foreignCurve),
                   conventions, smileInterpolation, smileParameters, false,
                   "Tenors/Volatilities not same size!") {}

FXVolSurface::FXVolSurface(const Date& referenceDate, const Date& spotDate, double spot,
                           const std::vector<Date>& maturityDates,
                           const std::vector<std::string>& deltaStrings,
                           const std::vector<std::vector<double>>& vols,
                           boost::shared_ptr<const YieldCurve> domesticCurve,
                           boost::shared_ptr<const YieldCurve> foreignCurve,
                           const FXVolConventions& conventions, int smileInterpolation,
                           const std::vector<double>& smileParameters)
    : FXVolSurface(referenceDate, spotDate, spot, maturityDates, deltaStrings, vols,
                   std::move(domesticCurve), std::move(foreignCurve), conventions,
                   smileInterpolation, smileParameters, false,
                   "MaturityDates/Volatilities not same size!") {}

boost::shared_ptr<FXVolSurface> FXVolSurface::FromPillars(
    const Date& referenceDate, const Date& spotDate, double spot,
    const std::vector<Date>& maturityDates, const std::vector<std::string>& pillarLabels,
    const std::vector<std::vector<double>>& vols, boost::shared_ptr<const YieldCurve> domesticCurve,
    boost::shared_ptr<const YieldCurve> foreignCurve, const FXVolConventions& conventions,
    int smileInterpolation, const std::vector<double>& smileParameters) {
    return boost::shared_ptr<FXVolSurface>(new FXVolSurface(
        referenceDate, spotDate, spot, maturityDates, pillarLabels, vols, std::move(domesticCurve),
        std::move(foreignCurve), conventions, smileInterpolation, smileParameters, true,
        "term size not same with vols!"));
}

FXVolSurface::FXVolSurface(const Date& referenceDate, const Date& spotDate, double spot,
                           const std::vector<Date>& expiryDates,
                           const std::vector<std::string>& deltaStrings,
                           const std::vector<std::vector<double>>& vols,
                           boost::shared_ptr<const YieldCurve> domesticCurve,
                           boost::shared_ptr<const YieldCurve> foreignCurve,
                           const FXVolConventions& conventions, int smileInterpolation,
                           const std::vector<double>& smileParameters, bool pillarForm,
                           const char* expirySizeMessage)
    : m_referenceDate(referenceDate), m_spotDate(spotDate), m_spot(spot),
      m_domesticCurve(std::move(domesticCurve)), m_foreignCurve(std::move(foreignCurve)),
      m_deltaStrings(deltaStrings), m_quotes(vols), m_conventions(conventions),
      m_smileMode(smileInterpolation), m_smileParameters(smileParameters), m_pillarForm(pillarForm) {
    CheckParameters(referenceDate, spotDate, spot, expiryDates.size(), deltaStrings, vols,
                    expirySizeMessage,
                    pillarForm ? "delta size not same with vols!"
                               : "DeltaStrings/Tenors/Volatilities size not match!");
    ZEP_REQUIRE(m_domesticCurve, "Domestic YieldCurve is Null!");
    ZEP_REQUIRE(m_foreignCurve, "Foreign YieldCurve is Null!");
    switch (smileInterpolation) {
        case SmileLinear: case SmileCubicSpline: case SmileSVI: case SmileSABR: break;
        case SmileVarianceOnLogMoneyness:
            m_ordinate = Ordinate::TotalVariance;
            break;
        case SmileStrikeNaturalSpline: case SmileStrikeExtendedSpline:
            m_abscissa = Abscissa::Strike;
            break;
        case SmileVarianceExtendedSpline:
            m_ordinate = Ordinate::TotalVariance;
            break;
        case SmileMurexLogMoneyness:
            m_abscissa = Abscissa::StandardisedMoneyness;
            break;
        case SmileOriginalLum: case SmileForwardDeltaNaturalSpline:
            m_abscissa = Abscissa::SimpleDelta;
            break;
        case SmileModifiedLum:
            m_abscissa = Abscissa::SimpleDelta;
            m_ordinate = Ordinate::TotalVariance;
            break;
        case SmileForwardDeltaImplicitSpline:
            m_abscissa = Abscissa::ImplicitDelta;
            break;
        case SmileInvertedSurface:
            m_abscissa = Abscissa::InvertedStrike;
            break;
        case SmileInvertedSurfaceLogMoneyness:
            m_abscissa = Abscissa::InvertedLogMoneyness;
            break;
        case SmileVannaVolga: ZEP_FAIL("No support for VannaVolga!");
        default: ZEP_FAIL("Wrong type smile interpolation!");
    }
    if (smileInterpolation == SmileSVI)
        ZEP_REQUIRE(smileParameters.empty() || smileParameters.size() == 5,
                    "Wrong InitialGuess, SVI need 5 params!");
    if (smileInterpolation == SmileSABR)
        ZEP_REQUIRE(smileParameters.empty() || smileParameters.size() == 4,
                    "Invalid params size in SABR interpolation.");

    if (pillarForm) {
        for (const std::string& label : deltaStrings) {
            const double delta = DeltaStringToValue(label);
            ZEP_REQUIRE(std::find(m_labelDeltas.begin(), m_labelDeltas.end(), delta) == m_labelDeltas.end(),
                        "Pillar label '" + label + "' appears twice.");
            m_labelDeltas.push_back(delta);
        }
        const auto has = [&](double delta) {
            return std::find(m_labelDeltas.begin(), m_labelDeltas.end(), delta) != m_labelDeltas.end();
        };
        ZEP_REQUIRE(has(0.25) && has(-0.25), "25C/25P is a must!");
    } else {
        m_columns = processDeltaStrings(deltaStrings);
    }

    const std::size_t conventionCount = conventions.expiryDates.size();
    if (!conventions.deltaTypes.empty() || !conventions.premiumAdjusted.empty() ||
        !conventions.atmTypes.empty() || conventionCount != 0) {
        for (std::size_t size : {conventions.deltaTypes.size(), conventions.premiumAdjusted.size(),
                                 conventions.atmTypes.size()})
            ZEP_REQUIRE(conventionCount != 0 && size == conventionCount,
                        "Expiry dates and delta types must be of the same size and not empty.");
        for (std::size_t i = 0; i < conventionCount; ++i)
            CheckFXConventions(conventions.deltaTypes[i], conventions.premiumAdjusted[i],
                               conventions.atmTypes[i]);
    }
    processWingRatios(conventions, referenceDate);
    m_wingDates = DatesFromTenors(referenceDate, conventions.wingTenors);
    m_spotTime = m_dayCounter.YearFraction(referenceDate, spotDate);
    m_spotDomesticDiscount = m_domesticCurve->DiscountFactor(m_spotTime);
    m_spotForeignDiscount = m_foreignCurve->DiscountFactor(m_spotTime);

    m_expiries.resize(expiryDates.size());
    for (std::size_t i = 0; i < expiryDates.size(); ++i) {
        Expiry& expiry = m_expiries[i];
        expiry.date = expiryDates[i];
        ZEP_REQUIRE(expiryDates[i] > referenceDate,
                    "Expiry '" + expiryDates[i].ToString() + "' must be after the reference date '" +
                        referenceDate.ToString() + "'.");
        if (i > 0)
            ZEP_REQUIRE(expiryDates[i] > expiryDates[i - 1],
                        "Expiries must be strictly increasing: '" + expiryDates[i].ToString() +
                            "' does not come after '" + expiryDates[i - 1].ToString() + "'.");
        for (std::size_t column = 0; column < vols[i].size(); ++column)
            ZEP_REQUIRE(std::isfinite(vols[i][column]),
                        "Volatility quote '" + deltaStrings[column] + "' of expiry '" +
                            expiry.date.ToString() + "' is not a number.");
        expiry.time = m_dayCounter.YearFraction(referenceDate, expiry.date);
        const FXDeltaMarket market = DeltaMarket(expiry.time);
        expiry.forward = market.forward;
        expiry.foreignDiscount = market.foreignDiscount;
        expiry.deltaType = findClosestDeltaType(expiry.date);
        expiry.premiumAdjusted = findClosestPremiumAdjusted(expiry.date);
        expiry.atmType = findClosestATMVolType(expiry.date);

        std::vector<double> deltas, pillarVols;
        PillarsOf(vols[i], deltas, pillarVols);
        if (!m_wingDates.empty()) {
            for (bool isCall : {false, true}) {
                const double wing = isCall ? 0.10 : -0.10;
                const auto at = std::find(deltas.begin(), deltas.end(), wing);
                if (at == deltas.end()) continue;
                pillarVols[at - deltas.begin()] = ExtendWing(
                    deltas, pillarVols, findClosestWingRatio(expiry.date, isCall), isCall);
            }
        }
        for (std::size_t k = 0; k < deltas.size(); ++k)
            ZEP_REQUIRE(pillarVols[k] > 0.0,
                        "Volatility of pillar '" + PillarLabel(deltas[k]) + "' of expiry '" +
                            expiry.date.ToString() + "' must be positive, got " +
                            std::to_string(pillarVols[k]) + ".");
        std::vector<std::size_t> order(deltas.size());
        std::iota(order.begin(), order.end(), 0);
        std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
            return StrikeOrderKey(deltas[a]) < StrikeOrderKey(deltas[b]);
        });
        expiry.atmVol = kNoVolatility;
        for (std::size_t k : order) {
            const double delta = deltas[k], vol = pillarVols[k];
            const double strike =
                delta == 0.0 ? FXAtmStrike(vol, market, expiry.premiumAdjusted, expiry.atmType)
                             : FXStrikeFromDelta(delta, vol, market, expiry.deltaType,
                                                 expiry.premiumAdjusted);
            if (!expiry.strikes.empty())
                ZEP_REQUIRE(strike > expiry.strikes.back(),
                            "Pillar strikes of expiry '" + expiry.date.ToString() +
                                "' do not rise from put to call wing at pillar '" +
                                PillarLabel(delta) + "'.");
            if (delta == 0.0) expiry.atmVol = vol;
            expiry.deltas.push_back(delta);
            expiry.vols.push_back(vol);
            expiry.strikes.push_back(strike);
        }
        BuildSmile(expiry);
        m_times.push_back(expiry.time);
    }
}

void FXVolSurface::CheckParameters(const Date& referenceDate, const Date& spotDate, double spot,
                                   std::size_t expiryCount,
                                   const std::vector<std::string>& deltaStrings,
                                   const std::vector<std::vector<double>>& vols,
                                   const char* expirySizeMessage, const char* columnSizeMessage) {
    ZEP_REQUIRE(spot > 0.0 && std::isfinite(spot), "MktVolSurface: no spot price!");
    ZEP_REQUIRE(!(spotDate < referenceDate), "Spot Date should be later than Reference Date!");
    ZEP_REQUIRE(expiryCount > 0 && !vols.empty() && !deltaStrings.empty(), "Check input data size!");
    ZEP_REQUIRE(vols.size() == expiryCount, expirySizeMessage);
    for (const auto& row : vols) ZEP_REQUIRE(row.size() == deltaStrings.size(), columnSizeMessage);
}

FXVolSurface::QuoteColumns FXVolSurface::processDeltaStrings(
    const std::vector<std::string>& deltaStrings) {
    static const std::regex quote = UserTextRegex(R"(([-+]?\d*\.?\d+)\s*(RR|BF)|(RR|BF)\s*([-+]?\d*\.?\d+))");
    QuoteColumns columns;
    for (std::size_t column = 0; column < deltaStrings.size(); ++column) {
        const std::string label = Upper(Trimmed(deltaStrings[column]));
        const auto duplicate = [&] {
            ZEP_FAIL("Quote label '" + deltaStrings[column] + "' appears twice.");
        };
        std::smatch match;
        if (label == "ATM") {
            if (columns.atm >= 0) duplicate();
            columns.atm = static_cast<int>(column);
        } else if (std::regex_match(label, match, quote)) {
            const std::string number = match[1].matched ? match[1].str() : match[4].str();
            const std::string kind = match[2].matched ? match[2].str() : match[3].str();
            // Read as a double and compared exactly: "25.0RR" is the 25-delta column, "25.5RR" none.
            const double percent = std::strtod(number.c_str(), nullptr);
            const auto quoted = std::find(std::begin(kQuotedDeltas), std::end(kQuotedDeltas), percent);
            ZEP_REQUIRE(quoted != std::end(kQuotedDeltas), "not valid RR/BF/SS delta!");
            const int delta = *quoted;
            auto& kindColumns = kind == "RR" ? columns.riskReversals : columns.butterflies;
            if (kindColumns.count(delta) != 0) duplicate();
            kindColumns[delta] = static_cast<int>(column);
        } else {
            ZEP_FAIL("Unknown deltaString!");
        }
    }
    ZEP_REQUIRE(columns.butterflies.count(25) != 0 && columns.riskReversals.count(25) != 0,
                "25BF/25RR is a must!");
    ZEP_REQUIRE(columns.atm >= 0, "Not found ATM vol!");
    return columns;
}

void FXVolSurface::processWingRatios(const FXVolConventions& conventions, const Date& referenceDate) {
    if (conventions.wingTenors.empty() && conventions.putWingRatios.empty() &&
        conventions.callWingRatios.empty())
        return;
    ZEP_REQUIRE(conventions.putWingRatios.size() == conventions.wingTenors.size() &&
                    conventions.callWingRatios.size() == conventions.wingTenors.size(),
                "Put/Call Wing Ratios/tenors size not match!");
    for (std::size_t i = 0; i < conventions.wingTenors.size(); ++i)
        ZEP_REQUIRE(std::isfinite(conventions.putWingRatios[i]) &&
                        std::isfinite(conventions.callWingRatios[i]),
                    "Wing ratio of tenor '" + conventions.wingTenors[i].Text() + "' from '" +
                        referenceDate.ToString() + "' is not a number.");
}

double FXVolSurface::ExtendWing(const std::vector<double>& deltas, const std::vector<double>& vols,
                                double wingRatio, bool isCall) {
    if (deltas.size() != vols.size()) throw std::invalid_argument("Deltas and vols sizes do not match!");
    if (deltas.empty()) throw std::invalid_argument("Deltas vector is empty!");
    // Exact comparison on purpose: only the quoted pillars themselves anchor the wing.
    const double delta25 = isCall ? 0.25 : -0.25, delta10 = isCall ? 0.10 : -0.10;
    const auto at25 = std::find(deltas.begin(), deltas.end(), delta25);
    const auto at10 = std::find(deltas.begin(), deltas.end(), delta10);
    if (at25 == deltas.end() || at10 == deltas.end())
        throw std::runtime_error("Required delta values (25d or 10d) not found!");
    const double vol25 = vols[at25 - deltas.begin()], vol10 = vols[at10 - deltas.begin()];
    return vol25 + wingRatio * (vol10 - vol25);
}

double FXVolSurface::DeltaStringToValue(const std::string& deltaString) {
    const std::string label = Upper(Trimmed(deltaString));
    const auto put = label.find('P', 1);
    if (put != std::string::npos) {
        const auto number = NumberBefore(label, put);
        ZEP_REQUIRE(number && *number > 0.0, "Delta string wrong format!");
        return -*number / 100.0;
    }
    const auto call = label.find('C');
    if (call != std::string::npos) {
        const auto number = NumberBefore(label, call);
        ZEP_REQUIRE(number && *number >= 0.0, "Delta string wrong format!");
        return *number / 100.0;
    }
    if (label.find('M') != std::string::npos) return 0.0;
    ZEP_FAIL("Delta string wrong format!");
}

void FXVolSurface::PillarsOf(const std::vector<double>& row, std::vector<double>& deltas,
                             std::vector<double>& vols) const {
    if (m_pillarForm) {
        deltas = m_labelDeltas;
        vols = row;
        return;
    }
    // Market strangle convention: the butterfly lifts both wings, the risk reversal splits them.
    const double atm = row[m_columns.atm];
    deltas.push_back(0.0);
    vols.push_back(atm);
    for (int percent : kQuotedDeltas) {
        const auto rr = m_columns.riskReversals.find(percent);
        const auto bf = m_columns.butterflies.find(percent);
        if (rr == m_columns.riskReversals.end() || bf == m_columns.butterflies.end()) continue;
        const double riskReversal = row[rr->second], butterfly = row[bf->second];
        deltas.push_back(-percent / 100.0);
        vols.push_back(atm + butterfly - riskReversal / 2.0);
        deltas.push_back(percent / 100.0);
        vols.push_back(atm + butterfly + riskReversal / 2.0);
    }
}

void FXVolSurface::BuildSmile(Expiry& expiry) const {
    std::vector<double> logMoneyness, variances;
    for (std::size_t k = 0; k < expiry.strikes.size(); ++k) {
        logMoneyness.push_back(std::log(expiry.strikes[k] / expiry.forward));
        variances.push_back(expiry.vols[k] * expiry.vols[k] * expiry.time);
    }
    switch (m_smileMode) {
        case SmileSVI:
            expiry.svi = SviSmile::Fit(logMoneyness, variances, expiry.time, m_smileParameters);
            return;
        case SmileSABR:
            expiry.sabr = SabrSmile::Fit(expiry.strikes, expiry.vols, expiry.forward, expiry.time,
                                         m_smileParameters);
            return;
        default: break;
    }
    std::vector<double> x;
    switch (m_abscissa) {
        case Abscissa::Strike: x = expiry.strikes; break;
        case Abscissa::StandardisedMoneyness:
            ZEP_REQUIRE(!std::isnan(expiry.atmVol), "Not found ATM vol!");
            for (double k : logMoneyness) x.push_back(k / std::sqrt(ExpiryAtmVariance(expiry)));
            break;
        case Abscissa::SimpleDelta:
            ZEP_REQUIRE(!std::isnan(expiry.atmVol), "Not found ATM vol!");
            for (double k : logMoneyness) x.push_back(DeltaCoordinate(k, expiry.atmVol, expiry.time));
            break;
        case Abscissa::ImplicitDelta: case Abscissa::InvertedStrike: case Abscissa::InvertedLogMoneyness:
            for (std::size_t i = 0; i < logMoneyness.size(); ++i)
                x.push_back(DeltaCoordinate(logMoneyness[i], expiry.vols[i], expiry.time));
            break;
        default: x = logMoneyness; break;
    }
    for (std::size_t i = 1; i < x.size(); ++i)
        ZEP_REQUIRE(x[i] > x[i - 1], "Pillar deltas of expiry '" + expiry.date.ToString() +
                                         "' do not rise with the strike: the smile is too steep "
                                         "for a delta-coordinate mode.");
    if (m_abscissa == Abscissa::InvertedStrike || m_abscissa == Abscissa::InvertedLogMoneyness)
        expiry.inverse = Interpolation<double, double, double>(
            x, m_abscissa == Abscissa::InvertedStrike ? expiry.strikes : logMoneyness,
            CubicInterpolation, FlatExtrapolation);
    const std::vector<double>& y = m_ordinate == Ordinate::TotalVariance ? variances : expiry.vols;
    switch (m_smileMode) {
        case SmileLinear: case SmileOriginalLum: case SmileModifiedLum:
            expiry.spline = Interpolation<double, double, double>(x, y, LinearInterpolation,
                                                                  FlatExtrapolation);
            break;
        case SmileStrikeExtendedSpline:
        case SmileVarianceExtendedSpline:
            // Extended: the clamped spline leaves each end with the slope of its end segment and
            // carries on along it.
            expiry.spline = Interpolation<double, double, double>(x, y, ClampedCubicInterpolation,
                                                                  LinearExtrapolation);
            expiry.spline.autoSetBoundaryDerivatives();
            break;
        default:
            expiry.spline = Interpolation<double, double, double>(x, y, CubicInterpolation,
                                                                  FlatExtrapolation);
            break;
    }
}

// ---- conventions ----------------------------------------------------------------------------

std::size_t FXVolSurface::ClosestConvention(const Date& expiry, const std::vector<Date>& dates,
                                            std::size_t listSize, const char* message) const {
    ZEP_REQUIRE(!dates.empty() && dates.size() == listSize, message);
    std::size_t closest = 0;
    for (std::size_t i = 1; i < dates.size(); ++i)
        if (std::abs(dates[i].SerialNumber() - expiry.SerialNumber()) <
            std::abs(dates[closest].SerialNumber() - expiry.SerialNumber()))
            closest = i;
    return closest;
}

int FXVolSurface::findClosestDeltaType(const Date& expiry) const {
    if (m_conventions.expiryDates.empty()) return SpotDelta;
    return m_conventions.deltaTypes[ClosestConvention(
        expiry, m_conventions.expiryDates, m_conventions.deltaTypes.size(),
        "Expiry dates and delta types must be of the same size and not empty.")];
}

int FXVolSurface::findClosestPremiumAdjusted(const Date& expiry) const {
    if (m_conventions.expiryDates.empty()) return PremiumExcluded;
    return m_conventions.premiumAdjusted[ClosestConvention(
        expiry, m_conventions.expiryDates, m_conventions.premiumAdjusted.size(),
        "Expiry dates and delta types must be of the same size and not empty.")];
}

int FXVolSurface::findClosestATMVolType(const Date& expiry) const {
    if (m_conventions.expiryDates.empty()) return ATMDeltaNeutral;
    return m_conventions.atmTypes[ClosestConvention(
        expiry, m_conventions.expiryDates, m_conventions.atmTypes.size(),
        "Expiry dates and delta types must be of the same size and not empty.")];
}

double FXVolSurface::findClosestWingRatio(const Date& expiry, bool isCall) const {
    const auto& ratios = isCall ? m_conventions.callWingRatios : m_conventions.putWingRatios;
    return ratios[ClosestConvention(expiry, m_wingDates, ratios.size(),
                                    "Expiry dates and wing ratios must be of the same size and not empty.")];
}

// ---- reading the surface --------------------------------------------------------------------

double FXVolSurface::TimeToExpiry(const Date& expiry) const {
    return m_dayCounter.YearFraction(m_referenceDate, expiry);
}

FXDeltaMarket FXVolSurface::DeltaMarket(double time) const {
    const double foreignDiscount = m_foreignCurve->DiscountFactor(time) / m_spotForeignDiscount;
    const double domesticDiscount = m_domesticCurve->DiscountFactor(time) / m_spotDomesticDiscount;
    return {m_spot, m_spot * foreignDiscount / domesticDiscount, foreignDiscount, time};
}

double FXVolSurface::Forward(double timeToExpiry) const { return DeltaMarket(timeToExpiry).forward; }

double FXVolSurface::ExpiryAtmVariance(const Expiry& expiry) const {
    return expiry.atmVol * expiry.atmVol * expiry.time;
}

double FXVolSurface::GetATMVol(const Date& expiry) const { return GetATMVol(TimeToExpiry(expiry)); }

double FXVolSurface::GetATMVol(double timeToExpiry) const {
    ZEP_REQUIRE(!std::isnan(m_expiries.front().atmVol), "Not found atm vol!");
    const auto after = std::upper_bound(m_times.begin(), m_times.end(), timeToExpiry);
    if (after == m_times.begin()) return m_expiries.front().atmVol;
    if (after == m_times.end()) return m_expiries.back().atmVol;
    const Expiry& left = m_expiries[after - m_times.begin() - 1];
    const Expiry& right = m_expiries[after - m_times.begin()];
    if (timeToExpiry == left.time) return left.atmVol;
    const double weight = (timeToExpiry - left.time) / (right.time - left.time);
    const double variance =
        ExpiryAtmVariance(left) + weight * (ExpiryAtmVariance(right) - ExpiryAtmVariance(left));
    return std::sqrt(variance / timeToExpiry);
}

double FXVolSurface::SmileVariance(const Expiry& expiry, double logMoneyness) const {
    if (expiry.svi) return std::max(expiry.svi->TotalVariance(logMoneyness), 0.0);
    if (expiry.sabr) {
        const double vol =
            expiry.sabr->Volatility(expiry.forward * std::exp(logMoneyness), expiry.forward, expiry.time);
        return vol * vol * expiry.time;
    }
    const double value = SplineValue(expiry, logMoneyness);
    // At one expiry flat variance is flat volatility; the extended modes carry variance (or
    // volatility) on along the end slopes, floored where a steep wing would turn it negative.
    if (m_ordinate == Ordinate::TotalVariance) return std::max(value, 0.0);
    return std::max(value, 0.0) * std::max(value, 0.0) * expiry.time;
}

double FXVolSurface::SplineValue(const Expiry& expiry, double logMoneyness) const {
    switch (m_abscissa) {
        case Abscissa::Strike: return expiry.spline.Evaluate(expiry.forward * std::exp(logMoneyness));
        case Abscissa::StandardisedMoneyness:
            return expiry.spline.Evaluate(logMoneyness / std::sqrt(ExpiryAtmVariance(expiry)));
        case Abscissa::SimpleDelta:
            return expiry.spline.Evaluate(DeltaCoordinate(logMoneyness, expiry.atmVol, expiry.time));
        case Abscissa::ImplicitDelta: {
            // The coordinate needs the volatility it gives: iterate from the middle pillar's
            // volatility; a smile's slope in delta is gentle, so the iteration contracts quickly.
            double vol = expiry.vols[expiry.vols.size() / 2];
            for (int pass = 0; pass < 200; ++pass) {
                const double next = expiry.spline.Evaluate(DeltaCoordinate(logMoneyness, vol, expiry.time));
                if (std::fabs(next - vol) <= 1e-14 * next) return next;
                vol = next;
            }
            ZEP_FAIL("The volatility of the strike does not settle on the delta smile.");
        }
        case Abscissa::InvertedStrike: case Abscissa::InvertedLogMoneyness: {
            const double target = m_abscissa == Abscissa::InvertedStrike
                                      ? expiry.forward * std::exp(logMoneyness) : logMoneyness;
            const auto& nodes = expiry.inverse.X();
            const auto& values = expiry.inverse.Y();
            if (target <= values.front()) return expiry.spline.Evaluate(nodes.front());
            if (target >= values.back()) return expiry.spline.Evaluate(nodes.back());
            Bisection bisection(1e-15, 200);
            bisection.SetDomain(nodes.front(), nodes.back());
            const double u = bisection.Solve([&](double x) { return expiry.inverse.Evaluate(x) - target; });
            return expiry.spline.Evaluate(u);
        }
        default: return expiry.spline.Evaluate(logMoneyness);
    }
}

double FXVolSurface::GetVolatility(const Date& expiry, double strike) const {
    return GetVolatility(TimeToExpiry(expiry), strike);
}

double FXVolSurface::GetVolatility(double timeToExpiry, double strike) const {
    ZEP_REQUIRE(strike > 0.0 && std::isfinite(strike),
                "Strike must be positive, got " + std::to_string(strike) + ".");
    ZEP_REQUIRE(std::isfinite(timeToExpiry), "Time to expiry is not a number.");
    const auto after = std::upper_bound(m_times.begin(), m_times.end(), timeToExpiry);
    // Before the first and after the last expiry the smile of the end expiry holds, flat in
    // volatility at the same log-forward-moneyness.
    if (after == m_times.begin() || after == m_times.end()) {
        const Expiry& end = after == m_times.begin() ? m_expiries.front() : m_expiries.back();
        const double forward = timeToExpiry == end.time || timeToExpiry <= 0.0
                                   ? end.forward : Forward(timeToExpiry);
        return std::sqrt(SmileVariance(end, std::log(strike / forward)) / end.time);
    }
    const Expiry& left = m_expiries[after - m_times.begin() - 1];
    const Expiry& right = m_expiries[after - m_times.begin()];
    if (timeToExpiry == left.time)
        return std::sqrt(SmileVariance(left, std::log(strike / left.forward)) / left.time);
    const double logMoneyness = std::log(strike / Forward(timeToExpiry));
    const double leftVariance = SmileVariance(left, logMoneyness);
    const double rightVariance = SmileVariance(right, logMoneyness);
    const double weight = (timeToExpiry - left.time) / (right.time - left.time);
    return std::sqrt((leftVariance + weight * (rightVariance - leftVariance)) / timeToExpiry);
}

void FXVolSurface::GetVolatility(const double* timesToExpiry, const double* strikes, double* out,
                                 std::size_t count) const {
    for (std::size_t i = 0; i < count; ++i) out[i] = GetVolatility(timesToExpiry[i], strikes[i]);
}

template <class StrikeForVolatility>
double FXVolSurface::SmileFixedPoint(double time, double start,
                                     const StrikeForVolatility& strikeFor) const {
    // The strike depends on its own smile volatility: iterate until it stops moving. Pillar
    // strikes are fixed points already, so they come back after one pass.
    double strike = start;
    for (int pass = 0; pass < 200; ++pass) {
        const double next = strikeFor(GetVolatility(time, strike));
        if (std::fabs(next - strike) <= 1e-14 * strike) return next;
        strike = next;
    }
    ZEP_FAIL("The strike of the delta does not settle on the smile.");
}

double FXVolSurface::GetStrike(const Date& expiry, const std::string& deltaString) const {
    static const std::regex pillar = UserTextRegex(R"(\s*(ATMM?|\d+(\.\d+)?\s*[PC])\s*)", std::regex::icase);
    ZEP_REQUIRE(std::regex_match(deltaString, pillar), "DeltaString not suport in GetStrike!");
    return GetStrike(expiry, DeltaStringToValue(deltaString), findClosestDeltaType(expiry),
                     findClosestPremiumAdjusted(expiry), findClosestATMVolType(expiry));
}

double FXVolSurface::GetStrike(const Date& expiry, double delta, int deltaType, int premiumAdjusted,
                               int atmType) const {
    CheckFXConventions(deltaType, premiumAdjusted, atmType);
    ZEP_REQUIRE(std::fabs(delta) < 1.0 && std::isfinite(delta),
                "DeltaString not suport in GetStrike!");
    const double time = TimeToExpiry(expiry);
    ZEP_REQUIRE(time > 0.0, "Expiry '" + expiry.ToString() + "' must be after the reference date '" +
                                m_referenceDate.ToString() + "'.");
    const FXDeltaMarket market = DeltaMarket(time);
    if (delta == 0.0)
        return SmileFixedPoint(time, market.forward, [&](double vol) {
            return FXAtmStrike(vol, market, premiumAdjusted, atmType);
        });
    return SmileFixedPoint(time, market.forward, [&](double vol) {
        return FXStrikeFromDelta(delta, vol, market, deltaType, premiumAdjusted);
    });
}

// ---- arbitrage ------------------------------------------------------------------------------

std::vector<ArbitrageViolation> FXVolSurface::ArbitrageReport() const {
    constexpr int kGridPoints = 201;
    std::vector<ArbitrageViolation> violations;
    const auto callPrice = [](double forward, double strike, double variance) {
        const double sd = std::sqrt(variance);
        const double d1 = (std::log(forward / strike) + 0.5 * variance) / sd;
        return forward * NormalCdf(d1) - strike * NormalCdf(d1 - sd);
    };
    for (std::size_t i = 0; i < m_expiries.size(); ++i) {
        const Expiry& expiry = m_expiries[i];
        // Between the outer pillars only: where a smile turns flat beyond its last quoted delta
        // the join is a kink by construction, and the desk has chosen that convention.
        const double first = expiry.strikes.front();
        const double step = (expiry.strikes.back() - first) / (kGridPoints - 1);
        // Butterfly: undiscounted call prices must be convex in the strike. Report only the
        // worst point of each run of breaches, so one kink reads as one entry.
        double worst = 0.0, worstStrike = 0.0;
        for (int j = 1; j + 1 < kGridPoints; ++j) {
            const double strike = first + j * step;
            double prices[3];
            for (int d = -1; d <= 1; ++d) {
                const double k = strike + d * step;
                prices[d + 1] = callPrice(expiry.forward, k, SmileVariance(expiry, std::log(k / expiry.forward)));
            }
            const double convexity = (prices[0] - 2.0 * prices[1] + prices[2]) / (step * step);
            const bool breach = convexity < -1e-9;
            if (breach && convexity < worst) {
                worst = convexity;
                worstStrike = strike;
            }
            if ((!breach || j + 2 == kGridPoints) && worst < 0.0) {
                violations.push_back({expiry.date, worstStrike, "butterfly", -worst});
                worst = 0.0;
            }
        }
        // Calendar: total variance must not fall towards the next expiry.
        if (i + 1 == m_expiries.size()) continue;
        const Expiry& next = m_expiries[i + 1];
        double drop = 0.0, dropStrike = 0.0;
        for (int j = 0; j < kGridPoints; ++j) {
            const double strike = first + j * step;
            const double k = std::log(strike / expiry.forward);
            const double fall = SmileVariance(expiry, k) - SmileVariance(next, k);
            if (fall > 1e-12 && fall > drop) {
                drop = fall;
                dropStrike = strike;
            }
        }
        if (drop > 0.0) violations.push_back({next.date, dropStrike * next.forward / expiry.forward, "calendar", drop});
    }
    return violations;
}

// ---- accessors ------------------------------------------------------------------------------

std::vector<Date> FXVolSurface::ExpiryDates() const {
    std::vector<Date> dates;
    for (const Expiry& expiry : m_expiries) dates.push_back(expiry.date);
    return dates;
}

std::vector<double> FXVolSurface::ExpiryTimes() const { return m_times; }

const std::vector<double>& FXVolSurface::PillarDeltas(std::size_t expiry) const {
    ZEP_REQUIRE(expiry < m_expiries.size(), "Expiry index out of range.");
    return m_expiries[expiry].deltas;
}

const std::vector<double>& FXVolSurface::PillarVolatilities(std::size_t expiry) const {
    ZEP_REQUIRE(expiry < m_expiries.size(), "Expiry index out of range.");
    return m_expiries[expiry].vols;
}

const std::vector<double>& FXVolSurface::PillarStrikes(std::size_t expiry) const {
    ZEP_REQUIRE(expiry < m_expiries.size(), "Expiry index out of range.");
    return m_expiries[expiry].strikes;
}

std::vector<double> FXVolSurface::FittedParameters(std::size_t expiry) const {
    ZEP_REQUIRE(expiry < m_expiries.size(), "Expiry index out of range.");
    if (m_expiries[expiry].svi) return m_expiries[expiry].svi->Parameters();
    if (m_expiries[expiry].sabr) return m_expiries[expiry].sabr->Parameters();
    return {};
}

}  // namespace zep
