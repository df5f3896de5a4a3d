// Rate and FX instruments: swaps (fixed-float, OIS, cross-currency), bonds, FX forwards, FX
// swaps and NDFs behind their M classes, past fixings, and the cash-flow rows they list.
%{
#include "lum-interest-rates/CashFlow.hpp"
#include "lum-interest-rates/FixingStore.hpp"
#include "MBasisSwap.hpp"
#include "MBill.hpp"
#include "MBond.hpp"
#include "MBondFuture.hpp"
#include "MFRA.hpp"
#include "MFloatingRateNote.hpp"
#include "MFXForwardOutright.hpp"
#include "MFXNDF.hpp"
#include "MFXSwap.hpp"
#include "MVanillaSwap.hpp"
#include "MXCurrencySwap.hpp"
%}

%shared_ptr(zep::FixingStore)
%feature("docstring") zep::FixingStore
"Published fixings of rate and FX indices: FixingStore(); Add(index, date, rate). A coupon fixed
before the valuation date reads its rate here; a missing one fails naming the index and date.";
// The per-index listing serves the inflation curve, which copies its fixings in C++; Python reads
// fixings through the instruments that use them.
%ignore zep::FixingStore::FixingsOf;
%ignore zep::KnownFixing;  // the instruments' lookup, an optional Python has no type for
%include "lum-interest-rates/FixingStore.hpp"

%rename(CashflowScheduleRow) zep::CashFlow;
%feature("docstring") zep::CashFlow
"One cash flow: kind (CashFlowKind_Coupon, CashFlowKind_Notional or CashFlowKind_Protection, a
payment on default whose discount factor carries its probability), accrualStart, accrualEnd,
fixingDate, paymentDate, accrualFraction, notional, rate, amount, discountFactor, presentValue.";
// Rows report what an instrument pays: read-only in Python.
%immutable;
%include "lum-interest-rates/CashFlow.hpp"
%mutable;
%template(CashFlowVector) std::vector<zep::CashFlow>;
// Cash-flow lists reach Python as a CashFlowVector, not as a tuple of rows.
%typemap(out) std::vector<zep::CashFlow> {
    $result = SWIG_NewPointerObj(new std::vector<zep::CashFlow>($1), $descriptor(std::vector<zep::CashFlow>*), SWIG_POINTER_OWN);
}

%feature("docstring") zep::python::MVanillaSwap
"A fixed-against-floating swap: MVanillaSwap(payFixed, notional, fixedRate, startDate, endDate,
discountCurve, projectionCurve=None, index='EURIBOR6M', floatingKind='IBOR', spread=0,
fixedTenor='1Y', fixedDayCounter='30/360', floatTenor='6M', floatDayCounter='Act360',
centres='TARGET', fixingLagDays=2, paymentLagDays=0, gearing=1, inArrears=False,
lookbackDays=0, lockoutDays=0, observationShift=False, fixings=None, fixedNotionals=[],
floatNotionals=[]). payFixed +1 pays the fixed rate, -1 receives it; floatingKind 'OVERNIGHT'
compounds the index daily (an OIS). No projection curve: the discount curve projects too. An
amortising swap gives each leg one notional per period of that leg (empty: the constant notional). Failures read 'MVanillaSwap::<operation> failed: ...'.";
%feature("docstring") zep::python::MXCurrencySwap
"A cross-currency swap receiving a domestic and paying a foreign leg ('FIXED', 'IBOR' or
'OVERNIGHT'), notionals exchanged at start and end, foreign leg converted at spot (domestic per
foreign). Marked to market, resettingLeg='DOMESTIC' (or 'FOREIGN') resets that leg's notional
every period to the other leg's notional at the FX rate fixed for it (domestic per foreign,
published under fxIndex='FX', the forward until then) and exchanges the change.
Failures read 'MXCurrencySwap::<operation> failed: ...'.";
%feature("docstring") zep::python::MBond
"A fixed-rate bond: MBond(couponRate, issueDate, maturityDate, tenor='6M', dayCounter='ActActICMA',
notionals=[100], discountCurve=None, centres='', endOfMonth=False, simpleYieldInLastPeriod=False);
prices per 100, yields compounded at the coupon frequency (simple interest in the last coupon
period when simpleYieldInLastPeriod, as US Treasuries are quoted). Failures read 'MBond::<operation> failed: ...'.";
%feature("docstring") zep::python::MFXForwardOutright
"An outright FX forward on BASE/QUOTE: MFXForwardOutright(buySell, baseNotional, contractRate,
deliveryDate, spot, spotDate, quoteCurve, baseCurve, forwardPoints=None, pointScale=1e4); NPV in
the quote currency. Failures read 'MFXForwardOutright::<operation> failed: ...'.";
%feature("docstring") zep::python::MFXSwap
"An FX swap: MFXSwap(nearBuySell, baseNotional, nearRate, nearDate, farRate, farDate, spot,
spotDate, quoteCurve, baseCurve). Failures read 'MFXSwap::<operation> failed: ...'.";
%feature("docstring") zep::python::MFXNDF
"A non-deliverable forward settled in the base currency: MFXNDF(buySell, baseNotional,
contractRate, fixingDate, settlementDate, spot, spotDate, quoteCurve, baseCurve, fixingIndex='FX',
fixings=None); Price is the settlement rate. Failures read 'MFXNDF::<operation> failed: ...'.";

