"""QuantLib's side of the cross-checks: dates, the zero curves the rate tests share, and the flat
Black-Scholes-Merton market the option engines price on."""
import QuantLib as ql


def black_scholes_process(today, spot, rd, rf, vol):
    """Spot, flat domestic and foreign rates and a flat volatility, all Act/365F, valued at today."""
    ql.Settings.instance().evaluationDate = today
    day_count = ql.Actual365Fixed()
    return ql.BlackScholesMertonProcess(
        ql.QuoteHandle(ql.SimpleQuote(spot)),
        ql.YieldTermStructureHandle(ql.FlatForward(today, rf, day_count)),
        ql.YieldTermStructureHandle(ql.FlatForward(today, rd, day_count)),
        ql.BlackVolTermStructureHandle(ql.BlackConstantVol(today, ql.NullCalendar(), vol, day_count)))


def ql_date(text):
    """A QuantLib date from "YYYY-MM-DD"."""
    return ql.Date(int(text[8:]), int(text[5:7]), int(text[:4]))


def ql_zero_curve(reference, pillars, zeros):
    """The zero curve zep's YieldCurve.FromZeroRates builds (continuous, Act/365F, linear in the
    zero rates), valued at `reference`."""
    ql.Settings.instance().evaluationDate = ql_date(reference)
    return ql.YieldTermStructureHandle(ql.ZeroCurve([ql_date(p) for p in pillars], zeros, ql.Actual365Fixed(),
                                                    ql.TARGET(), ql.Linear(), ql.Continuous))
