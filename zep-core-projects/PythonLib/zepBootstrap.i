// Curves bootstrapped from deposit, FRA and swap quotes, and curves given by a formula.
%{
#include "lum-interest-rates/CurveBootstrap.hpp"
#include "lum-interest-rates/ParametricCurves.hpp"
%}

%shared_ptr(zep::ParametricRateModel)
%shared_ptr(zep::NelsonSiegel)
%shared_ptr(zep::Svensson)
%shared_ptr(zep::Vasicek)
%shared_ptr(zep::CoxIngersollRoss)
%feature("docstring") zep::NelsonSiegel "Nelson-Siegel zero rates: NelsonSiegel(beta0, beta1, beta2, tau); Rate(t) continuously compounded.";
%feature("docstring") zep::Svensson "Svensson zero rates: Svensson(beta0, beta1, beta2, beta3, tau1, tau2).";
%feature("docstring") zep::Vasicek "Vasicek short rate dr = a (b - r) dt + sigma dW: Vasicek(r0, a, b, sigma); DiscountFactor(t), Rate(t).";
%feature("docstring") zep::CoxIngersollRoss "Cox-Ingersoll-Ross short rate dr = a (b - r) dt + sigma sqrt(r) dW: CoxIngersollRoss(r0, a, b, sigma).";
%include "lum-interest-rates/ParametricRateModel.hpp"
%include "lum-interest-rates/ParametricCurves.hpp"

%rename(_ParametricYieldCurve) zep::python::ParametricYieldCurve;
%inline %{
namespace zep::python {
// A discount curve whose zero rates come from a formula (YieldCurve's parametric hook).
boost::shared_ptr<zep::YieldCurve> ParametricYieldCurve(const zep::Date& referenceDate,
                                                        boost::shared_ptr<const zep::ParametricRateModel> model,
                                                        const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act365Fixed)) {
    if (!model) throw std::invalid_argument("ParametricYieldCurve: no model");
    // The pillar only carries the dates and day count; every rate is the model's.
    auto curve = boost::make_shared<zep::YieldCurve>(referenceDate, std::vector<zep::Date>{referenceDate + 365},
                                                     std::vector<double>{std::exp(-model->Rate(1.0))}, dayCounter);
    curve->SetParametricModel(model);
    return curve;
}
}
%}

%inline %{
namespace zep::python {
// The raw entry point behind BootstrapYieldCurve below: one entry per quote in each list.
boost::shared_ptr<zep::YieldCurve> BootstrapYieldCurveFrom(
        const zep::Date& referenceDate, const std::vector<double>& instruments, const std::vector<std::string>& starts,
        const std::vector<std::string>& tenors, const std::vector<double>& rates, int spotLagDays,
        const std::string& centres, int rollRule, const zep::DayCounter& depositDayCounter,
        const std::string& fixedTenor, const zep::DayCounter& fixedDayCounter,
        const zep::DayCounter& curveDayCounter, int interpolatedVariable, int interpolationMethod) {
    if (instruments.size() != tenors.size() || starts.size() != tenors.size() || rates.size() != tenors.size())
        throw std::invalid_argument("BootstrapYieldCurve: one instrument, start, tenor and rate per quote");
    std::vector<zep::RateQuote> quotes;
    for (std::size_t i = 0; i < tenors.size(); ++i) {
        if (instruments[i] != 0 && instruments[i] != 1 && instruments[i] != 2)
            throw std::invalid_argument("BootstrapYieldCurve: instruments are DEPOSIT, FRA or SWAP");
        zep::RateQuote quote;
        quote.instrument = static_cast<zep::RateInstrument>(static_cast<int>(instruments[i]));
        if (!starts[i].empty()) quote.start = zep::Period(starts[i]);
        quote.tenor = zep::Period(tenors[i]);
        quote.rate = rates[i];
        quotes.push_back(quote);
    }
    zep::BootstrapConventions conventions;
    conventions.spotLagDays = spotLagDays;
    conventions.centres = centres;
    conventions.rollRule = rollRule;
    conventions.depositDayCounter = depositDayCounter;
    conventions.fixedTenor = zep::Period(fixedTenor);
    conventions.fixedDayCounter = fixedDayCounter;
    conventions.curveDayCounter = curveDayCounter;
    conventions.interpolatedVariable = interpolatedVariable;
    conventions.interpolationMethod = interpolationMethod;
    return zep::CurveBootstrap(referenceDate, quotes, conventions, zep::Calendar::Shared()).Curve();
}
}
%}

