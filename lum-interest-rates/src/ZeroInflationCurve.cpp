#include "lum-interest-rates/ZeroInflationCurve.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/RootFinders.hpp"

namespace zep {

namespace {

std::int32_t MonthNumber(const Date& date) { return 12 * date.Year() + date.Month() - 1; }

Date MonthStart(std::int32_t month) { return Date(1, month % 12 + 1, month / 12); }

std::string MonthText(std::int32_t month) {
    char text[16];
    std::snprintf(text, sizeof text, "%04d-%02d", static_cast<int>(month / 12), static_cast<int>(month % 12 + 1));
    return text;
}

}  // namespace

ZeroInflationCurve::ZeroInflationCurve(const Date& referenceDate, const InflationIndexConventions& conventions,
                                       const std::vector<Period>& tenors, const std::vector<double>& rates,
                                       const FixingStore& fixings, const std::vector<double>& seasonality)
    : m_referenceDate(referenceDate),
      m_conventions(conventions),
      m_lagInMonths(conventions.observationLag.Units() == Months || conventions.observationLag.Units() == Years),
      m_lagMonths(conventions.observationLag.Length() * (conventions.observationLag.Units() == Years ? 12 : 1)),
      m_logSeasonal(12, 0.0) {
    const std::string& index = conventions.index;
    ZEP_REQUIRE(!index.empty(), "ZeroInflationCurve: the index has no name");
    ZEP_REQUIRE(conventions.observationLag.Length() >= 0, "ZeroInflationCurve: the observation lag must not be negative");
    ZEP_REQUIRE(!tenors.empty(), "ZeroInflationCurve: no zero-coupon swap quotes");
    ZEP_REQUIRE(tenors.size() == rates.size(), "ZeroInflationCurve: one rate per tenor");
    const auto published = fixings.FixingsOf(index);
    ZEP_REQUIRE(!published.empty(), "ZeroInflationCurve: no fixings of index '" + index + "'");
    m_firstPublished = MonthNumber(published.front().first);
    m_published.assign(MonthNumber(published.back().first) - m_firstPublished + 1,
                       std::numeric_limits<double>::quiet_NaN());
    for (const auto& [date, level] : published) {
        ZEP_REQUIRE(date.DayOfMonth() == 1, "ZeroInflationCurve: the fixing of index '" + index + "' on " +
                                                date.ToString() + " is not on the first day of its month");
        ZEP_REQUIRE(level > 0.0, "ZeroInflationCurve: the fixing of index '" + index + "' for month " +
                                     MonthText(MonthNumber(date)) + " is not positive");
        m_published[MonthNumber(date) - m_firstPublished] = level;
    }
    const std::int32_t latest = m_firstPublished + static_cast<std::int32_t>(m_published.size()) - 1;
    if (!seasonality.empty()) {
        ZEP_REQUIRE(seasonality.size() == 12, "ZeroInflationCurve: seasonality needs 12 monthly factors, January to December");
        for (double factor : seasonality)
            ZEP_REQUIRE(std::isfinite(factor) && factor > 0.0, "ZeroInflationCurve: every seasonal factor must be positive");
        for (std::size_t month = 0; month < 12; ++month)
            m_logSeasonal[month] = std::log(seasonality[month] / seasonality[latest % 12]);
    }
    // Every quote's base is the reference date's index, which must have been published.
    const double base = Interpolated(referenceDate, [this](std::int32_t month) { return PublishedIndex(month); });

    m_nodeMonths.push_back(latest);
    m_nodeLogLevels.push_back(std::log(m_published.back()));
    for (std::size_t k = 0; k < tenors.size(); ++k) {
        const std::string name = "the zero-coupon swap " + tenors[k].Text() + " quote";
        ZEP_REQUIRE(std::isfinite(rates[k]) && rates[k] > -1.0, "ZeroInflationCurve: " + name + " needs a rate above -1");
        const Date maturity = referenceDate + tenors[k];
        ZEP_REQUIRE(maturity > referenceDate, "ZeroInflationCurve: " + name + " has no tenor");
        // The last month the quote observes is the one whose level it fixes.
        std::int32_t pillar = -1;
        Interpolated(maturity, [&pillar](std::int32_t month) { return double(pillar = std::max(pillar, month)); });
        ZEP_REQUIRE(pillar > m_nodeMonths.back(), "ZeroInflationCurve: " + name + " observes no month after " +
                                                      (k == 0 ? "the latest fixing" : "the " + tenors[k - 1].Text() + " quote's"));
        const double target = base * std::pow(1.0 + rates[k], SwapYears(referenceDate, maturity));
        m_nodeMonths.push_back(pillar);
        m_nodeLogLevels.push_back(0.0);
        const auto mismatch = [&](double logLevel) {
            m_nodeLogLevels.back() = logLevel;
            return std::log(ReferenceIndex(maturity) / target);
        };
        // The level sits within a factor e^10 of the target for any rate a market would quote.
        const double around = std::log(target);
        try {
            m_nodeLogLevels.back() = BrentSolve(mismatch, around - 10.0, around + 10.0, {1e-15, 200});
        } catch (const Error& error) {
            ZEP_FAIL("ZeroInflationCurve: no index level reprices " + name + " (" + error.Message() + ")");
        }
    }
}

double ZeroInflationCurve::PublishedIndex(std::int32_t month) const {
    const std::int32_t slot = month - m_firstPublished;
    const bool known = slot >= 0 && slot < static_cast<std::int32_t>(m_published.size()) && !std::isnan(m_published[slot]);
    if (!known) ZEP_FAIL("Missing fixing of index '" + m_conventions.index + "' for month " + MonthText(month) + ".");
    return m_published[slot];
}

double ZeroInflationCurve::ForecastIndex(std::int32_t month) const {
    // Log-linear between nodes; the last stretch's inflation continues beyond the last node.
    const auto upper = std::upper_bound(m_nodeMonths.begin() + 1, m_nodeMonths.end() - 1, month);
    const std::size_t k = static_cast<std::size_t>(upper - m_nodeMonths.begin());
    const double weight = double(month - m_nodeMonths[k - 1]) / (m_nodeMonths[k] - m_nodeMonths[k - 1]);
    return std::exp(m_nodeLogLevels[k - 1] + weight * (m_nodeLogLevels[k] - m_nodeLogLevels[k - 1]) +
                    m_logSeasonal[month % 12]);
}

double ZeroInflationCurve::LevelOfMonth(std::int32_t month) const {
    return month <= m_nodeMonths.front() ? PublishedIndex(month) : ForecastIndex(month);
}

double ZeroInflationCurve::MonthlyIndex(const Date& monthStart) const { return LevelOfMonth(MonthNumber(monthStart)); }

template <class MonthLevel>
double ZeroInflationCurve::Interpolated(const Date& date, const MonthLevel& level) const {
    const Period& lag = m_conventions.observationLag;
    const std::int32_t observed =
        m_lagInMonths ? MonthNumber(date) - m_lagMonths : MonthNumber(date + Period(-lag.Length(), lag.Units()));
    const double first = level(observed);
    const std::int32_t day = date.DayOfMonth();
    if (m_conventions.interpolation == InflationInterpolation::Flat || day == 1) return first;
    const double next = level(observed + 1);
    const double weight = double(day - 1) / Date::DaysInMonth(date.Month(), date.Year());
    return first + weight * (next - first);
}

double ZeroInflationCurve::ReferenceIndex(const Date& date) const {
    return Interpolated(date, [this](std::int32_t month) { return LevelOfMonth(month); });
}

double ZeroInflationCurve::SwapYears(const Date& start, const Date& maturity) const {
    return m_conventions.dayCounter.YearFraction(start, maturity);
}

double ZeroInflationCurve::ZeroCouponRate(const Date& start, const Date& maturity) const {
    const double years = SwapYears(start, maturity);
    ZEP_REQUIRE(years > 0.0, "ZeroInflationCurve: a zero-coupon swap must mature after it starts");
    return std::pow(ReferenceIndex(maturity) / ReferenceIndex(start), 1.0 / years) - 1.0;
}

Date ZeroInflationCurve::LatestFixingMonth() const { return MonthStart(m_nodeMonths.front()); }

std::vector<Date> ZeroInflationCurve::PillarMonths() const {
    std::vector<Date> months;
    for (std::size_t k = 1; k < m_nodeMonths.size(); ++k) months.push_back(MonthStart(m_nodeMonths[k]));
    return months;
}

std::vector<double> ZeroInflationCurve::PillarLevels() const {
    std::vector<double> levels;
    for (std::size_t k = 1; k < m_nodeMonths.size(); ++k) levels.push_back(LevelOfMonth(m_nodeMonths[k]));
    return levels;
}

}  // namespace zep
