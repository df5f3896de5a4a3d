"""Closed forms at the edges of their domain: volatility 1e-8 to 5, 1e-10 to 50 years, rates of
-50% to +50%, spots from 1e-300 to 1e300. Every price, Greek and solver result is a finite number
or a library exception with a message; the books mark exactly the rows the engine refuses."""
import datetime
import math
from typing import NamedTuple

import numpy as np
from hypothesis import given, strategies as st

import zep
from extreme_inputs import (EXTREMES, MONEYNESS, RATES, SPOTS, TIMES, VOLATILITIES, built_or_refused,
                            figure_or_library_error, log_uniform, within)


class Market(NamedTuple):
    kind: int
    strike: float
    vol: float
    expiry: float
    delivery: float
    rd: float
    rf: float
    spot: float

    def engine(self, form=zep.BSVanilla, kind=None):
        return form(self.kind if kind is None else kind, self.strike, self.vol, self.expiry, self.delivery,
                    self.rd, self.rf, self.spot)


@st.composite
def markets(draw):
    spot = draw(SPOTS)
    strike = spot * draw(MONEYNESS) if draw(st.booleans()) else draw(SPOTS)
    expiry = draw(TIMES)
    delivery = expiry + draw(st.just(0.0) | log_uniform(1e-10, 1.0))
    return Market(draw(st.sampled_from([0, 1])), strike, draw(VOLATILITIES), expiry, delivery, draw(RATES),
                  draw(RATES), spot)


ENGINE_FIGURES = ["Price", "Delta", "ForwardDelta", "Gamma", "Vega", "Theta", "ThetaPerYear", "Rho", "Phi",
                  "Vanna", "Volga", "DvegaDvol", "DvegaDvol2", "DvegaDspot", "Dd1Dvol", "VegaDigital",
                  "VegaIDDigital", "GetSpot", "GetForward"]


def figures_of(engine):
    values = {name: figure_or_library_error(getattr(engine, name)) for name in ENGINE_FIGURES}
    values["premium-adjusted Delta"] = figure_or_library_error(engine.Delta, False)
    values["premium-adjusted ForwardDelta"] = figure_or_library_error(engine.ForwardDelta, False)
    return values


@EXTREMES
@given(market=markets(), form=st.sampled_from([zep.BSVanilla, zep.MBSVanilla]))
def test_engine_figures_are_finite_and_within_arbitrage_bounds_or_refused(market, form):
    engine = built_or_refused(market.engine, form)
    if engine is None:
        return
    values = figures_of(engine)
    dff, dfd = math.exp(-market.rf * market.delivery), math.exp(-market.rd * market.delivery)
    # The bounds themselves may lie beyond double precision; then only finiteness was checked.
    asset, cash = market.spot * dff, market.strike * dfd
    scale = max(asset, cash)
    if math.isfinite(scale):
        price, delta = values["Price"], values["Delta"]
        if price is not None:
            within(price, max(asset - cash, 0.0) if market.kind == 0 else max(cash - asset, 0.0),
                   asset if market.kind == 0 else cash, scale, f"price of {market}")
        if delta is not None:
            within(delta, 0.0 if market.kind == 0 else -dff, dff if market.kind == 0 else 0.0, 1.0,
                   f"spot delta of {market}")
    for name in ["Gamma", "Vega"]:
        assert values[name] is None or values[name] >= 0.0, (name, values[name], market)


@EXTREMES
@given(market=markets())
def test_put_call_parity_holds_at_the_extremes(market):
    call = built_or_refused(market.engine, zep.BSVanilla, 0)
    put = built_or_refused(market.engine, zep.BSVanilla, 1)
    if call is None or put is None:
        assert call is None and put is None, f"only one side refused: {market}"
        return
    call_price, put_price = figure_or_library_error(call.Price), figure_or_library_error(put.Price)
    asset = market.spot * math.exp(-market.rf * market.delivery)
    cash = market.strike * math.exp(-market.rd * market.delivery)
    if None in (call_price, put_price) or not math.isfinite(asset + cash):
        return
    within(call_price - put_price, asset - cash, asset - cash, max(asset, cash), f"parity of {market}")


@EXTREMES
@given(market=markets())
def test_forward_quoted_engine_is_finite_or_refused(market):
    forward = market.spot * math.exp((market.rd - market.rf) * market.delivery)
    engine = built_or_refused(zep.BSVanilla.FromForward, market.kind, market.strike, market.vol,
                              market.expiry, market.delivery, market.rd, market.rf, forward)
    if engine is not None:
        figures_of(engine)


@EXTREMES
@given(market=markets())
def test_solvers_are_finite_or_refused(market):
    engine = built_or_refused(market.engine)
    premium = engine and figure_or_library_error(engine.Price)
    arguments = (market.expiry, market.delivery, market.rd, market.rf, market.spot)
    if premium is not None:
        figure_or_library_error(zep.BSVanilla.VolImpliedFromPrice, market.kind, market.strike, *arguments, premium)
        figure_or_library_error(zep.MBSVanilla.StrikeImpliedFromPrice, market.kind, premium, market.vol, *arguments)
    delta = engine and figure_or_library_error(engine.Delta)
    if delta is not None:
        figure_or_library_error(zep.MBSVanilla.StrikeImpliedFromDelta, market.kind, delta, market.vol, *arguments,
                                market.strike)
    figure_or_library_error(zep.BSVanilla.DeltaImpliedFromStrike, market.kind, market.strike, market.vol, *arguments)


