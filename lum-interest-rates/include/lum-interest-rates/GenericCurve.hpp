// The base of every curve: pillar dates measured in years from the reference date, one stored
// quantity per pillar and the interpolation of that quantity in time. Method 9 replaces the
// interpolation by a precomputed cubic spline table of the instantaneous forward rate.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <boost/property_tree/ptree_fwd.hpp>

#include "lum-auxiliary/Interpolation.hpp"
#include "lum-time/Date.hpp"
#include "lum-time/DayCounter.hpp"

namespace zep {

// The curve's own interpolation code beyond the engine's nine: the precomputed spline table.
inline constexpr std::int32_t SplineTableInterpolation = 9;

class GenericCurve {
public:
    virtual ~GenericCurve() = default;

    const Date& ValueDate() const { return m_valueDate; }
    const std::string& Label() const { return m_label; }
    const std::vector<Date>& Dates() const { return m_dates; }
    const std::vector<double>& Times() const { return m_times; }
    const std::vector<double>& Variables() const { return m_variables; }
    const std::vector<double>& Bids() const { return m_bids; }
    const std::vector<double>& Offers() const { return m_offers; }
    std::int32_t GetInterpolatedVariable() const { return m_interpolatedVariable; }
    std::int32_t GetInterpolationMethod() const { return m_interpolationMethod; }
    const zep::DayCounter& GetDayCounter() const { return m_dayCounter; }
    const Interpolation<double, double, double>& GetInterpolation() const { return m_interpolation; }

    void SetValueDate(const Date& valueDate) { m_valueDate = valueDate; }
    void SetLabel(const std::string& label) { m_label = label; }
    void SetQuotes(std::vector<double> bids, std::vector<double> offers);

    // The spline table's value at time x: the end values outside [first, last] pillar time.
    double SplineTableValue(double x) const;

    // The pillars as a tab-separated table under the heads "1 - Dates", "2 - Times",
    // "3 - Interpolation Variable" and "4 - Interpolation Method", one line per pillar.
    std::string Dump() const;

protected:
    GenericCurve(const Date& referenceDate, const zep::DayCounter& dayCounter,
                 std::int32_t interpolatedVariable, std::int32_t interpolationMethod,
                 const std::string& label);

    // Rebuilds m_interpolation over the pillars; the clamped spline takes its end slopes from
    // the data.
    void BuildInterpolation();
    // Fits a natural cubic spline through (m_times, nodeValues) into the table of method 9.
    void BuildSplineTable(const std::vector<double>& nodeValues);

    void SaveFields(boost::property_tree::ptree& fields) const;
    void LoadFields(const boost::property_tree::ptree& fields);

    Date m_referenceDate;
    Date m_valueDate;
    std::string m_label;
    std::vector<Date> m_dates;
    std::vector<double> m_times;
    std::vector<double> m_variables;
    std::vector<double> m_bids;
    std::vector<double> m_offers;
    std::int32_t m_interpolatedVariable;
    std::int32_t m_interpolationMethod;
    zep::DayCounter m_dayCounter;
    Interpolation<double, double, double> m_interpolation;

    std::vector<double> m_spline_lower_nodes;
    std::vector<std::array<double, 4>> m_spline_table;  // a0..a3 in powers of (x - lower node)
    double m_first_time = 0.0;
    double m_last_time = 0.0;
    std::int32_t m_last_time_index = 0;
    double m_rate_value_at_first_time = 0.0;
    double m_rate_value_at_last_time = 0.0;
};

}  // namespace zep
