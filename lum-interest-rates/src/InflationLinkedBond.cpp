#include "lum-interest-rates/InflationLinkedBond.hpp"

#include <utility>

#include "lum-auxiliary/Error.hpp"

namespace zep {

InflationLinkedBond::InflationLinkedBond(Bond realBond, const Date& baseDate)
    : m_realBond(std::move(realBond)), m_baseDate(baseDate) {
    ZEP_REQUIRE(!baseDate.IsNull(), "InflationLinkedBond: the base date is missing");
    ZEP_REQUIRE(baseDate < m_realBond.MaturityDate(), "InflationLinkedBond: the base date must come before the maturity");
}

double InflationLinkedBond::IndexRatio(const ZeroInflationCurve& inflation, const Date& date) const {
    return inflation.ReferenceIndex(date) / inflation.ReferenceIndex(m_baseDate);
}

std::vector<CashFlow> InflationLinkedBond::CashFlows(const ZeroInflationCurve& inflation,
                                                     const YieldCurve& discount) const {
    std::vector<CashFlow> rows = m_realBond.CashFlows(discount);
    const double base = inflation.ReferenceIndex(m_baseDate);
    for (CashFlow& row : rows) {
        const double ratio = inflation.ReferenceIndex(row.accrualEnd) / base;
        row.rate *= ratio;
        row.amount *= ratio;
        row.presentValue *= ratio;
    }
    return rows;
}

double InflationLinkedBond::PV(const ZeroInflationCurve& inflation, const YieldCurve& discount) const {
    double value = 0.0;
    for (const CashFlow& row : CashFlows(inflation, discount)) value += row.presentValue;
    return value;
}

std::string InflationLinkedBond::Describe() const {
    return "Inflation-linked bond indexed from " + m_baseDate.ToString() + "; in real terms: " + m_realBond.Describe();
}

}  // namespace zep
