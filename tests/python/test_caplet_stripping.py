"""Caplet volatilities stripped from flat cap quotes: every quoted cap repriced to 1e-10 by its
caplets at their stripped volatilities (summed from caplets valued one by one), flat quotes
giving flat caplet volatilities, volatilities constant between cap maturities, floors and the
three volatility models, QuantLib's cap engines repricing the quotes caplet by caplet at the
stripped volatilities, and quotes no caplet volatility can reach."""
import pickle

import pytest

import zep

REFERENCE = "2024-01-15"
PILLARS = ["2024-01-15", "2024-07-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15"]
START = "2024-01-17"
MATURITIES = ["2025-01-17", "2026-01-17", "2027-01-17", "2029-01-17", "2031-01-17", "2034-01-17"]
QUOTES = {  # model: shift, strike, flat volatilities by maturity
    "BLACK": (0.0, 0.03, [0.32, 0.30, 0.285, 0.26, 0.245, 0.23]),
    "SHIFTEDBLACK": (0.01, 0.01, [0.21, 0.20, 0.19, 0.185, 0.18, 0.175]),
    "BACHELIER": (0.0, -0.002, [0.0070, 0.0078, 0.0082, 0.0085, 0.0084, 0.0080]),
}


def curve(zeros):
    return zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, zeros, zep.Continuous, zep.DayCounter(zep.Act365Fixed))


@pytest.fixture(scope="module")
def curves():
    return curve([0.031, 0.0325, 0.0318, 0.0295, 0.0301, 0.0312]), curve([0.033, 0.034, 0.0335, 0.031, 0.032, 0.033])


def strip(curves, kind, model, vols=None, maturities=MATURITIES):
    shift, strike, flat = QUOTES[model]
    return zep.MCapletVolatilityStrip(kind, strike, START, maturities, vols or flat, *curves, model, shift)


def cap(curves, kind, model, maturity, vol):
    shift, strike, _ = QUOTES[model]
    return zep.MCapFloor(kind, 1.0, strike, START, maturity, *curves, vol, model, shift)


@pytest.mark.parametrize("model", QUOTES)
@pytest.mark.parametrize("kind", ["CAP", "FLOOR"])
def test_every_cap_quote_is_repriced_by_its_stripped_caplets(curves, kind, model):
    stripped = strip(curves, kind, model)
    volatilities = stripped.CapletVolatilities()
    for maturity, flat, on_strip in zip(MATURITIES, QUOTES[model][2], stripped.CapPVs()):
        quoted = cap(curves, kind, model, maturity, flat).PV()
        # Caplet j of the cap valued alone at its stripped volatility.
        caplet_by_caplet = sum(cap(curves, kind, model, maturity, vol).CapletPVs()[j]
                               for j, vol in enumerate(volatilities[:len(cap(curves, kind, model, maturity, flat)
                                                                         .CapletPVs())]))
        assert caplet_by_caplet == pytest.approx(quoted, abs=1e-10), f"{kind} to {maturity}"
        assert on_strip == pytest.approx(quoted, abs=1e-10), f"{kind} to {maturity}"


def test_caplet_volatility_is_constant_between_cap_maturities(curves):
    stripped = strip(curves, "CAP", "BLACK")
    volatilities, expiries = stripped.CapletVolatilities(), stripped.CapletExpiries()
    counts = [len(cap(curves, "CAP", "BLACK", maturity, 0.2).CapletPVs()) for maturity in MATURITIES]
    assert len(volatilities) == counts[-1] == len(expiries)
    for first, end in zip([0] + counts[:-1], counts):
        assert set(volatilities[first:end]) == {volatilities[end - 1]}
        assert stripped.Volatility(expiries[first]) == volatilities[first]
    assert list(expiries) == sorted(expiries)
    assert stripped.Volatility(50.0) == volatilities[-1]


@pytest.mark.parametrize("model", QUOTES)
def test_flat_quotes_strip_to_flat_caplet_volatilities(curves, model):
    level = QUOTES[model][2][2]
    stripped = strip(curves, "CAP", model, vols=[level] * len(MATURITIES))
    assert list(stripped.CapletVolatilities()) == pytest.approx([level] * len(stripped.CapletVolatilities()),
                                                                rel=1e-10)


