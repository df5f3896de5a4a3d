import datetime
import math

import pytest

import zep

ACT365 = 1  # Act365Fixed
REFERENCE, EXPIRY, DELIVERY = "2024-01-15", "2024-07-15", "2024-07-17"
# 15 Jan to 15 Jul 2024: 16 + 29 + 31 + 30 + 31 + 30 + 15 = 182 days; delivery two days later.
T_EXPIRY, T_DELIVERY = 182 / 365, 184 / 365

MARKETS = [  # type, strike, spot, rd, rf, vol
    (0, 1.10, 1.08, 0.035, 0.02, 0.09),
    (1, 1.10, 1.08, 0.035, 0.02, 0.09),
    (0, 95.0, 100.0, 0.01, 0.04, 0.30),
    (1, 120.0, 100.0, -0.005, 0.0, 0.45),
]


def option(kind, strike, spot, rd, rf, vol, side=1, face=1.0, **dates):
    d = dict(reference=REFERENCE, expiry=EXPIRY, settlement=DELIVERY, delivery=DELIVERY) | dates
    return zep.MVanillaOption(side, kind, face, strike, spot, d["reference"], d["expiry"], d["settlement"],
                              d["delivery"], rd, rf, vol)


def flat_curve(rate):
    return zep.YieldCurve.FromZeroRates(REFERENCE, ["2025-01-15", "2029-01-15"], [rate, rate], zep.Continuous,
                                        ACT365)


def on_curves(kind, strike, spot, rd, rf, vol):
    return zep.MVanillaOption(1, kind, 1.0, strike, spot, REFERENCE, EXPIRY, DELIVERY, DELIVERY,
                              flat_curve(rd), flat_curve(rf), vol)


@pytest.mark.parametrize("market", MARKETS)
def test_option_prices_as_the_engine_on_its_year_fractions(market):
    kind, strike, spot, rd, rf, vol = market
    opt = option(*market)
    engine = zep.BSVanilla(kind, strike, vol, T_EXPIRY, T_DELIVERY, rd, rf, spot)
    assert opt.GetTimeToExpiry() == pytest.approx(T_EXPIRY, abs=1e-15)
    assert opt.GetTimeToDelivery() == pytest.approx(T_DELIVERY, abs=1e-15)
    for name in ["Price", "Gamma", "Vega", "Theta", "Rho", "Phi", "Vanna", "Volga", "DvegaDspot",
                 "VegaDigital", "VegaIDDigital"]:
        assert getattr(opt, name)() == pytest.approx(getattr(engine, name)(), rel=1e-14, abs=1e-15), name
    assert opt.Delta() == pytest.approx(engine.Delta(True), rel=1e-14)
    assert opt.Delta(False) == pytest.approx(engine.Delta(False), rel=1e-14)
    assert opt.Delta(1) == pytest.approx(engine.Delta(True), rel=1e-14)  # an integer is the method
    assert opt.Price(1) == pytest.approx(engine.Price(), rel=1e-14)


@pytest.mark.parametrize("market", MARKETS)
def test_put_call_parity_on_flat_curves(market):
    _, strike, spot, rd, rf, vol = market
    call, put = on_curves(0, strike, spot, rd, rf, vol), on_curves(1, strike, spot, rd, rf, vol)
    assert call.GetAccRate() == pytest.approx(rd, abs=1e-14)
    assert call.GetUndRate() == pytest.approx(rf, abs=1e-14)
    parity = spot * math.exp(-rf * T_DELIVERY) - strike * math.exp(-rd * T_DELIVERY)
    assert call.Price() - put.Price() == pytest.approx(parity, abs=1e-11)


@pytest.mark.parametrize("side, face", [(1, 1.0), (-1, 1e6), (1, 2.5e6)])
def test_pv_is_side_times_notional_times_price(side, face):
    market = MARKETS[0]
    unit, booked = option(*market), option(*market, side=side, face=face)
    assert booked.PV() == pytest.approx(side * face * unit.Price(), rel=1e-14)
    assert booked.MarketValue() == pytest.approx(booked.PV() * math.exp(market[3] * T_DELIVERY), rel=1e-14)
    assert booked.GetBuySell() == side and booked.GetFaceValue() == face


@pytest.mark.parametrize("market", MARKETS)
def test_delta_price_is_the_finite_difference_of_price_in_volatility(market):
    kind, strike, spot, rd, rf, vol = market
    h = 1e-4
    up, down = option(kind, strike, spot, rd, rf, vol + h).Price(), option(kind, strike, spot, rd, rf, vol - h).Price()
    opt = option(*market)
    assert opt.DeltaPrice("spot_Volatility", h) == pytest.approx((up - down) / (2 * h), rel=1e-9, abs=1e-12)
    assert opt.DeltaPrice("spot_Volatility", 0.0) == 0.0


def test_getters_give_back_the_dates():
    opt = option(*MARKETS[0])
    assert str(opt.GetReferenceDate()) == str(zep.Date(REFERENCE))
    assert str(opt.GetExpiryDate()) == str(zep.Date(EXPIRY))
    assert str(opt.GetDeliveryDate()) == str(zep.Date(DELIVERY))
    assert opt.GetStrike() == 1.10 and opt.GetSpot() == 1.08 and opt.GetVol() == 0.09


def test_forward_quote_without_a_forward_or_with_one():
    with pytest.raises(RuntimeError, match=r"^MVanillaOption::FromForward failed: No input forward!"):
        zep.MVanillaOption.FromForward(1, 0, 1.0, 100.0, None, REFERENCE, EXPIRY, DELIVERY, DELIVERY, 0.01, 0.0, 0.2)
    forward = 100.0 * math.exp(0.01 * T_DELIVERY)
    on_forward = zep.MVanillaOption.FromForward(1, 0, 1.0, 100.0, forward, REFERENCE, EXPIRY, DELIVERY, DELIVERY,
                                                0.01, 0.0, 0.2, ACT365, 0, 100.0)
    assert on_forward.Price() == pytest.approx(option(0, 100.0, 100.0, 0.01, 0.0, 0.2).Price(), rel=1e-12)


