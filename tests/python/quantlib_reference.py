"""QuantLib's side of the cross-checks: the flat Black-Scholes-Merton market the engines price on."""
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
