// Inflation: the zero-coupon inflation curve bootstrapped from zero-coupon swap quotes and the
// monthly fixings of its index, and the zero-coupon and year-on-year inflation swaps and the
// inflation-linked bonds priced on it.
%{
#include "lum-interest-rates/ZeroInflationCurve.hpp"
#include "MInflationLinkedBond.hpp"
#include "MYearOnYearInflationSwap.hpp"
#include "MZeroCouponInflationSwap.hpp"
#include "RateInputs.hpp"
%}

%shared_ptr(zep::ZeroInflationCurve)
%ignore zep::InflationInterpolation;
%ignore zep::InflationIndexConventions;
%ignore zep::ZeroInflationCurve::ZeroInflationCurve(const Date&, const InflationIndexConventions&,
                                                    const std::vector<Period>&, const std::vector<double>&,
                                                    const FixingStore&, const std::vector<double>&);
%ignore zep::ZeroInflationCurve::Conventions;
%feature("docstring") zep::ZeroInflationCurve
"A consumer price index forecast bootstrapped from zero-coupon inflation swap quotes:
ZeroInflationCurve(referenceDate, index, tenors, rates, fixings, observationLag='3M',
interpolation='LINEAR', dayCounter='30/360', seasonality=[]). fixings is a FixingStore holding
the index's monthly levels, each on the first day of its month; tenors ascending ('1Y', '5Y'),
rates as decimals. A swap from S to T pays I(T) / I(S) - 1 against (1 + K)^tau - 1, tau by
dayCounter; I(d) reads the month observationLag before d, 'FLAT' as that month's level, 'LINEAR'
moving towards the next month's by (day of d - 1) / (days in d's month). After the latest fixing
the monthly index is log-linear between the months the quotes fix, times seasonality[m] /
seasonality[l] when twelve monthly factors (January to December) are given, m the month forecast
and l the latest fixing's month; the bootstrap sees the factors and still reprices every quote.
MonthlyIndex(month), ReferenceIndex(date), ZeroCouponRate(start, maturity), LatestFixingMonth(),
PillarMonths(), PillarLevels(), Index(). A month up to the latest fixing without a fixing fails
\"Missing fixing of index '<index>' for month <yyyy-mm>.\" Pickles.";
%include "lum-interest-rates/ZeroInflationCurve.hpp"
%extend zep::ZeroInflationCurve {
    ZeroInflationCurve(const zep::Date& referenceDate, const std::string& index, const std::vector<std::string>& tenors,
                       const std::vector<double>& rates, boost::shared_ptr<zep::FixingStore> fixings,
                       const std::string& observationLag = "3M", const std::string& interpolation = "LINEAR",
                       const zep::DayCounter& dayCounter = zep::DayCounter(zep::Thirty360),
                       const std::vector<double>& seasonality = std::vector<double>()) {
        if (!fixings) throw std::invalid_argument("ZeroInflationCurve: the fixings are None.");
        zep::InflationIndexConventions conventions;
        conventions.index = index;
        conventions.observationLag = zep::Period(observationLag);
        conventions.interpolation = static_cast<zep::InflationInterpolation>(
            zep::python::ChoiceOf(interpolation, {"FLAT", "LINEAR"}, "inflation interpolation"));
        conventions.dayCounter = dayCounter;
        std::vector<zep::Period> periods;
        for (const std::string& tenor : tenors) periods.emplace_back(tenor);
        return new zep::ZeroInflationCurve(referenceDate, conventions, periods, rates, *fixings, seasonality);
    }
    std::string Index() const { return $self->Conventions().index; }
}

%feature("docstring") zep::python::MZeroCouponInflationSwap
"A zero-coupon inflation swap: MZeroCouponInflationSwap(payFixed, notional, fixedRate, startDate,
maturityDate, inflationCurve, discountCurve, centres='TARGET'). payFixed +1 pays
notional * ((1 + K)^tau - 1) and receives notional * (I(T) / I(S) - 1), -1 the reverse, both on the
maturity rolled Modified Following; I and tau the inflation curve's. PV, FairRate (= ParRate),
InflationLegPV, FixedLegPV, CashFlows(). Failures read 'MZeroCouponInflationSwap::<operation> failed: ...'.";
%feature("docstring") zep::python::MYearOnYearInflationSwap
"A year-on-year inflation swap: MYearOnYearInflationSwap(payFixed, notional, fixedRate, startDate,
endDate, inflationCurve, discountCurve, tenor='1Y', dayCounter='30/360', centres='TARGET'). payFixed
+1 pays notional * tau * K and receives notional * tau * (I(e) / I(s) - 1) each period (s, e], -1 the
reverse; I on the unadjusted period dates, read off the zero-coupon curve without a convexity
adjustment. PV, FairRate (= ParRate), InflationLegPV, FixedLegPV, PeriodInflation(), CashFlows().
Failures read 'MYearOnYearInflationSwap::<operation> failed: ...'.";
%feature("docstring") zep::python::MInflationLinkedBond
"An inflation-linked bond: MInflationLinkedBond(realCoupon, issueDate, maturityDate, inflationCurve,
discountCurve, tenor='1Y', dayCounter='ActActICMA', notionals=[100], centres='', endOfMonth=False).
The fixed-rate bond of MBond in real terms, each coupon and the principal scaled by the index ratio
I(d) / I(issueDate), d the payment's unadjusted accrual end. PV (the indexed flows after the
discount curve's reference date, discounted, in the notionals' units), IndexRatio(date),
CashFlows() (rate: the real coupon times the ratio). Failures read
'MInflationLinkedBond::<operation> failed: ...'.";
%include "MZeroCouponInflationSwap.hpp"
%include "MYearOnYearInflationSwap.hpp"
%include "MInflationLinkedBond.hpp"

%pythoncode %{
def _inflation_curve_repr(self):
    try:
        return (f"<ZeroInflationCurve: {self.Index()} from {self.ReferenceDate().ToString()}, "
                f"fixings to {self.LatestFixingMonth().ToString()}, {len(self.PillarMonths())} quotes>")
    except Exception:  # a repr never raises
        return "<ZeroInflationCurve: not initialized>"


ZeroInflationCurve.__repr__ = _inflation_curve_repr

for _instrument in (MZeroCouponInflationSwap, MYearOnYearInflationSwap, MInflationLinkedBond):
    _instrument.CashFlows = _cash_flows
    _instrument.__repr__ = _instrument_repr
del _instrument

# Product definitions name an inflation curve ("inflationCurve") among the curves given.
_RATE_PRODUCTS.update({"ZeroCouponInflationSwap": MZeroCouponInflationSwap,
                       "YearOnYearInflationSwap": MYearOnYearInflationSwap,
                       "InflationLinkedBond": MInflationLinkedBond})
%}
