import math
import pickle

import numpy as np
import pytest

import zep

REFERENCE = "2026-11-16"
SPOT = 1.0850
USD, EUR = 0.043, 0.026
LABELS = ["ATM", "25RR", "25BF", "10RR", "10BF"]
TENORS = ["1W", "1M", "3M", "6M", "1Y", "2Y"]
QUOTES = np.array([[0.0720, -0.0020, 0.0018, -0.0036, 0.0060], [0.0750, -0.0030, 0.0020, -0.0055, 0.0068],
                   [0.0780, -0.0040, 0.0022, -0.0072, 0.0075], [0.0800, -0.0045, 0.0024, -0.0082, 0.0082],
                   [0.0820, -0.0050, 0.0026, -0.0090, 0.0090], [0.0840, -0.0052, 0.0027, -0.0095, 0.0095]])


def flat(rate):
    return zep.YieldCurve.FromTenors(REFERENCE, ["1Y", "10Y"], [rate, rate], zep.Continuous, zep.Act365Fixed)


def surface(mode=zep.SmileLinear, conventions=None, quotes=QUOTES):
    args = [REFERENCE, REFERENCE, SPOT, TENORS, LABELS, quotes, flat(USD), flat(EUR)]
    if conventions is not None:
        args.append(conventions)
    return zep.FXVolSurface.FromTenors(*args, smileInterpolation=mode)


def expiry(tenor):
    return zep.Date(REFERENCE) + zep.Period(tenor)


def quoted_pillar(row, delta):
    atm, rr25, bf25, rr10, bf10 = row
    if delta == 0:
        return atm
    rr, bf = (rr10, bf10) if abs(delta) < 0.2 else (rr25, bf25)
    return atm + bf + math.copysign(0.5, delta) * rr


@pytest.mark.parametrize("mode", [zep.SmileLinear, zep.SmileCubicSpline])
def test_interpolating_modes_return_each_pillar_volatility_at_its_strike(mode):
    s = surface(mode)
    for i, tenor in enumerate(TENORS):
        for delta, strike in zip(s.PillarDeltas(i), s.PillarStrikes(i)):
            assert s.GetVolatility(expiry(tenor), strike) == pytest.approx(quoted_pillar(QUOTES[i], delta), abs=1e-12)


@pytest.mark.parametrize("delta_type", [zep.SpotDelta, zep.ForwardDelta])
@pytest.mark.parametrize("premium", [zep.PremiumExcluded, zep.PremiumIncluded])
@pytest.mark.parametrize("label", ["10P", "25P", "25C", "10C"])
def test_strike_from_delta_round_trips_through_the_vanilla_delta(delta_type, premium, label):
    conventions = zep.FXVolConventions([REFERENCE], [delta_type], [premium], [zep.ATMDeltaNeutral])
    s = surface(zep.SmileCubicSpline, conventions)
    for tenor in ("1M", "5M", "1Y"):
        strike = s.GetStrike(expiry(tenor), label)
        t = s.TimeToExpiry(expiry(tenor))
        option = zep.BSVanilla(0 if label.endswith("C") else 1, strike, s.GetVolatility(t, strike), t, t, USD, EUR, SPOT)
        plain = premium == zep.PremiumExcluded
        delta = option.Delta(plain) if delta_type == zep.SpotDelta else option.ForwardDelta(plain)
        assert delta == pytest.approx(zep.FXVolSurface.DeltaStringToValue(label), abs=1e-10), (tenor, label)


def test_array_call_matches_one_call_per_point_and_broadcasts():
    s = surface(zep.SmileSVI)
    times = np.linspace(0.01, 3.0, 7)
    strikes = np.linspace(0.9, 1.3, 5)
    grid = s.GetVolatility(times[:, None], strikes[None, :])
    assert grid.shape == (7, 5)
    for i, t in enumerate(times):
        for j, k in enumerate(strikes):
            assert grid[i, j] == s.GetVolatility(float(t), float(k))
    dates = np.array(["2027-01-16", "2027-06-01"], dtype="datetime64[D]")
    by_date = s.GetVolatility(dates, 1.1)
    assert list(by_date) == [s.GetVolatility("2027-01-16", 1.1), s.GetVolatility("2027-06-01", 1.1)]


