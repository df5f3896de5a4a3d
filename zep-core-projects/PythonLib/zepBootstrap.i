// Curves bootstrapped from deposit, FRA, future, swap and OIS quotes, and curves given by a formula.
%{
#include "lum-interest-rates/CurveBootstrap.hpp"
#include "lum-interest-rates/ParametricCurves.hpp"
%}

%shared_ptr(zep::NelsonSiegel)
%shared_ptr(zep::Svensson)
%shared_ptr(zep::Vasicek)
%shared_ptr(zep::CoxIngersollRoss)
%feature("docstring") zep::NelsonSiegel "Nelson-Siegel zero rates: NelsonSiegel(beta0, beta1, beta2, tau); Rate(t) continuously compounded.";
%feature("docstring") zep::Svensson "Svensson zero rates: Svensson(beta0, beta1, beta2, beta3, tau1, tau2).";
%feature("docstring") zep::Vasicek "Vasicek short rate dr = a (b - r) dt + sigma dW: Vasicek(r0, a, b, sigma); DiscountFactor(t), Rate(t).";
%feature("docstring") zep::CoxIngersollRoss "Cox-Ingersoll-Ross short rate dr = a (b - r) dt + sigma sqrt(r) dW: CoxIngersollRoss(r0, a, b, sigma).";
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

%ignore zep::CurveBootstrap::CurveBootstrap;
%ignore zep::CurveBootstrap::Quotes;
%ignore zep::CurveBootstrap::Pillars;
%feature("docstring") zep::CurveBootstrap
"A bootstrap kept for risk: BootstrapCurve(...) takes the arguments of BootstrapYieldCurve.
Curve() is the curve; Requote(index, rate) gives the quote at index (in the order given) a new
rate and solves again from its pillar on, Curve() then being a new curve (a curve handed out
before is unchanged; on failure nothing changes); ImpliedQuotes() reprices every quote.";
%include "lum-interest-rates/CurveBootstrap.hpp"

