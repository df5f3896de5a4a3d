// A consumer price index forecast: published monthly fixings up to the latest month, then index
// levels bootstrapped from zero-coupon inflation swap quotes. A swap starting on date S and
// maturing on T swaps the index growth I(T) / I(S) - 1 against (1 + K)^tau - 1, both paid at T,
// so its par rate K = (I(T) / I(S))^(1 / tau) - 1 needs no discount curve.
//
// I(d), the reference index of a date, reads the monthly index of the month `observationLag`
// before d: Flat takes that month's level; Linear moves from it towards the next month's level by
// (day of d - 1) / (days in d's month), the bond and swap market's daily reference index. Between
// the latest fixing and the months the quotes observe, and beyond the last of them, the monthly
// index is log-linear in months (constant monthly inflation over each stretch) times a seasonal
// factor: with monthly factors s(January) .. s(December), a forecast month m carries s(m) / s(l),
// l the latest fixing's month, so prices rise faster in the months the factors say while a whole
// year's inflation is unchanged; the bootstrap sees the factors and still reprices every quote.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lum-interest-rates/FixingStore.hpp"
#include "lum-time/DayCounter.hpp"
#include "lum-time/Period.hpp"

namespace zep {

enum class InflationInterpolation : std::int32_t { Flat = 0, Linear = 1 };

struct InflationIndexConventions {
    std::string index;  // the fixings' name, such as "EUHICPXT"
    Period observationLag = Period(3, Months);
    InflationInterpolation interpolation = InflationInterpolation::Linear;
    // Compounds the zero-coupon rate over the swap's dates.
    DayCounter dayCounter = DayCounter(Thirty360);
};

class ZeroInflationCurve {
public:
    // Quotes are zero-coupon swaps from the reference date to reference date + tenor, tenors
    // ascending, rates as decimals. `fixings` holds the index's monthly levels on the first day
    // of their month; the curve copies them, so fixings added later do not change it.
    // `seasonality` is empty (none) or twelve positive factors, January to December.
    ZeroInflationCurve(const Date& referenceDate, const InflationIndexConventions& conventions,
                       const std::vector<Period>& tenors, const std::vector<double>& rates,
                       const FixingStore& fixings, const std::vector<double>& seasonality = {});

    // The level of the month starting on `monthStart` (any day of the month is taken as it):
    // published up to the latest fixing (a gap fails "Missing fixing of index '<index>' for
    // month <yyyy-mm>."), forecast after it.
    double MonthlyIndex(const Date& monthStart) const;
    // I(d): lagged and interpolated as the conventions say.
    double ReferenceIndex(const Date& date) const;
    // The par rate of a zero-coupon swap from start to maturity.
    double ZeroCouponRate(const Date& start, const Date& maturity) const;
    // The compounding period of a zero-coupon swap in years.
    double SwapYears(const Date& start, const Date& maturity) const;

    const Date& ReferenceDate() const { return m_referenceDate; }
    const InflationIndexConventions& Conventions() const { return m_conventions; }
    // The first day of the latest published month.
    Date LatestFixingMonth() const;
    // The months the quotes fixed, first day of each, and their index levels.
    std::vector<Date> PillarMonths() const;
    std::vector<double> PillarLevels() const;

private:
    // Months are counted as 12 * year + month - 1, so that a lag or a step is a subtraction.
    template <class MonthLevel>
    double Interpolated(const Date& date, const MonthLevel& level) const;
    double LevelOfMonth(std::int32_t month) const;
    double PublishedIndex(std::int32_t month) const;
    double ForecastIndex(std::int32_t month) const;

    Date m_referenceDate;
    InflationIndexConventions m_conventions;
    // The lag in whole months; a lag in days or weeks moves the date instead.
    bool m_lagInMonths;
    std::int32_t m_lagMonths;
    // Published levels from the first published month to the latest, NaN where a month is missing.
    std::int32_t m_firstPublished = 0;
    std::vector<double> m_published;
    // The forecast's nodes: the latest published month, then one month per quote.
    std::vector<std::int32_t> m_nodeMonths;
    std::vector<double> m_nodeLogLevels;  // before the seasonal factor
    // log(s(month) / s(latest fixing's month)) by month, January first; all zero without seasonality.
    std::vector<double> m_logSeasonal;
};

}  // namespace zep