BOOK_FIGURES = ["Price", "Delta", "Gamma", "Vega", "Theta"]


def columns(rows):
    return [np.array([getattr(row, field) for row in rows], dtype=float) for field in Market._fields]


def engine_figures_or_none(row):
    """The engine's five book figures of a row, or None where it refuses any of them."""
    engine = built_or_refused(row.engine)
    values = engine and [figure_or_library_error(getattr(engine, name)) for name in BOOK_FIGURES]
    return None if not values or None in values else values


@EXTREMES
@given(rows=st.lists(markets(), min_size=4, max_size=12))
def test_book_rows_are_the_engine_figures_or_nan_where_the_engine_refuses(rows):
    kinds, strikes, vols, expiries, deliveries, rd, rf, spots = columns(rows)
    book = zep.PriceVanillaBook(kinds, strikes, vols, expiries, deliveries, rd, rf, spots)
    for i, row in enumerate(rows):
        expected = engine_figures_or_none(row)
        got = [float(figure[i]) for figure in book]
        if expected is None:
            assert all(math.isnan(value) for value in got), (row, got)
            continue
        for name, value, reference in zip(BOOK_FIGURES, got, expected):
            # Four rows at a time run on vector exp, log and erfc, a few ulp from the scalar ones:
            # relative agreement, or absolute where the figure is a difference of far larger terms;
            # below the normal range (1e-308) doubles keep few digits, and both are just tiny.
            assert math.isfinite(value) and (math.isclose(value, reference, rel_tol=1e-7, abs_tol=1e-300) or
                                             abs(value - reference) <= 1e-9 * term_scale(name, row)), (
                name, value, reference, row)


def term_scale(name, row):
    """The size of the terms a figure is a difference of, for comparing it near zero."""
    asset = row.spot * math.exp(-row.rf * row.delivery)
    cash = row.strike * math.exp(-row.rd * row.delivery)
    return {"Price": asset + cash, "Delta": 1.0, "Gamma": 0.0, "Vega": 0.0,
            "Theta": (asset * (row.vol / math.sqrt(row.expiry) + abs(row.rf)) + cash * abs(row.rd)) / 365.0}[name]


@EXTREMES
@given(rows=st.lists(markets(), min_size=8, max_size=16))
def test_implied_volatility_book_is_finite_or_nan_where_the_solver_refuses(rows):
    premiums = []
    for row in rows:
        engine = built_or_refused(row.engine)
        premium = engine and figure_or_library_error(engine.Price)
        premiums.append(1.0 if premium is None else premium)
    kinds, strikes, _, expiries, deliveries, rd, rf, spots = columns(rows)
    vols = zep.ImpliedVolatilityBook(kinds, strikes, expiries, deliveries, rd, rf, spots, premiums)
    for row, premium, vol in zip(rows, premiums, vols):
        single = figure_or_library_error(zep.BSVanilla.VolImpliedFromPrice, row.kind, row.strike, row.expiry,
                                         row.delivery, row.rd, row.rf, row.spot, premium)
        assert not math.isinf(vol), (row, premium)
        if single is None:
            assert math.isnan(vol), (row, premium, vol)
        else:
            assert vol == np.float64(single) or abs(vol - single) <= 1e-9, (row, premium, vol, single)


REFERENCE = datetime.date(2024, 1, 2)
OPTION_FIGURES = ["Price", "PV", "MarketValue", "DiscMarketValue", "PnL", "DiscPnL", "Payoff", "Delta",
                  "ForwardDelta", "Gamma", "Vega", "Theta", "Rho", "Phi", "Vanna", "Volga", "DvegaDspot",
                  "DvegaDvol", "DvegaDvol2", "Dd1Dvol", "VegaDigital", "VegaIDDigital", "GetForward"]


def flat_curve(rate):
    return zep.YieldCurve.FromZeroRates(REFERENCE, [REFERENCE + datetime.timedelta(days=365 * 52)], [rate],
                                        zep.Continuous, "act/365")


@EXTREMES
@given(market=markets(), side=st.sampled_from([1, -1]), face=log_uniform(1.0, 1e9),
       carry=st.sampled_from(["rates", "curves"]), quote=st.sampled_from(["spot", "forward"]))
def test_booked_option_figures_are_finite_or_refused(market, side, face, carry, quote):
    # The option counts whole days: the shortest expiry is today, the longest fifty years.
    expiry = REFERENCE + datetime.timedelta(days=round(market.expiry * 365))
    delivery = expiry + datetime.timedelta(days=round((market.delivery - market.expiry) * 365))
    rates = (market.rd, market.rf) if carry == "rates" else (flat_curve(market.rd), flat_curve(market.rf))
    terms = (side, market.kind, face, market.strike)
    dates = (REFERENCE, expiry, expiry, delivery)
    if quote == "spot":
        option = built_or_refused(zep.MVanillaOption, *terms, market.spot, *dates, *rates, market.vol)
    else:
        forward = market.spot * math.exp((market.rd - market.rf) * (delivery - REFERENCE).days / 365)
        option = built_or_refused(zep.MVanillaOption.FromForward, *terms, forward, *dates, *rates, market.vol)
    if option is None:
        return
    option.SetPremium(market.spot * 0.01)
    for name in OPTION_FIGURES:
        figure_or_library_error(getattr(option, name))
    figure_or_library_error(option.Delta, False)
    figure_or_library_error(option.DeltaPrice, "spot_Volatility", 0.01)
    figure_or_library_error(option.GammaPrice, "spot_Volatility", 0.01)