@pytest.mark.parametrize("build, message", [
    (lambda: option(*MARKETS[0], expiry="2024-01-14"), "Expiry date must after reference date!"),
    (lambda: zep.MVanillaOption.FromForward(1, 0, 1.0, 100.0, 100.0, REFERENCE, "2024-01-14", DELIVERY, DELIVERY,
                                            0.01, 0.0, 0.2), "Expiry date must after reference datel!"),
    (lambda: option(*MARKETS[0], settlement="2024-07-14"), "Settlement date must on or after expiry date!"),
    (lambda: zep.MVanillaOption(1, 0, 1.0, 100.0, 100.0, REFERENCE, EXPIRY, DELIVERY, DELIVERY, 0.01, 0.0, 0.2,
                                ACT365, 7), "unknown option type(expiry nature)!"),
    (lambda: option(*MARKETS[0], side=0), "unknow side"),
    (lambda: zep.MVanillaOption(1, 0, 1.0, 100.0, 100.0, REFERENCE, EXPIRY, DELIVERY, DELIVERY, None,
                                flat_curve(0.0), 0.2), "accrual (domestic) YieldCurve is Null!"),
    (lambda: zep.MVanillaOption(1, 0, 1.0, 100.0, 100.0, REFERENCE, EXPIRY, DELIVERY, DELIVERY, flat_curve(0.0),
                                None, 0.2), "underlying (foreign) YieldCurve is Null!"),
    (lambda: option(0, 100.0, -1.0, 0.0, 0.0, 0.2), " Spot must be positive."),
    (lambda: option(0, 100.0, 100.0, 0.0, 0.0, 0.0), "volatility must be a positive percentage!"),
])
def test_bad_construction_raises_the_library_message(build, message):
    with pytest.raises(RuntimeError) as failure:
        build()
    assert message in str(failure.value)


@pytest.mark.parametrize("exercise, call, message", [
    (0, lambda o: o.Price(2), "not support Trinominal or BAW!"),
    (0, lambda o: o.Vega(3), "not support Trinominal or BAW!"),
    (1, lambda o: o.Price(2), "not support Trinominal!"),
    (1, lambda o: o.Delta(), "not support Trinominal or BAW!"),
    (2, lambda o: o.Price(), "Not support BERMUDAN!"),
    (0, lambda o: o.DeltaPrice("spot", 0.01), "not supported fieldName!"),
    (0, lambda o: o.GammaPrice("volatility", 0.01), "not supported fieldName!"),
    (0, lambda o: o.getVolSurfaceData("straddle", "ATM"), "unknow side"),
])
def test_refused_operations_name_the_operation(exercise, call, message):
    opt = zep.MVanillaOption(1, 0, 1.0, 100.0, 100.0, REFERENCE, EXPIRY, DELIVERY, DELIVERY, 0.01, 0.0, 0.2,
                             ACT365, exercise)
    with pytest.raises(RuntimeError, match=r"^MVanillaOption::\w+ failed: ") as failure:
        call(opt)
    assert message in str(failure.value)


def test_strike_quotes_read_the_flat_volatility():
    opt = option(*MARKETS[0])
    forward = opt.GetForward()
    assert opt.StrikeFromQuote("CALL", "ATMF+25") == pytest.approx(forward + 0.0025, abs=1e-14)
    assert opt.StrikeFromQuote("put", "5% OTM") == pytest.approx(1.08 * 0.95, abs=1e-14)
    strike = opt.StrikeFromQuote("call", "25D")
    assert zep.BSVanilla(0, strike, 0.09, T_EXPIRY, T_DELIVERY, 0.035, 0.02, 1.08).Delta(True) == pytest.approx(0.25)
    assert opt.getVolSurfaceData("call", "25D") == 0.09


def test_empty_and_disposed_options_report_not_initialized():
    with pytest.raises(RuntimeError, match=r"^MVanillaOption::Price failed: not initialized!"):
        zep.MVanillaOption().Price()
    opt = option(*MARKETS[0])
    opt.Dispose()
    with pytest.raises(RuntimeError, match=r"^MVanillaOption::GetSpot failed: not initialized!"):
        opt.GetSpot()


@pytest.mark.parametrize("build, prefix", [
    (lambda d: option(0, 100.0, 100.0, 0.0, 0.0, 0.2, expiry=d), "MVanillaOption::MVanillaOption"),
    (lambda d: zep.MVanillaOption.FromForward(1, 0, 1.0, 100.0, 100.0, d, EXPIRY, DELIVERY, DELIVERY,
                                              0.01, 0.0, 0.2), "MVanillaOption::FromForward"),
    (lambda d: zep.MXScriptStructure(d, 100.0, 0.2, 0.03, 0.0, 1, [], ["2025-01-02"], ["C PAYS 1"], 16),
     "MXScriptStructure::MXScriptStructure"),
    (lambda d: zep.ScriptProduct(["2024-01-02", d], ["X = 1", "X = 2"]), "MScriptProduct::MScriptProduct"),
])
@pytest.mark.parametrize("date, message", [
    ("2024-02-30", "Day outside of month range"),
    (datetime.date(1850, 1, 1), "Year out of bound. It must be in [1901,2199]"),
])
def test_bad_dates_fail_inside_the_wrapper_with_its_prefix(build, prefix, date, message):
    with pytest.raises(RuntimeError) as failure:
        build(date)
    assert str(failure.value) == f"{prefix} failed: {message}"