def test_strip_pickles_and_refuses_what_it_cannot_read(curves):
    stripped = strip(curves, "FLOOR", "BACHELIER")
    copy = pickle.loads(pickle.dumps(stripped))
    assert list(copy.CapletVolatilities()) == list(stripped.CapletVolatilities())
    with pytest.raises(RuntimeError, match="^MCapletVolatilityStrip::Volatility failed: the expiry must be finite"):
        stripped.Volatility(float("nan"))


@pytest.mark.parametrize("build, message", [
    (lambda c: strip(c, "CAP", "BLACK", maturities=MATURITIES[::-1]),
     "cap 0 has more caplets than the last cap: the caps must be given by rising maturity"),
    (lambda c: strip(c, "CAP", "BLACK", maturities=MATURITIES[:2] + MATURITIES[1:], vols=[0.3] * 7),
     "cap 2 must end after the previous cap"),
    (lambda c: strip(c, "CAP", "BLACK", maturities=["2026-01-19", "2027-01-17"], vols=[0.3, 0.3]),
     "cap 0's caplet 0 is not the longest cap's: the caps must share one schedule"),
    (lambda c: strip(c, "CAP", "BLACK", vols=[0.3, 0.2]), "one flat volatility per cap"),
    (lambda c: strip(c, "CAP", "BLACK", vols=[0.6, 0.05, 0.2, 0.2, 0.2, 0.2]),
     "the cap 1 \\(caplets to 19/01/2026\\) price .* is below its value at zero volatility"),
    (lambda c: strip(c, "COLLAR", "BLACK"), "'COLLAR'"),
    (lambda c: zep.MCapletVolatilityStrip("CAP", 0.03, START, MATURITIES, QUOTES["BLACK"][2], None, None),
     "the discount curve is None"),
])
def test_strip_refusals(curves, build, message):
    with pytest.raises(RuntimeError, match="^MCapletVolatilityStrip::MCapletVolatilityStrip failed: .*" + message):
        build(curves)


@pytest.mark.parametrize("model, flat", [("BLACK", [0.30, 0.28, 0.27, 0.25]),
                                         ("BACHELIER", [0.0080, 0.0085, 0.0088, 0.0086])])
def test_quantlib_reprices_the_cap_quotes_at_the_stripped_volatilities(model, flat):
    import QuantLib as ql
    from test_rate_options import DISCOUNT_ZEROS, ZEROS, ql_curve, zep_curve

    start, maturities, strike = "2024-04-17", ["2025-04-17", "2026-04-17", "2027-04-17", "2029-04-17"], 0.03
    stripped = zep.MCapletVolatilityStrip("CAP", strike, start, maturities, flat, zep_curve(DISCOUNT_ZEROS),
                                          zep_curve(ZEROS), model)
    volatilities = list(stripped.CapletVolatilities())
    discount, projection = ql_curve(DISCOUNT_ZEROS), ql_curve(ZEROS)

    def ql_cap(maturity, vol):
        schedule = ql.Schedule(ql.Date(17, 4, 2024), ql.Date(17, 4, int(maturity[:4])), ql.Period("3M"), ql.TARGET(),
                               ql.ModifiedFollowing, ql.ModifiedFollowing, ql.DateGeneration.Backward, False)
        instrument = ql.Cap(ql.IborLeg([1.0], schedule, ql.Euribor3M(projection), ql.Actual360()), [strike])
        quote = ql.QuoteHandle(ql.SimpleQuote(vol))
        instrument.setPricingEngine(ql.BachelierCapFloorEngine(discount, quote) if model == "BACHELIER"
                                    else ql.BlackCapFloorEngine(discount, quote, ql.Actual365Fixed()))
        return instrument

    for maturity, quote in zip(maturities, flat):
        quoted = ql_cap(maturity, quote).NPV()
        count = len(ql_cap(maturity, quote).optionletsPrice())
        caplet_by_caplet = sum(ql_cap(maturity, vol).optionletsPrice()[j] for j, vol in enumerate(volatilities[:count]))
        assert caplet_by_caplet == pytest.approx(quoted, rel=1e-8), f"cap to {maturity}"