@pytest.mark.parametrize("labels, rows, message", [
    (["ATM", "25RR"], [[0.07, 0.0]] * 6, "25BF/25RR is a must!"),
    (["25RR", "25BF"], [[0.0, 0.0]] * 6, "Not found ATM vol!"),
    (["ATM", "25RR", "25XX"], [[0.07, 0.0, 0.0]] * 6, "Unknown deltaString!"),
    (LABELS, QUOTES[:5], "Tenors/Volatilities not same size!"),
    (LABELS, [[-0.07, 0, 0, 0, 0]] * 6, "Volatility of pillar 'ATM' of expiry '23/11/2026' must be positive"),
])
def test_bad_quotes_raise_the_library_message(labels, rows, message):
    with pytest.raises(RuntimeError, match="^" + message.replace("(", r"\(")):
        zep.FXVolSurface.FromTenors(REFERENCE, REFERENCE, SPOT, TENORS, labels, rows, flat(USD), flat(EUR))


def test_missing_curve_and_bad_strike_are_refused_not_crashed():
    with pytest.raises(RuntimeError, match="^Domestic YieldCurve is Null!"):
        zep.FXVolSurface.FromTenors(REFERENCE, REFERENCE, SPOT, TENORS, LABELS, QUOTES, None, flat(EUR))
    with pytest.raises(RuntimeError, match="^Strike must be positive"):
        surface().GetVolatility(0.5, 0.0)
    with pytest.raises(ValueError):
        surface().GetVolatility(np.array([0.5, 1.0]), np.array([1.0, 2.0, 3.0]))
    with pytest.raises(RuntimeError, match="^Strike must be positive"):
        surface().GetVolatility(np.array([0.5, 1.0]), np.array([1.0, -2.0]))


def test_m_class_prefixes_failures_and_reports_disposal():
    m = zep.MFXVolSurface.FromTenors(REFERENCE, REFERENCE, SPOT, TENORS, LABELS, QUOTES, flat(USD), flat(EUR))
    assert m.GetATMVol(expiry("1Y")) == pytest.approx(0.082, abs=1e-15)
    with pytest.raises(RuntimeError, match=r"^MFXVolSurface::GetStrike failed: DeltaString not suport in GetStrike!"):
        m.GetStrike(expiry("1Y"), "25RR")
    with pytest.raises(RuntimeError, match=r"^MFXVolSurface::FromTenors failed: MktVolSurface: no spot price!"):
        zep.MFXVolSurface.FromTenors(REFERENCE, REFERENCE, 0.0, TENORS, LABELS, QUOTES, flat(USD), flat(EUR))
    m.Dispose()
    with pytest.raises(RuntimeError, match=r"^MFXVolSurface::GetATMVol failed: not initialized!"):
        m.GetATMVol(expiry("1Y"))


@pytest.mark.parametrize("build", [
    lambda: surface(zep.SmileSABR),
    lambda: zep.FXVolSurface(REFERENCE, "2026-11-18", SPOT, [expiry("1M"), expiry("1Y")], LABELS, QUOTES[[1, 4]].tolist(),
                             flat(USD), flat(EUR), zep.FXVolConventions([REFERENCE], [1], [1], [0])),
    lambda: zep.MFXVolSurface.FromTenors(REFERENCE, REFERENCE, SPOT, TENORS, LABELS, QUOTES, flat(USD), flat(EUR)),
])
def test_surfaces_pickle_to_the_same_volatilities(build):
    original = build()
    copy = pickle.loads(pickle.dumps(original))
    for t, k in ((0.1, 1.05), (0.7, 1.12), (1.5, 0.98)):
        assert copy.GetVolatility(t, k) == original.GetVolatility(t, k)


def test_smile_mode_names_keep_their_spelling():
    assert zep.SmileInterpolationToString(zep.SmileVarianceExtendedSpline) == " Q_VARIANCE_EXTENDED_SPLINE"
    with pytest.raises(RuntimeError, match="^Extrapolation method is an invalid enumeration: 5"):
        zep.SmileInterpolationToString(5)


@pytest.mark.parametrize("wrap", [lambda s: s, lambda s: zep.MFXVolSurface.FromTenors(
    REFERENCE, REFERENCE, SPOT, TENORS, LABELS, QUOTES, flat(USD), flat(EUR), zep.FXVolConventions(), zep.SmileCubicSpline)])