%feature("docstring") zep::python::MBasisSwap
"A basis swap receiving one term index (+ receivedSpread) and paying another, each projected on
its own curve, both discounted on discountCurve; ParSpread is the received leg's par spread.
Failures read 'MBasisSwap::<operation> failed: ...'.";
%feature("docstring") zep::python::MFloatingRateNote
"A floating-rate note: MFloatingRateNote(faceValue, quotedMargin, issueDate, maturityDate,
discountCurve, projectionCurve=None, index='EURIBOR3M', tenor='3M', ...); PV per 100 and
DiscountMargin(dirtyPrice). Failures read 'MFloatingRateNote::<operation> failed: ...'.";
%feature("docstring") zep::python::MBill
"A bill: MBill(faceValue, maturityDate, dayCounter='Act360', discountCurve=None); prices from
discount yield P = F (1 - d t) or money-market yield P = F / (1 + y t), and back.
Failures read 'MBill::<operation> failed: ...'.";
%feature("docstring") zep::python::MFRA
"A forward rate agreement: MFRA(buySell, notional, contractRate, startDate, endDate,
discountCurve, projectionCurve=None, index='EURIBOR3M', ...), +1 pays the contract rate, settled
at the start. Failures read 'MFRA::<operation> failed: ...'.";

%include "MVanillaSwap.hpp"
%include "MXCurrencySwap.hpp"
%include "MBasisSwap.hpp"
%include "MFloatingRateNote.hpp"
%include "MBill.hpp"
%include "MFRA.hpp"
%include "MBond.hpp"
%feature("docstring") zep::python::MBondFuture
"A bond future: MBondFuture(deliveryDate, coupons, issueDates, maturityDates, notionalCoupon=0.06,
tenor='1Y', dayCounter='ActActICMA'); ConversionFactor(i) (clean price per 1 at the notional
coupon yield on the delivery date), ImpliedRepo(i, futuresPrice, cleanPrice, settlement) (Act/360),
CheapestToDeliver(futuresPrice, cleanPrices, settlement). Failures read 'MBondFuture::<operation> failed: ...'.";
%include "MBondFuture.hpp"
%include "MFXForwardOutright.hpp"
%include "MFXSwap.hpp"
%include "MFXNDF.hpp"

