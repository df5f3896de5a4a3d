"""Digital options: Black-Scholes closed forms and Greeks against strike and market finite
differences of the vanilla, parity, and the smile-consistent digital against the strike
derivative of the smile vanilla."""
import math

import pytest

import zep

K, VOL, T, TD, RD, RF, S = 1.1, 0.11, 0.75, 0.76, 0.035, 0.02, 1.08
CASH_CALL, CASH_PUT, ASSET_CALL, ASSET_PUT = 0, 1, 2, 3


def digital(kind, strike=K, vol=VOL, t=T, td=TD, rd=RD, spot=S, method=0):
    return zep.DigitalOptionBS(kind, strike, vol, t, td, rd, RF, spot, 2.5, method)


def vanilla(option_type, strike, vol=VOL):
    return zep.BSVanilla(option_type, strike, vol, T, TD, RD, RF, S).Price()


@pytest.mark.parametrize("strike", [0.9, 1.08, 1.1, 1.3])
def test_digitals_are_the_strike_derivatives_of_vanillas(strike):
    h = strike * 1e-5
    for option_type, kind, sign in ((0, CASH_CALL, -1.0), (1, CASH_PUT, 1.0)):
        derivative = sign * (vanilla(option_type, strike + h) - vanilla(option_type, strike - h)) / (2 * h)
        assert digital(kind, strike).Price() == pytest.approx(2.5 * derivative, rel=1e-6)
    # S 1{S > K} = (S - K)+ + K 1{S > K}, and its put mirror.
    assert digital(ASSET_CALL, strike).Price() == pytest.approx(
        2.5 * vanilla(0, strike) + strike * digital(CASH_CALL, strike).Price(), rel=1e-12)
    assert digital(ASSET_PUT, strike).Price() == pytest.approx(
        strike * digital(CASH_PUT, strike).Price() - 2.5 * vanilla(1, strike), rel=1e-10)


def test_calls_and_puts_add_up_to_the_discounted_payouts():
    assert digital(CASH_CALL).Price() + digital(CASH_PUT).Price() == pytest.approx(2.5 * math.exp(-RD * TD), rel=1e-14)
    assert digital(ASSET_CALL).Price() + digital(ASSET_PUT).Price() == pytest.approx(2.5 * S * math.exp(-RF * TD),
                                                                                     rel=1e-14)


@pytest.mark.parametrize("kind", [CASH_CALL, CASH_PUT, ASSET_CALL, ASSET_PUT])
def test_greeks_are_the_finite_differences_of_the_price(kind):
    option = digital(kind)
    dS, dv = S * 1e-4, 1e-5
    assert option.Delta() == pytest.approx(
        (digital(kind, spot=S + dS).Price() - digital(kind, spot=S - dS).Price()) / (2 * dS), rel=1e-6)
    assert option.Gamma() == pytest.approx(
        (digital(kind, spot=S + dS).Price() - 2 * option.Price() + digital(kind, spot=S - dS).Price()) / dS**2,
        rel=1e-4)
    assert option.Vega() == pytest.approx(
        (digital(kind, vol=VOL + dv).Price() - digital(kind, vol=VOL - dv).Price()) / (2 * dv), rel=1e-6)
    assert option.Rho() == pytest.approx(option.ComputeRhoSym(), rel=1e-6)
    assert option.Theta() == pytest.approx(digital(kind, t=T - 1 / 365, td=TD - 1 / 365).Price() - option.Price(),
                                           rel=1e-12)


@pytest.mark.parametrize("kind", [CASH_CALL, CASH_PUT, ASSET_CALL, ASSET_PUT])
def test_the_call_spread_replicates_the_digital(kind):
    assert digital(kind, method=1).Price() == pytest.approx(digital(kind).Price(), rel=1e-7)
    assert digital(kind, method=1).Delta() == pytest.approx(digital(kind).Delta(), rel=1e-5)


def test_an_expired_digital_pays_on_spot_undiscounted():
    assert digital(CASH_CALL, t=0.0, td=0.0).Price() == 0.0  # spot below the strike
    assert digital(ASSET_PUT, t=0.0, td=0.0).Price() == pytest.approx(2.5 * S)


@pytest.mark.parametrize("call, message", [
    (lambda: digital(CASH_CALL, spot=-1.0), "Invalid spot price, time or volatility"),
    (lambda: digital(CASH_CALL, vol=0.0), "Invalid spot price, time or volatility"),
    (lambda: digital(CASH_CALL, t=-0.1), "Invalid spot price, time or volatility"),
    (lambda: digital(CASH_CALL, method=5).Price(), "Unknown pricing method for DigitalOptionBS!"),
    (lambda: digital(CASH_CALL, method=5).Delta(), "unknow pricing method for DigitalOptinBS!"),
    (lambda: digital(CASH_CALL, method=5).Gamma(), "unknow pricing method for DigitalOptinBS!"),
    (lambda: digital(CASH_CALL, method=5).Vega(), "unknown pricing method for DigitalOptionBS!"),
    (lambda: digital(CASH_CALL, method=5).Rho(), "unknown pricing method for DigitalOptionBS!"),
    (lambda: digital(7).Price(), "Unsupported digital option type"),
    (lambda: digital(7).ComputeRhoSym(), r"Unknown DigitalType in ComputeRhoSym\."),
])
def test_bad_digitals_fail_with_their_message(call, message):
    with pytest.raises(RuntimeError, match=message):
        call()


ATM, RR, BF = 0.09, -0.012, 0.004


def smile_digital(kind, strike, rr=RR, bf=BF):
    return zep.DigitalOptionVV(S, RD, RF, ATM, T, TD, rr, bf, strike, kind, 0, False, 1.0)


@pytest.mark.parametrize("strike", [1.02, 1.07, 1.1, 1.14])
def test_the_smile_digital_is_minus_the_strike_derivative_of_the_smile_vanilla(strike):
    h = strike * 1e-5

    def smile_call(k):
        return zep.BSVanilla(0, k, smile_digital(CASH_CALL, k).StrikeVolatility(), T, TD, RD, RF, S).Price()

    derivative = -(smile_call(strike + h) - smile_call(strike - h)) / (2 * h)
    assert smile_digital(CASH_CALL, strike).Price() == pytest.approx(derivative, rel=1e-6)


@pytest.mark.parametrize("kind", [CASH_CALL, CASH_PUT, ASSET_CALL, ASSET_PUT])
def test_a_flat_smile_gives_the_black_scholes_digital(kind):
    flat = zep.DigitalOptionBS(kind, 1.1, ATM, T, TD, RD, RF, S).Price()
    assert smile_digital(kind, 1.1, rr=0.0, bf=0.0).Price() == pytest.approx(flat, rel=1e-12)


def test_an_unknown_smile_digital_type_fails():
    with pytest.raises(RuntimeError, match="Not supported digital type!"):
        smile_digital(9, 1.1).Price()
