#include "lum-interest-rates/ZeroInflationCurve.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/RootFinders.hpp"

namespace zep {

namespace {

Date MonthStart(const Date& date) { return Date(1, date.Month(), date.Year()); }

std::string MonthText(const Date& date) {
    char text[16];
    std::snprintf(text, sizeof text, "%04d-%02d", static_cast<int>(date.Year()), static_cast<int>(date.Month()));
    return text;
}

}  // namespace

ZeroInflationCurve::ZeroInflationCurve(const Date& referenceDate, const InflationIndexConventions& conventions,
                                       const std::vector<Period>& tenors, const std::vector<double>& rates,
                                       const FixingStore& fixings, const std::vector<double>& seasonality)
    : m_referenceDate(referenceDate), m_conventions(conventions), m_logSeasonal(12, 0.0) {
    const std::string& index = conventions.index;
    ZEP_REQUIRE(!index.empty(), "ZeroInflationCurve: the index has no name");
    ZEP_REQUIRE(conventions.observationLag.Length() >= 0, "ZeroInflationCurve: the observation lag must not be negative");
    ZEP_REQUIRE(!tenors.empty(), "ZeroInflationCurve: no zero-coupon swap quotes");
    ZEP_REQUIRE(tenors.size() == rates.size(), "ZeroInflationCurve: one rate per tenor");
    for (const auto& [date, level] : fixings.FixingsOf(index)) {
        ZEP_REQUIRE(date.DayOfMonth() == 1, "ZeroInflationCurve: the fixing of index '" + index + "' on " +
                                                date.ToString() + " is not on the first day of its month");
        ZEP_REQUIRE(level > 0.0, "ZeroInflationCurve: the fixing of index '" + index + "' for month " +
                                     MonthText(date) + " is not positive");
        m_published[date.SerialNumber()] = level;
    }
    ZEP_REQUIRE(!m_published.empty(), "ZeroInflationCurve: no fixings of index '" + index + "'");
    if (!seasonality.empty()) {
        ZEP_REQUIRE(seasonality.size() == 12, "ZeroInflationCurve: seasonality needs 12 monthly factors, January to December");
        for (double factor : seasonality)
            ZEP_REQUIRE(std::isfinite(factor) && factor > 0.0, "ZeroInflationCurve: every seasonal factor must be positive");
        const double latest = seasonality[LatestFixingMonth().Month() - 1];
        for (std::size_t month = 0; month < 12; ++month) m_logSeasonal[month] = std::log(seasonality[month] / latest);
    }
    const auto published = [this](std::int32_t month) { return PublishedIndex(month); };
    // Every quote's base is the reference date's index, which must have been published.
    const double base = Interpolated(referenceDate, published);

    m_nodeSerials.push_back(m_published.rbegin()->first);
    m_nodeLogLevels.push_back(std::log(m_published.rbegin()->second));
    for (std::size_t k = 0; k < tenors.size(); ++k) {
        const std::string name = "the zero-coupon swap " + tenors[k].Text() + " quote";
        ZEP_REQUIRE(std::isfinite(rates[k]) && rates[k] > -1.0, "ZeroInflationCurve: " + name + " needs a rate above -1");
        const Date maturity = referenceDate + tenors[k];
        ZEP_REQUIRE(maturity > referenceDate, "ZeroInflationCurve: " + name + " has no tenor");
        // The last month the quote observes is the one whose level it fixes.
        const Date lagged = maturity + Period(-conventions.observationLag.Length(), conventions.observationLag.Units());
        Date pillar = MonthStart(lagged);
        if (conventions.interpolation == InflationInterpolation::Linear && maturity.DayOfMonth() != 1)
            pillar = pillar.Advance(1, Months);
        ZEP_REQUIRE(pillar.SerialNumber() > m_nodeSerials.back(),
                    "ZeroInflationCurve: " + name + " observes no month after " +
                        (k == 0 ? "the latest fixing" : "the " + tenors[k - 1].Text() + " quote's"));
        const double target = base * std::pow(1.0 + rates[k], SwapYears(referenceDate, maturity));
        m_nodeSerials.push_back(pillar.SerialNumber());
        m_nodeLogLevels.push_back(0.0);
        const auto mismatch = [&](double logLevel) {
            m_nodeLogLevels.back() = logLevel;
            return std::log(ReferenceIndex(maturity) / target);
        };
        // The level sits within a factor e^10 of the base for any rate a market would quote.
        const double around = std::log(target);
        try {
            m_nodeLogLevels.back() = BrentSolve(mismatch, around - 10.0, around + 10.0, {1e-15, 200});
        } catch (const Error& error) {
            ZEP_FAIL("ZeroInflationCurve: no index level reprices " + name + " (" + error.Message() + ")");
        }
    }
}

double ZeroInflationCurve::PublishedIndex(std::int32_t monthSerial) const {
    const auto found = m_published.find(monthSerial);
    if (found == m_published.end())
        ZEP_FAIL("Missing fixing of index '" + m_conventions.index + "' for month " + MonthText(Date(monthSerial)) + ".");
    return found->second;
}

double ZeroInflationCurve::ForecastIndex(std::int32_t monthSerial) const {
    // Log-linear between nodes; the last stretch's inflation continues beyond the last node.
    const auto upper = std::upper_bound(m_nodeSerials.begin() + 1, m_nodeSerials.end() - 1, double(monthSerial));
    const std::size_t k = static_cast<std::size_t>(upper - m_nodeSerials.begin());
    const double weight = (monthSerial - m_nodeSerials[k - 1]) / (m_nodeSerials[k] - m_nodeSerials[k - 1]);
    const double seasonal = m_logSeasonal[Date(monthSerial).Month() - 1];
    return std::exp(m_nodeLogLevels[k - 1] + weight * (m_nodeLogLevels[k] - m_nodeLogLevels[k - 1]) + seasonal);
}

double ZeroInflationCurve::MonthlyIndex(const Date& monthStart) const {
    const std::int32_t month = MonthStart(monthStart).SerialNumber();
    return month <= m_published.rbegin()->first ? PublishedIndex(month) : ForecastIndex(month);
}

template <class MonthLevel>
double ZeroInflationCurve::Interpolated(const Date& date, const MonthLevel& level) const {
    const Period& lag = m_conventions.observationLag;
    const Date observed = MonthStart(date + Period(-lag.Length(), lag.Units()));
    const double first = level(observed.SerialNumber());
    if (m_conventions.interpolation == InflationInterpolation::Flat || date.DayOfMonth() == 1) return first;
    const double next = level(observed.Advance(1, Months).SerialNumber());
    const double weight = double(date.DayOfMonth() - 1) / Date::DaysInMonth(date.Month(), date.Year());
    return first + weight * (next - first);
}

double ZeroInflationCurve::ReferenceIndex(const Date& date) const {
    return Interpolated(date, [this](std::int32_t month) { return MonthlyIndex(Date(month)); });
}

double ZeroInflationCurve::SwapYears(const Date& start, const Date& maturity) const {
    return m_conventions.dayCounter.YearFraction(start, maturity);
}

double ZeroInflationCurve::ZeroCouponRate(const Date& start, const Date& maturity) const {
    const double years = SwapYears(start, maturity);
    ZEP_REQUIRE(years > 0.0, "ZeroInflationCurve: a zero-coupon swap must mature after it starts");
    return std::pow(ReferenceIndex(maturity) / ReferenceIndex(start), 1.0 / years) - 1.0;
}

Date ZeroInflationCurve::LatestFixingMonth() const { return Date(m_published.rbegin()->first); }

std::vector<Date> ZeroInflationCurve::PillarMonths() const {
    std::vector<Date> months;
    for (std::size_t k = 1; k < m_nodeSerials.size(); ++k) months.emplace_back(static_cast<std::int32_t>(m_nodeSerials[k]));
    return months;
}

std::vector<double> ZeroInflationCurve::PillarLevels() const {
    std::vector<double> levels;
    for (const Date& month : PillarMonths()) levels.push_back(MonthlyIndex(month));
    return levels;
}

}  // namespace zep
