import datetime
import math

import numpy as np
import pytest
from scipy.special import ndtr

import zep


def reference_book(phi, strike, vol, expiry, delivery, rd, rf, spot):
    """Garman-Kohlhagen written out independently: discounting to delivery, volatility to expiry."""
    dfd, dff = np.exp(-rd * delivery), np.exp(-rf * delivery)
    forward = spot * dff / dfd
    root_t = np.sqrt(expiry)
    d1 = (np.log(forward / strike) + 0.5 * vol * vol * expiry) / (vol * root_t)
    d2 = d1 - vol * root_t
    density = np.exp(-0.5 * d1 * d1) / math.sqrt(2 * math.pi)
    price = phi * (spot * dff * ndtr(phi * d1) - strike * dfd * ndtr(phi * d2))
    delta = phi * dff * ndtr(phi * d1)
    gamma = dff * density / (spot * vol * root_t)
    vega = spot * dff * density * root_t
    theta = (-spot * np.exp(-rf * expiry) * density * vol / (2 * root_t)
             + phi * rf * spot * np.exp(-rf * expiry) * ndtr(phi * d1)
             - phi * rd * strike * np.exp(-rd * expiry) * ndtr(phi * d2)) / 365.0
    return price, delta, gamma, vega, theta


@pytest.fixture
def book():
    rng = np.random.default_rng(42)
    n = 2000
    spot = rng.uniform(50, 150, n)
    expiry = rng.uniform(0.05, 3.0, n)
    return dict(types=rng.integers(0, 2, n).astype(float), strikes=spot * rng.uniform(0.7, 1.3, n),
                vols=rng.uniform(0.05, 0.6, n), expiries=expiry,
                deliveries=expiry + rng.uniform(0, 0.02, n), rd=rng.uniform(-0.01, 0.08, n),
                rf=rng.uniform(-0.01, 0.08, n), spots=spot)


def test_book_prices_and_greeks_match_an_independent_formula(book):
    result = zep.PriceVanillaBook(**book)
    phi = np.where(book["types"] == 0, 1.0, -1.0)
    expected = reference_book(phi, book["strikes"], book["vols"], book["expiries"], book["deliveries"],
                              book["rd"], book["rf"], book["spots"])
    for name, got, want in zip(["price", "delta", "gamma", "vega", "theta"], result, expected):
        np.testing.assert_allclose(got, want, rtol=1e-10, atol=1e-12, err_msg=name)


def test_book_splits_over_threads_without_changing_rows():
    rng = np.random.default_rng(1)
    n = 50001  # large enough for two threads, odd so that the halves differ
    strikes = rng.uniform(80, 120, n)
    prices, *_ = zep.PriceVanillaBook(0, strikes, 0.2, 1.0, 1.0, 0.03, 0.01, 100.0)
    single = [zep.MBSVanilla.OptionPrice(0, k, 0.2, 1.0, 1.0, 0.03, 0.01, 100.0) for k in strikes[::997]]
    np.testing.assert_allclose(prices[::997], single, rtol=1e-13)


def test_book_broadcasts_scalars_and_keeps_the_shape():
    prices, delta, *_ = zep.PriceVanillaBook([[0, 1]], 100.0, 0.2, 1.0, 1.0, 0.05, 0.0, 100.0)
    assert prices.shape == (1, 2)
    assert prices[0, 0] == pytest.approx(10.450583572185565, abs=1e-12)
    assert prices[0, 1] == pytest.approx(5.573526022256971, abs=1e-12)


@pytest.mark.parametrize("row", [
    dict(types=2.0), dict(types=0.5), dict(vols=0.0), dict(vols=float("nan")), dict(spots=-1.0),
])
def test_book_rows_the_engine_refuses_come_out_as_nan(row):
    good = dict(types=0.0, strikes=100.0, vols=0.2, expiries=1.0, deliveries=1.0, rd=0.05, rf=0.0,
                spots=100.0)
    columns = {name: np.array([row.get(name, value), value]) for name, value in good.items()}
    outputs = zep.PriceVanillaBook(**columns)
    for values in outputs:
        assert math.isnan(values[0]) and not math.isnan(values[1])


def test_book_rejects_mismatched_lengths_and_non_numbers():
    with pytest.raises(ValueError):
        zep.PriceVanillaBook([0, 1, 0], [100, 100], 0.2, 1.0, 1.0, 0.0, 0.0, 100.0)
    with pytest.raises(ValueError):
        zep.PriceVanillaBook([0], ["x"], 0.2, 1.0, 1.0, 0.0, 0.0, 100.0)
    with pytest.raises(TypeError):
        zep.PriceVanillaBookInto(*([np.zeros(2, dtype=np.float32)] * 13))
    with pytest.raises(ValueError, match="same length"):
        zep.PriceVanillaBookInto(*([np.zeros(2)] * 12 + [np.zeros(3)]))


def test_implied_volatility_book_round_trips(book):
    prices, *_ = zep.PriceVanillaBook(**book)
    vols = zep.ImpliedVolatilityBook(book["types"], book["strikes"], book["expiries"], book["deliveries"],
                                     book["rd"], book["rf"], book["spots"], prices)
    # Deep out-of-the-money short-dated rows carry almost no vega; compare where vega matters.
    *_, vega, _ = reference_book(np.where(book["types"] == 0, 1.0, -1.0), book["strikes"], book["vols"],
                                 book["expiries"], book["deliveries"], book["rd"], book["rf"], book["spots"])
    live = vega > 1e-3
    np.testing.assert_allclose(vols[live], book["vols"][live], rtol=1e-7)