@pytest.mark.parametrize("strike", [1.02, 1.10, 1.18])
def test_vanilla_option_reads_the_surface_where_it_took_a_number(wrap, strike):
    s = surface(zep.SmileCubicSpline)
    dates = (REFERENCE, "2027-05-18", "2027-05-20", "2027-05-20")
    on_surface = zep.MVanillaOption(1, 0, 1e6, strike, SPOT, *dates, flat(USD), flat(EUR), wrap(s))
    vol = s.GetVolatility("2027-05-18", strike)
    on_number = zep.MVanillaOption(1, 0, 1e6, strike, SPOT, *dates, flat(USD), flat(EUR), vol)
    assert on_surface.GetVol() == vol
    assert on_surface.PV() == on_number.PV()
    assert pickle.loads(pickle.dumps(on_surface)).PV() == on_surface.PV()


def test_vanilla_option_refuses_a_missing_surface():
    with pytest.raises(RuntimeError, match=r"^MVanillaOption::MVanillaOption failed: VolSurface is Null!"):
        zep.MVanillaOption(1, 0, 1.0, 1.1, SPOT, REFERENCE, "2027-05-18", "2027-05-20", "2027-05-20", USD, EUR, None)
    with pytest.raises(TypeError):
        zep.MVanillaOption(1, 0, 1.0, 1.1, SPOT, REFERENCE, "2027-05-18", "2027-05-20", "2027-05-20", USD, EUR, "flat")


def test_two_way_surface_reads_bid_mid_and_ask():
    bid = surface(quotes=QUOTES - np.array([0.001, 0, 0, 0, 0]))
    ask = surface(quotes=QUOTES + np.array([0.001, 0, 0, 0, 0]))
    two_way = zep.FXVolSurface2(bid, ask)
    b, a = two_way.GetVolatility(zep.Bid, 0.5, 1.1), two_way.GetVolatility(zep.Ask, 0.5, 1.1)
    assert two_way.GetVolatility(zep.Mid, 0.5, 1.1) == pytest.approx(0.5 * (a + b), abs=1e-16)
    assert two_way.RelativePillarSpreads(2) == pytest.approx((1.0,) * 5, abs=1e-12)
    with pytest.raises(RuntimeError, match="^BidMidAsk error!"):
        two_way.GetVolatility(7, 0.5, 1.1)
    assert pickle.loads(pickle.dumps(two_way)).GetVolatility(zep.Mid, 0.5, 1.1) == two_way.GetVolatility(zep.Mid, 0.5, 1.1)


def test_strike_quoted_surface_prices_an_option():
    expiries = ["2027-02-16", "2027-11-16"]
    forwards = zep.ForwardCurve2(REFERENCE, SPOT, expiries, [USD - EUR, USD - EUR])
    vols = zep.VolSurface2(expiries, [[1, 0], [1, 0]], [[1.05, 1.12], [1.0, 1.2]], [[0.08, 0.078], [0.085, 0.083]],
                           0, forwards)
    assert vols.GetVolatility("2027-02-16", 1.085) == pytest.approx(0.08 - 0.002 * 0.035 / 0.07, abs=1e-15)
    option = zep.MVanillaOption(1, 0, 1.0, 1.1, SPOT, REFERENCE, "2027-02-16", "2027-02-18", "2027-02-18", USD, EUR, vols)
    assert option.GetVol() == vols.GetVolatility("2027-02-16", 1.1)
    with pytest.raises(RuntimeError, match="^expiry dates size not same with unerlying rates!"):
        zep.ForwardCurve2(REFERENCE, SPOT, expiries, [0.01])


def test_arbitrage_report_lists_the_offending_expiries():
    assert surface(zep.SmileCubicSpline).ArbitrageReport() == []
    quotes = QUOTES.copy()
    quotes[2, 2], quotes[2, 4] = -0.012, -0.004  # a concave 3M smile
    report = surface(zep.SmileLinear, quotes=quotes).ArbitrageReport()
    assert {(str(expiry), kind) for expiry, _, kind, _ in report} == {("16/02/2027", "butterfly")}
    assert all(size > 0 for *_, size in report)


def test_local_volatility_of_a_flat_surface_is_flat_and_pickles():
    flat_quotes = np.tile([0.08, 0.0, 0.0, 0.0, 0.0], (len(TENORS), 1))
    local = zep.FXLocalVolSurface(surface(zep.SmileCubicSpline, quotes=flat_quotes))
    assert local.Volatility(0.7, 1.12) == pytest.approx(0.08, abs=1e-7)
    assert pickle.loads(pickle.dumps(local)).Volatility(0.7, 1.12) == local.Volatility(0.7, 1.12)