%pythoncode %{
def ParametricYieldCurve(referenceDate: "Date | str", model: "ParametricRateModel",
                         dayCounter: "DayCounter | None" = None) -> "YieldCurve":
    """A discount curve whose continuously compounded zero rates are the model's (NelsonSiegel,
    Svensson, Vasicek, CoxIngersollRoss), times from the reference date by the day counter
    (Act/365 Fixed unless given). It pickles as its formula."""
    dayCounter = dayCounter or DayCounter(Act365Fixed)
    curve = _ParametricYieldCurve(referenceDate, model, dayCounter)
    curve._zep_parametric = (referenceDate, model, dayCounter)
    return curve


def BootstrapYieldCurve(referenceDate: "Date | str", quotes: "list[tuple[str, str, float]]", spotLagDays: "int" = 2,
                        centres: "str" = "TARGET", rollRule: "int" = 2,
                        depositDayCounter: "DayCounter | None" = None, fixedTenor: "str" = "1Y",
                        fixedDayCounter: "DayCounter | None" = None, curveDayCounter: "DayCounter | None" = None,
                        interpolatedVariable: "int" = 1, interpolationMethod: "int" = 2) -> "YieldCurve":
    """A discount curve bootstrapped pillar by pillar from market quotes.

    quotes: (instrument, tenor, rate) with instrument "DEPOSIT" (tenor "3M"), "FRA" (tenor "3x6":
    start and end months from spot) or "SWAP" (tenor "5Y": par rate of a fixed leg paying every
    fixedTenor against the same curve's floating leg); also accepted as dicts with these keys or
    a pandas DataFrame with these columns. Instruments start spotLagDays business days after the
    reference date on the centres; dates roll by rollRule. Day counts: deposits and FRAs Act/360,
    the fixed leg 30/360, the curve Act/365 Fixed unless given. The curve interpolates
    interpolatedVariable (1 continuous zero rates, 2 discount factors) by interpolationMethod
    (2 linear, 4 log-linear, 6 cubic)."""
    if hasattr(quotes, "to_dict"):  # a pandas DataFrame
        quotes = quotes.to_dict("records")
    rows = [(q["instrument"], q["tenor"], q["rate"]) if isinstance(q, dict) else tuple(q) for q in quotes]
    kinds = {"DEPOSIT": 0, "FRA": 1, "SWAP": 2}
    instruments, starts, tenors, rates = [], [], [], []
    for instrument, tenor, rate in rows:
        kind = kinds.get(str(instrument).upper())
        if kind is None:
            raise ValueError(f"BootstrapYieldCurve: unknown instrument {instrument!r}: DEPOSIT, FRA or SWAP")
        start, end = ("", tenor)
        if kind == 1:
            parts = str(tenor).upper().split("X")
            if len(parts) != 2:
                raise ValueError(f"BootstrapYieldCurve: an FRA tenor reads like '3x6', not {tenor!r}")
            start, end = parts[0] + "M", parts[1] + "M"
        instruments.append(float(kind))
        starts.append(start)
        tenors.append(end)
        rates.append(float(rate))
    return BootstrapYieldCurveFrom(referenceDate, instruments, starts, tenors, rates, spotLagDays, centres, rollRule,
                                   depositDayCounter or DayCounter(Act360), fixedTenor,
                                   fixedDayCounter or DayCounter(Thirty360), curveDayCounter or DayCounter(Act365Fixed),
                                   interpolatedVariable, interpolationMethod)
%}