def test_implied_volatility_book_gives_nan_where_the_solver_cannot():
    vols = zep.ImpliedVolatilityBook([0, 0, 5], 100, 1, 1, 0.0, 0.0, 100, [8.0, float("nan"), 8.0])
    assert vols[0] == pytest.approx(0.2015, abs=1e-3)
    assert math.isnan(vols[1]) and math.isnan(vols[2])


def test_put_call_parity_through_the_wrapper():
    call = zep.MBSVanilla(0, 1.12, 0.11, 0.5, 0.505, 0.045, 0.03, 1.10)
    put = zep.MBSVanilla(1, 1.12, 0.11, 0.5, 0.505, 0.045, 0.03, 1.10)
    parity = 1.10 * math.exp(-0.03 * 0.505) - 1.12 * math.exp(-0.045 * 0.505)
    assert call.Price() - put.Price() == pytest.approx(parity, abs=1e-14)


def test_wrapper_failures_carry_the_operation_prefix():
    with pytest.raises(RuntimeError) as bad_vol:
        zep.MBSVanilla(0, 100, 0.0, 1, 1, 0.05, 0, 100)
    assert str(bad_vol.value).startswith(
        "MBSVanilla::MBSVanilla failed: volatility must be a positive percentage! "
        "(zep::BSVanilla::SetBasicParameters: BSVanilla.cpp, l.")
    with pytest.raises(RuntimeError) as bad_spot:
        zep.MBSVanilla(0, 100, 0.2, 1, 1, 0.05, 0, -1)
    assert str(bad_spot.value) == "MBSVanilla::MBSVanilla failed:  Spot must be positive."
    with pytest.raises(RuntimeError) as empty:
        zep.MBSVanilla().Gamma()
    assert str(empty.value).startswith("MBSVanilla::Gamma failed: not initialized! (zep::MBSVanilla::Gamma: ")
    with pytest.raises(RuntimeError, match="^MBSVanilla::VolImpliedFromForwardPrice failed: "
                                           "VolatilityImpliedFromForwardPrice: volatility limit cannot"):
        zep.MBSVanilla.VolImpliedFromForwardPrice(0, 100, 100, 1, 5, -1.0)


def test_engine_failures_reach_python_bare_or_located():
    with pytest.raises(RuntimeError) as bare:
        zep.BSVanilla.FromForward(1, 100, 0.2, 1, 1, 0.0, 0.0, -3.0)
    assert str(bare.value) == " Forward must be positive."
    with pytest.raises(RuntimeError) as newton:
        zep.BSVanilla.StrikeImpliedFromPrice(0, 3.0, 0.2, 1, 1, 0, 0, 100, 100, 1e-10, 1)
    assert str(newton.value) == " Newton-Raphson didn't converge: can't find implied strike."


def test_spot_sentinel_and_solvers_from_python():
    engine = zep.MBSVanilla.FromForward(0, 100, 0.2, 2.0, 2.0, 0.10, 0.0, 121.0)
    assert engine.GetSpot() == pytest.approx(100.0, abs=1e-12)
    delta = zep.MBSVanilla.DeltaImpliedFromStrike(1, 95, 0.15, 0.5, 0.5, 0.02, 0.01, 100)
    strike = zep.MBSVanilla.StrikeImpliedFromDelta(1, delta, 0.15, 0.5, 0.5, 0.02, 0.01, 100, 100,
                                                   zep.DeltaKind_Spot)
    assert strike == pytest.approx(95, rel=1e-8)
    assert zep.MBSVanilla.DeltaImpliedFromStrike(0, 100, -0.2, 1, 1, 0, 0, 100) == -987654321.0


def test_theta_is_per_day_and_the_year_figure_is_kept():
    engine = zep.BSVanilla(0, 100, 0.2, 1, 1, 0.05, 0, 100)
    assert engine.Theta() * 365.0 == pytest.approx(engine.ThetaPerYear(), rel=1e-15)


def test_hist_vols_accepts_date_texts_and_datetimes():
    prices = [100.0, 102.0, 101.0, 103.5, 102.5, 104.0]
    days = [datetime.date(2024, 3, d) for d in range(4, 10)]
    by_date = zep.HistVols(days, prices)
    by_text = zep.HistVols([d.isoformat() for d in days], prices)
    returns = np.diff(np.log(prices))
    expected = [np.std(returns[i:i + 3], ddof=1) * math.sqrt(252) for i in range(3)]
    np.testing.assert_allclose(by_date.setAll(3), expected, rtol=1e-12)
    assert by_text.setAll(3) == by_date.Vols()
    assert [str(d) for d in by_date.VolDates()] == [str(zep.Date(d.isoformat())) for d in days[3:]]


@pytest.mark.parametrize("dates,prices,message", [
    (["2024-01-02", "2024-01-03"], [1.0, 2.0, 3.0], "dates and quotes not same size!"),
    (["2024-01-02", "2024-01-03"], [1.0, 2.0],
     "HistVols: need at least 3 price observations for historical volatility"),
])
def test_hist_vols_construction_messages(dates, prices, message):
    with pytest.raises(RuntimeError, match="^" + message):
        zep.HistVols(dates, prices)


def test_hist_vols_rejects_non_dates():
    with pytest.raises(TypeError):
        zep.HistVols(["2024-01-02", 5, "2024-01-04"], [1.0, 2.0, 3.0])
    with pytest.raises(TypeError):
        zep.HistVols(["2024-01-02", "2024-01-03", "2024-01-04"], [1.0, "x", 3.0])
    with pytest.raises(RuntimeError, match="Day outside of month range"):
        zep.HistVols(["2024-01-02", "2024-02-30", "2024-01-04"], [1.0, 2.0, 3.0])