%newobject zep::python::BootstrapFrom;
%inline %{
namespace zep::python {
// The raw entry point behind BootstrapCurve below: one entry per quote in each list.
zep::CurveBootstrap* BootstrapFrom(
        const zep::Date& referenceDate, const std::vector<double>& instruments, const std::vector<std::string>& starts,
        const std::vector<std::string>& tenors, const std::vector<double>& rates,
        const std::vector<double>& convexities, const std::vector<std::string>& fixedTenors, int spotLagDays,
        const std::string& centres, int rollRule, const zep::DayCounter& depositDayCounter,
        const std::string& fixedTenor, const zep::DayCounter& fixedDayCounter, const std::string& floatTenor,
        const std::string& oisTenor, const zep::DayCounter& oisDayCounter,
        const zep::DayCounter& curveDayCounter, int interpolatedVariable, int interpolationMethod, bool globalFit,
        boost::shared_ptr<zep::YieldCurve> discountCurve) {
    const std::size_t n = tenors.size();
    if (instruments.size() != n || starts.size() != n || rates.size() != n || convexities.size() != n ||
        fixedTenors.size() != n)
        throw std::invalid_argument("BootstrapYieldCurve: one instrument, start, tenor and rate per quote");
    std::vector<zep::RateQuote> quotes;
    for (std::size_t i = 0; i < n; ++i) {
        if (!(instruments[i] >= 0 && instruments[i] <= 4 && instruments[i] == static_cast<int>(instruments[i])))
            throw std::invalid_argument("BootstrapYieldCurve: instruments are DEPOSIT, FRA, SWAP, FUTURE or OIS");
        zep::RateQuote quote;
        quote.instrument = static_cast<zep::RateInstrument>(static_cast<int>(instruments[i]));
        if (!starts[i].empty()) quote.start = zep::Period(starts[i]);
        quote.tenor = zep::Period(tenors[i]);
        quote.rate = rates[i];
        quote.convexityAdjustment = convexities[i];
        if (!fixedTenors[i].empty()) quote.fixedTenor = zep::Period(fixedTenors[i]);
        quotes.push_back(quote);
    }
    zep::BootstrapConventions conventions;
    conventions.spotLagDays = spotLagDays;
    conventions.centres = centres;
    conventions.rollRule = rollRule;
    conventions.depositDayCounter = depositDayCounter;
    conventions.fixedTenor = zep::Period(fixedTenor);
    conventions.fixedDayCounter = fixedDayCounter;
    conventions.floatTenor = zep::Period(floatTenor);
    conventions.oisTenor = zep::Period(oisTenor);
    conventions.oisDayCounter = oisDayCounter;
    conventions.curveDayCounter = curveDayCounter;
    conventions.interpolatedVariable = interpolatedVariable;
    conventions.interpolationMethod = interpolationMethod;
    conventions.globalFit = globalFit;
    return new zep::CurveBootstrap(referenceDate, quotes, conventions, zep::Calendar::Shared(), discountCurve);
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


def DepositQuote(tenor: "str", rate: "float") -> "dict[str, str | float]":
    """A deposit from spot to spot + tenor ("3M") at a simple money-market rate."""
    return {"instrument": "DEPOSIT", "tenor": tenor, "rate": rate}


def FraQuote(tenor: "str", rate: "float") -> "dict[str, str | float]":
    """A forward rate agreement, tenor "3x6": start and end in months from spot."""
    return {"instrument": "FRA", "tenor": tenor, "rate": rate}


def FutureQuote(start: "str", price: "float", convexity: "float" = 0.0) -> "dict[str, str | float]":
    """A three-month money-market future on the first IMM date on or after spot + start, quoted
    as its price 100 * (1 - futures rate); convexity is the futures rate minus the forward rate."""
    return {"instrument": "FUTURE", "tenor": start, "rate": price, "convexity": convexity}


def SwapQuote(tenor: "str", rate: "float", fixedTenor: "str | None" = None) -> "dict[str, str | float]":
    """A par fixed-float swap from spot to spot + tenor ("5Y"); fixedTenor ("6M") overrides the
    fixed leg's period of the bootstrap's conventions for this swap."""
    quote = {"instrument": "SWAP", "tenor": tenor, "rate": rate}
    if fixedTenor:
        quote["fixedTenor"] = fixedTenor
    return quote


def OisQuote(tenor: "str", rate: "float") -> "dict[str, str | float]":
    """A par overnight-index swap from spot to spot + tenor ("2Y")."""
    return {"instrument": "OIS", "tenor": tenor, "rate": rate}


def _quote_rows(quotes):
    """Quotes as (instrument, tenor, rate, convexity, fixedTenor) from tuples, dicts or a DataFrame."""
    if hasattr(quotes, "to_dict"):  # a pandas DataFrame
        quotes = quotes.to_dict("records")
    rows = []
    for q in quotes:
        if isinstance(q, dict):
            fixed = q.get("fixedTenor")
            rows.append((q["instrument"], q["tenor"], q["rate"], q.get("convexity", 0.0),
                         fixed if isinstance(fixed, str) else ""))  # a DataFrame fills gaps with NaN
        else:
            q = tuple(q)
            if len(q) not in (3, 4):
                raise ValueError(f"BootstrapYieldCurve: a quote reads (instrument, tenor, rate[, convexity]), not {q!r}")
            rows.append(q + (0.0,) * (4 - len(q)) + ("",))
    return rows


def BootstrapCurve(referenceDate: "Date | str",
        quotes: "Sequence[tuple[str, str, float] | tuple[str, str, float, float] | dict[str, str | float]]",
        spotLagDays: "int" = 2, centres: "str" = "TARGET", rollRule: "int" = 2,
        depositDayCounter: "DayCounter | None" = None, fixedTenor: "str" = "1Y",
        fixedDayCounter: "DayCounter | None" = None, curveDayCounter: "DayCounter | None" = None,
        interpolatedVariable: "int" = 1, interpolationMethod: "int" = 2,
        discountCurve: "YieldCurve | None" = None, floatTenor: "str" = "6M", oisTenor: "str" = "1Y",
        oisDayCounter: "DayCounter | None" = None, globalFit: "bool" = True) -> "CurveBootstrap":
    """The bootstrap behind BootstrapYieldCurve (same arguments), kept for risk: Curve() is the
    curve, Requote(index, rate) solves again from the moved quote's pillar on, ImpliedQuotes()
    reprices every quote."""
    kinds = {"DEPOSIT": 0, "FRA": 1, "SWAP": 2, "FUTURE": 3, "OIS": 4}
    instruments, starts, tenors, rates, convexities, fixedTenors = [], [], [], [], [], []
    for instrument, tenor, rate, convexity, quoteFixedTenor in _quote_rows(quotes):
        kind = kinds.get(str(instrument).upper())
        if kind is None:
            raise ValueError(f"BootstrapYieldCurve: unknown instrument {instrument!r}: DEPOSIT, FRA, SWAP, FUTURE or OIS")
        start, end = ("", tenor)
        if kind == 1:
            parts = str(tenor).upper().split("X")
            if len(parts) != 2:
                raise ValueError(f"BootstrapYieldCurve: an FRA tenor reads like '3x6', not {tenor!r}")
            start, end = parts[0] + "M", parts[1] + "M"
        elif kind == 3:
            start, end = tenor, "3M"
        instruments.append(float(kind))
        starts.append(start)
        tenors.append(end)
        rates.append(float(rate))
        convexities.append(float(convexity))
        fixedTenors.append(quoteFixedTenor)
    return BootstrapFrom(referenceDate, instruments, starts, tenors, rates, convexities, fixedTenors, spotLagDays,
                         centres, rollRule, depositDayCounter or DayCounter(Act360), fixedTenor,
                         fixedDayCounter or DayCounter(Thirty360), floatTenor, oisTenor,
                         oisDayCounter or DayCounter(Act360), curveDayCounter or DayCounter(Act365Fixed),
                         interpolatedVariable, interpolationMethod, bool(globalFit), discountCurve)


def BootstrapYieldCurve(referenceDate: "Date | str",
        quotes: "Sequence[tuple[str, str, float] | tuple[str, str, float, float] | dict[str, str | float]]",
        spotLagDays: "int" = 2, centres: "str" = "TARGET", rollRule: "int" = 2,
        depositDayCounter: "DayCounter | None" = None, fixedTenor: "str" = "1Y",
        fixedDayCounter: "DayCounter | None" = None, curveDayCounter: "DayCounter | None" = None,
        interpolatedVariable: "int" = 1, interpolationMethod: "int" = 2,
        discountCurve: "YieldCurve | None" = None, floatTenor: "str" = "6M", oisTenor: "str" = "1Y",
        oisDayCounter: "DayCounter | None" = None, globalFit: "bool" = True) -> "YieldCurve":
    """A curve bootstrapped pillar by pillar from market quotes.

    quotes: (instrument, tenor, rate) with instrument "DEPOSIT" (tenor "3M"), "FRA" (tenor "3x6":
    start and end months from spot), "SWAP" (tenor "5Y": par rate of a fixed leg paying every
    fixedTenor), "OIS" (tenor "2Y": par rate of an overnight-index swap paying every oisTenor,
    oisDayCounter) or "FUTURE" (tenor "3M": the three-month future on the first IMM date on or
    after spot + tenor; rate is its price, 100 * (1 - futures rate), and a fourth element the
    convexity adjustment, futures rate minus forward rate); also accepted as dicts with these
    keys (and "convexity", "fixedTenor"), as made by DepositQuote, FraQuote, FutureQuote,
    SwapQuote and OisQuote, or a pandas DataFrame with these columns, in maturity order (a quote
    maturing on or before the one ahead of it is refused). Instruments start
    spotLagDays business days after the reference date on the centres; dates roll by rollRule.
    Day counts: deposits, FRAs and futures Act/360, the fixed leg 30/360, OIS Act/360, the curve
    Act/365 Fixed unless given. The curve interpolates interpolatedVariable (1 continuous zero
    rates, 2 discount factors) by interpolationMethod (2 linear, 4 log-linear, 6 cubic). A
    non-local interpolation (cubic) moves the earlier stretches of the curve as pillars are added;
    with globalFit the pillars' rates are then solved together (Levenberg-Marquardt) so that every
    quote reprices.

    Without discountCurve the curve discounts and projects. With it, the curve built is a
    projection curve: swap floating legs reset every floatTenor on its forwards, and both legs
    are discounted on discountCurve (OIS discounting)."""
    return BootstrapCurve(referenceDate, quotes, spotLagDays, centres, rollRule, depositDayCounter, fixedTenor,
                          fixedDayCounter, curveDayCounter, interpolatedVariable, interpolationMethod, discountCurve,
                          floatTenor, oisTenor, oisDayCounter, globalFit).Curve()
%}

// Curves over other curves: a spread over a base curve, overnight rates off a discount curve.
%{
#include "lum-interest-rates/OvernightRateCurve.hpp"
#include "lum-interest-rates/SpreadRateModel.hpp"
%}
%shared_ptr(zep::SpreadRateModel)
%ignore zep::OvernightRateCurve::OvernightRate(const Date&, const Calendar&) const;
%feature("docstring") zep::SpreadRateModel
"Zero rates over a base curve: SpreadRateModel(base, spread) adds a constant continuously
compounded spread, SpreadRateModel(base, spreadCurve) the spread curve's continuous zero rate, so
that discount factors multiply. Use through SpreadYieldCurve.";
%feature("docstring") zep::OvernightRateCurve
"Overnight rates off a discount curve: OvernightRateCurve(curve, centres='TARGET',
dayCounter=DayCounter(Act360)); OvernightRate(date) from a business day to the next,
CompoundedRate(start, end) what compounding them over a period amounts to.";
%include "lum-interest-rates/SpreadRateModel.hpp"
%include "lum-interest-rates/OvernightRateCurve.hpp"
%extend zep::OvernightRateCurve {
    double OvernightRate(const zep::Date& date) const { return $self->OvernightRate(date, zep::Calendar::Shared()); }
}

%pythoncode %{
def SpreadYieldCurve(base: "YieldCurve", spread: "float | YieldCurve") -> "YieldCurve":
    """A discount curve over a base curve: its continuously compounded zero rates are the base's
    plus a constant spread or plus a spread curve's, its discount factors the base's times the
    spread's; on the base curve's reference date and day count. It pickles as its parts."""
    if base is None or spread is None:
        raise ValueError("SpreadYieldCurve: no base curve or no spread")
    model = SpreadRateModel(base, spread if isinstance(spread, YieldCurve) else float(spread))
    return ParametricYieldCurve(base.ReferenceDate(), model, DayCounter(base.DayCounterCode()))
%}