%pythoncode %{
_CASH_FLOW_FIELDS = ("accrualFraction", "notional", "rate", "amount", "discountFactor", "presentValue")
_CASH_FLOW_DATES = ("accrualStart", "accrualEnd", "fixingDate", "paymentDate")


def _cash_flow_table(rows):
    """The rows as a structured NumPy array (dates as datetime64[D], NaT where a row has none), or
    as a pandas DataFrame when pandas is installed."""
    import numpy
    dtype = [("kind", numpy.int32)] + [(name, "datetime64[D]") for name in _CASH_FLOW_DATES] + \
            [(name, numpy.float64) for name in _CASH_FLOW_FIELDS]
    table = numpy.zeros(len(rows), dtype=dtype)
    epoch = numpy.datetime64("1899-12-30", "D")  # serial day 0 of the library's dates
    for i, row in enumerate(rows):
        table["kind"][i] = row.kind
        for name in _CASH_FLOW_DATES:
            serial = getattr(row, name).SerialNumber()
            table[name][i] = epoch + numpy.timedelta64(serial, "D") if serial else numpy.datetime64("NaT")
        for name in _CASH_FLOW_FIELDS:
            table[name][i] = getattr(row, name)
    try:
        import pandas
    except ImportError:
        return table
    return pandas.DataFrame(table)


def _cash_flows(self):
    """The cash flows still to pay, one row each (see _cash_flow_table); CashFlowSchedule()
    gives the same rows as a CashFlowVector of CashflowScheduleRow."""
    return _cash_flow_table(self.CashFlowSchedule())


def _instrument_repr(self):
    try:
        return f"<{type(self).__name__}: {self.Describe()}>"
    except Exception:  # a repr never raises: an empty or disposed object says so
        return f"<{type(self).__name__}: not initialized>"


for _instrument in (MVanillaSwap, MXCurrencySwap, MBasisSwap, MFloatingRateNote, MBill, MFRA, MBond,
                    MFXForwardOutright, MFXSwap, MFXNDF):
    _instrument.CashFlows = _cash_flows
    _instrument.__repr__ = _instrument_repr
del _instrument


_RATE_PRODUCTS = {
    "VanillaSwap": MVanillaSwap, "XCurrencySwap": MXCurrencySwap, "BasisSwap": MBasisSwap,
    "FloatingRateNote": MFloatingRateNote, "Bill": MBill, "FRA": MFRA, "Bond": MBond, "BondFuture": MBondFuture,
    "FXForwardOutright": MFXForwardOutright, "FXSwap": MFXSwap, "FXNDF": MFXNDF,
}


def RateInstrumentFromDefinition(definition: "str | dict[str, object]",
                                 curves: "dict[str, YieldCurve] | None" = None,
                                 fixings: "FixingStore | None" = None) -> "object":
    """A rate or FX instrument from its product definition: a dict, or JSON or YAML text (YAML
    needs PyYAML). The key "type" names the product (VanillaSwap, XCurrencySwap, BasisSwap,
    FloatingRateNote, Bill, FRA, Bond, BondFuture, FXForwardOutright, FXSwap, FXNDF); every other
    key is a keyword of its M class. A text value of a key ending in "Curve" names one of
    `curves`; "fixings": true takes the store given here.

        type: VanillaSwap
        payFixed: 1
        notional: 10000000
        fixedRate: 0.03
        startDate: 2024-01-17
        endDate: 2029-01-17
        discountCurve: EUR
    """
    if isinstance(definition, str):
        import json
        try:
            definition = json.loads(definition)
        except ValueError:
            try:
                import yaml
            except ImportError:
                raise ValueError("RateInstrumentFromDefinition: the text is not JSON, and YAML needs PyYAML") from None
            definition = yaml.safe_load(definition)
    if not isinstance(definition, dict):
        raise ValueError("RateInstrumentFromDefinition: a definition is a mapping of keys to values")
    terms = dict(definition)
    kind = terms.pop("type", None)
    product = _RATE_PRODUCTS.get(kind)
    if product is None:
        raise ValueError(f"RateInstrumentFromDefinition: unknown product type {kind!r}; one of "
                         + ", ".join(sorted(_RATE_PRODUCTS)))
    curves = curves or {}
    for key, value in terms.items():
        if key.endswith("Curve") and isinstance(value, str):
            if value not in curves:
                raise ValueError(f"RateInstrumentFromDefinition: curve {value!r} of {key} is not among the curves given")
            terms[key] = curves[value]
    if terms.get("fixings") is True:
        terms["fixings"] = fixings
    return product(**terms)
%}
