#include "lum-interest-rates/GenericCurve.hpp"

#include <algorithm>
#include <sstream>

#include <boost/property_tree/ptree.hpp>

#include "lum-auxiliary/SavedFields.hpp"
#include "lum-interest-rates/InterpolatedVariable.hpp"

namespace zep {

GenericCurve::GenericCurve(const Date& referenceDate, const zep::DayCounter& dayCounter,
                           std::int32_t interpolatedVariable, std::int32_t interpolationMethod,
                           const std::string& label)
    : m_referenceDate(referenceDate),
      m_valueDate(referenceDate),
      m_label(label),
      m_interpolatedVariable(interpolatedVariable),
      m_interpolationMethod(interpolationMethod),
      m_dayCounter(dayCounter) {}

void GenericCurve::SetQuotes(std::vector<double> bids, std::vector<double> offers) {
    m_bids = std::move(bids);
    m_offers = std::move(offers);
}

void GenericCurve::BuildInterpolation() {
    // Beyond the last pillar the stored quantity is held flat: a flat zero rate for rate curves.
    Interpolation<double, double, double> interpolation(
        m_times, m_variables, static_cast<InterpolationMethod>(m_interpolationMethod), FlatExtrapolation);
    if (m_interpolationMethod == ClampedCubicInterpolation) interpolation.autoSetBoundaryDerivatives();
    m_interpolation = std::move(interpolation);
}

void GenericCurve::BuildSplineTable(const std::vector<double>& nodeValues) {
    const Interpolation<double, double, double> spline(m_times, nodeValues, CubicInterpolation,
                                                       FlatExtrapolation);
    const std::vector<double> curvature = spline.NaturalSecondDerivatives();
    const std::size_t segments = m_times.size() - 1;
    std::vector<double> lowerNodes(segments);
    std::vector<std::array<double, 4>> table(segments);
    for (std::size_t k = 0; k < segments; ++k) {
        const double h = m_times[k + 1] - m_times[k];
        lowerNodes[k] = m_times[k];
        table[k] = {nodeValues[k],
                    (nodeValues[k + 1] - nodeValues[k]) / h - h * (2.0 * curvature[k] + curvature[k + 1]) / 6.0,
                    curvature[k] / 2.0, (curvature[k + 1] - curvature[k]) / (6.0 * h)};
    }
    m_spline_lower_nodes = std::move(lowerNodes);
    m_spline_table = std::move(table);
    m_first_time = m_times.front();
    m_last_time = m_times.back();
    m_last_time_index = static_cast<std::int32_t>(segments - 1);
    m_rate_value_at_first_time = nodeValues.front();
    m_rate_value_at_last_time = nodeValues.back();
}

double GenericCurve::SplineTableValue(double x) const {
    if (x <= m_first_time || m_spline_table.empty()) return m_rate_value_at_first_time;
    std::size_t k;
    double d;
    if (x >= m_last_time) {
        k = static_cast<std::size_t>(m_last_time_index);
        d = m_last_time - m_spline_lower_nodes[k];
    } else {
        k = static_cast<std::size_t>(std::upper_bound(m_spline_lower_nodes.begin(), m_spline_lower_nodes.end(), x) -
                                     m_spline_lower_nodes.begin()) - 1;
        d = x - m_spline_lower_nodes[k];
    }
    const auto& a = m_spline_table[k];
    return a[0] + d * (a[1] + d * (a[2] + d * a[3]));
}

namespace {

void PutDates(boost::property_tree::ptree& fields, const std::string& name, const std::vector<Date>& dates) {
    boost::property_tree::ptree array;
    for (const Date& date : dates) {
        boost::property_tree::ptree element;
        element.put_value(date.SerialNumber());
        array.push_back({"", element});
    }
    fields.put_child(name, array);
}

std::vector<Date> GetDates(const boost::property_tree::ptree& fields, const std::string& name) {
    std::vector<Date> dates;
    for (const auto& element : fields.get_child(name))
        dates.push_back(Date(element.second.get_value<std::int32_t>()));
    return dates;
}

}  // namespace

void GenericCurve::SaveFields(boost::property_tree::ptree& fields) const {
    fields.put("m_referenceDate", m_referenceDate.SerialNumber());
    fields.put("m_valueDate", m_valueDate.SerialNumber());
    fields.put("m_label", m_label);
    PutDates(fields, "m_dates", m_dates);
    fields::PutDoubles(fields, "m_times", m_times);
    fields::PutDoubles(fields, "m_variables", m_variables);
    fields::PutDoubles(fields, "m_bids", m_bids);
    fields::PutDoubles(fields, "m_offers", m_offers);
    fields.put("m_interpolatedVariable", m_interpolatedVariable);
    fields.put("m_interpolationMethod", m_interpolationMethod);
    fields.put("m_dayCounter", m_dayCounter.Convention());
    boost::property_tree::ptree interpolation;
    m_interpolation.SaveSettings(interpolation);
    fields.put_child("m_interpolation", interpolation);

    fields::PutDoubles(fields, "m_spline_lower_nodes", m_spline_lower_nodes);
    boost::property_tree::ptree rows;
    for (const auto& row : m_spline_table) {
        boost::property_tree::ptree holder;
        fields::PutDoubles(holder, "row", std::vector<double>(row.begin(), row.end()));
        rows.push_back({"", holder.get_child("row")});
    }
    fields.put_child("m_spline_table", rows);
    fields::PutDouble(fields, "m_first_time", m_first_time);
    fields::PutDouble(fields, "m_last_time", m_last_time);
    fields.put("m_last_time_index", m_last_time_index);
    fields::PutDouble(fields, "m_rate_value_at_first_time", m_rate_value_at_first_time);
    fields::PutDouble(fields, "m_rate_value_at_last_time", m_rate_value_at_last_time);
}

void GenericCurve::LoadFields(const boost::property_tree::ptree& fields) {
    m_referenceDate = Date(fields.get<std::int32_t>("m_referenceDate"));
    m_valueDate = Date(fields.get<std::int32_t>("m_valueDate"));
    m_label = fields.get<std::string>("m_label");
    m_dates = GetDates(fields, "m_dates");
    m_times = fields::GetDoubles(fields, "m_times");
    m_variables = fields::GetDoubles(fields, "m_variables");
    m_bids = fields::GetDoubles(fields, "m_bids");
    m_offers = fields::GetDoubles(fields, "m_offers");
    m_interpolatedVariable = fields.get<std::int32_t>("m_interpolatedVariable");
    m_interpolationMethod = fields.get<std::int32_t>("m_interpolationMethod");
    m_dayCounter = zep::DayCounter(fields.get<std::int32_t>("m_dayCounter"));
    Interpolation<double, double, double> interpolation(
        m_times, m_variables, static_cast<InterpolationMethod>(m_interpolationMethod), FlatExtrapolation);
    interpolation.LoadSettings(fields.get_child("m_interpolation"));
    m_interpolation = std::move(interpolation);

    m_spline_lower_nodes = fields::GetDoubles(fields, "m_spline_lower_nodes");
    m_spline_table.clear();
    for (const auto& [unused, row] : fields.get_child("m_spline_table")) {
        boost::property_tree::ptree holder;
        holder.put_child("row", row);
        const std::vector<double> values = fields::GetDoubles(holder, "row");
        if (values.size() != 4) throw std::invalid_argument("Saved field 'm_spline_table' needs four coefficients a row");
        m_spline_table.push_back({values[0], values[1], values[2], values[3]});
    }
    m_first_time = fields::GetDouble(fields, "m_first_time");
    m_last_time = fields::GetDouble(fields, "m_last_time");
    m_last_time_index = fields.get<std::int32_t>("m_last_time_index");
    m_rate_value_at_first_time = fields::GetDouble(fields, "m_rate_value_at_first_time");
    m_rate_value_at_last_time = fields::GetDouble(fields, "m_rate_value_at_last_time");
}

std::string GenericCurve::Dump() const {
    // Code -1 (annually compounded zero rates) has no text name of its own.
    const std::string variable = m_interpolatedVariable == AnnualZeroRates
                                     ? "annually compounded zero rate"
                                     : InterpolatedVariableToString(m_interpolatedVariable);
    const std::string method = m_interpolationMethod == SplineTableInterpolation
                                   ? "spline table"
                                   : InterpolationMethodToString(static_cast<std::uint32_t>(m_interpolationMethod));
    std::ostringstream table;
    table << "1 - Dates\t2 - Times\t3 - Interpolation Variable\t4 - Interpolation Method\n";
    table.precision(12);
    for (std::size_t i = 0; i < m_dates.size(); ++i)
        table << m_dates[i].ToString() << '\t' << m_times[i] << '\t' << m_variables[i] << " (" << variable
              << ")\t" << method << '\n';
    return table.str();
}

}  // namespace zep
