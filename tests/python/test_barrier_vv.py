"""The Vanna-Volga barrier: what it must give back by construction of the three pivots, its
parity, its survival probability's limits, its messages and its trace."""
import math
import os
import subprocess
import sys

import pytest

import zep

S, RD, RF, ATM, T, TD = 1.08, 0.035, 0.02, 0.09, 0.5, 0.505
CALL, PUT = 0, 1
DOWN_IN, DOWN_OUT, UP_IN, UP_OUT, DOUBLE_IN, DOUBLE_OUT = 2, 3, 4, 5, 6, 7


def vv(strike, option_type, barrier_type, *levels, rr=-0.01, bf=0.003, delta_type=0, premium_adjusted=False):
    return zep.EuropeanBarrierVV_Fisher(S, RD, RF, ATM, T, TD, rr, bf, strike, option_type, barrier_type, *levels,
                                        delta_type, premium_adjusted)


def bs(strike, option_type, barrier_type, *levels, vol=ATM):
    return zep.EuropeanBarrierBS(option_type, barrier_type, strike, *levels, vol, T, TD, RD, RF, S).Price()


def pivot_strike(option_type, delta, vol, kind):
    """The 25-delta strike under the same convention, from the vanilla engine alone."""
    return zep.BSVanilla.StrikeImpliedFromDelta(option_type, delta, vol, T, TD, RD, RF, S, S * math.exp((RD - RF) * TD),
                                                kind)


@pytest.mark.parametrize("barrier_type, levels", [(DOWN_OUT, (1.0,)), (UP_OUT, (1.15,)), (DOUBLE_OUT, (1.0, 1.15)),
                                                  (UP_IN, (1.15,)), (DOUBLE_IN, (1.0, 1.15))])
def test_a_flat_smile_leaves_the_black_scholes_knock_out(barrier_type, levels):
    knock_out_type = barrier_type + 1 if barrier_type in (DOWN_IN, UP_IN, DOUBLE_IN) else barrier_type
    option = vv(1.09, CALL, barrier_type, *levels, rr=0.0, bf=0.0)
    assert option.priceKO_Fisher() == bs(1.09, CALL, knock_out_type, *levels)


# A barrier out of reach leaves a vanilla, and Vanna-Volga prices the pivot vanillas at their own
# market volatilities, up to the truncation error of the bumped Greeks (a few parts in 1e4; the
# Black-Scholes price at the ATM volatility is several percent away).
@pytest.mark.parametrize("delta_type, premium_adjusted, kind", [(0, False, zep.DeltaKind_Spot),
                                                                 (0, True, zep.DeltaKind_SpotPremiumAdjusted),
                                                                 (1, False, zep.DeltaKind_Forward),
                                                                 (1, True, zep.DeltaKind_ForwardPremiumAdjusted)])
@pytest.mark.parametrize("option_type, delta, vol", [(CALL, 0.25, ATM + 0.003 - 0.005), (PUT, -0.25, ATM + 0.003 + 0.005)])
def test_far_barriers_price_the_pivot_vanillas_at_their_market_volatility(delta_type, premium_adjusted, kind,
                                                                           option_type, delta, vol):
    strike = pivot_strike(option_type, delta, vol, kind)
    market = zep.BSVanilla(option_type, strike, vol, T, TD, RD, RF, S).Price()
    option = vv(strike, option_type, UP_OUT if option_type == PUT else DOWN_OUT, 1e4 if option_type == PUT else 1e-4,
                delta_type=delta_type, premium_adjusted=premium_adjusted)
    assert option.SurvivalProbability() == pytest.approx(1.0, abs=1e-12)
    assert option.Price() == pytest.approx(market, rel=5e-4)


@pytest.mark.parametrize("option_type, barrier_in, level", [(CALL, DOWN_IN, 1.0), (PUT, UP_IN, 1.15)])
def test_knock_in_and_knock_out_make_the_smile_vanilla(option_type, barrier_in, level):
    # At the 25-delta call strike the smile is the 25-delta call volatility.
    vol = ATM + 0.003 - 0.005
    strike = pivot_strike(CALL, 0.25, vol, zep.DeltaKind_Spot)
    smile_vanilla = zep.BSVanilla(option_type, strike, vol, T, TD, RD, RF, S).Price()
    total = vv(strike, option_type, barrier_in, level).Price() + vv(strike, option_type, barrier_in + 1, level).Price()
    assert total == pytest.approx(smile_vanilla, rel=1e-14)


def test_survival_probability_limits():
    assert vv(1.09, CALL, DOUBLE_OUT, 1.10, 1.20).SurvivalProbability() == 1.0  # spot below the corridor
    assert vv(1.09, CALL, DOWN_OUT, 1e-6).SurvivalProbability() == pytest.approx(1.0, abs=1e-12)
    assert vv(1.09, CALL, UP_OUT, S * 1.0000001).SurvivalProbability() == pytest.approx(0.0, abs=1e-3)
    for levels in ((1.0, 1.15), (1.07, 1.09), (0.5, 2.0)):
        assert 0.0 <= vv(1.09, CALL, DOUBLE_OUT, *levels).SurvivalProbability() <= 1.0


@pytest.mark.parametrize("arguments, message", [
    ((1.09, CALL, DOUBLE_OUT, 1.15, 1.0), "EuropeanBarrierVV_Fisher: barrierLow must be less than barrierUp."),
    ((1.09, CALL, UP_OUT, 1.0, 1.15), "EuropeanBarrierVV_Fisher: double-barrier ctor requires DKI/DKO type."),
    ((1.09, CALL, DOUBLE_IN, 1.15), "EuropeanBarrierVV_Fisher: use the double-barrier constructor for DKI/DKO."),
])
def test_constructors_refuse_mismatched_barriers(arguments, message):
    with pytest.raises(RuntimeError, match=message):
        vv(*arguments)


def test_knock_in_pricing_is_refused_on_a_knock_out():
    with pytest.raises(RuntimeError, match="priceKI_Fisher called on non-KI barrierType"):
        vv(1.09, CALL, UP_OUT, 1.15).priceKI_Fisher()


def test_the_trace_writes_every_step_to_the_log():
    script = ("import zep; o = zep.EuropeanBarrierVV_Fisher(1.08, 0.035, 0.02, 0.09, 0.5, 0.505, -0.01, 0.003, "
              "1.09, 0, 4, 1.15, 0, False); o.SetTrace(True); o.Price()")
    environment = dict(os.environ, ZEP_LOGLEVEL="info", PYTHONPATH=os.path.dirname(os.path.dirname(zep.__file__)))
    run = subprocess.run([sys.executable, "-c", script], env=environment, capture_output=True, text=True, timeout=60)
    assert run.returncode == 0, run.stderr
    for text in ("[Fisher-KO DEBUG]", "(survival prob, no-touch)",
                 "( = vega*Omega_atm + vanna*Omega_rr + volga*Omega_bf )", "KO_VV in pips",
                 "[Fisher-KI DEBUG] parity decomposition: KI = vanilla_smile - KO_VV", "[Fisher-VanillaSmile DEBUG]",
                 "(no VV adjustment applied ? smile vol already in price)"):
        assert text in run.stderr, text
