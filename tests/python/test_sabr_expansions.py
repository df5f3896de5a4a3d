"""SABR smiles of swaption slices in Hagan's normal expansion (Bachelier volatilities) beside the
lognormal one: the at-the-money closed form, QuantLib's SABR volatilities, the exact limits
without vol of vol, prices that agree across the two expansions, fits and refusals."""
import math
import pickle

import numpy
import pytest
import QuantLib as ql

import zep

EXPIRY = 5.0
SMILES = [  # forward, alpha, beta, rho, nu
    (0.03, 0.010, 0.0, -0.3, 0.4),
    (0.03, 0.010 / 0.03 ** 0.3, 0.3, 0.2, 0.5),
    (0.025, 0.2 * 0.025 ** 0.5, 0.5, -0.4, 0.3),
    (0.04, 0.22, 1.0, -0.2, 0.6),
]


def atm_normal_closed_form(forward, expiry, alpha, beta, rho, nu):
    """Hagan's normal expansion at the money: alpha F^beta times its first-order time correction."""
    drift = (-beta * (2 - beta) * alpha ** 2 / (24 * forward ** (2 - 2 * beta))
             + rho * alpha * nu * beta / (4 * forward ** (1 - beta)) + (2 - 3 * rho ** 2) * nu ** 2 / 24)
    return alpha * forward ** beta * (1 + drift * expiry)


def normal_smile(forward, alpha, beta, rho, nu):
    return zep.SwaptionSmile.FromParameters(forward, EXPIRY, alpha, beta, rho, nu, "BACHELIER")


@pytest.mark.parametrize("forward, alpha, beta, rho, nu", SMILES)
def test_normal_volatility_at_the_money_is_the_closed_form_and_quantlibs(forward, alpha, beta, rho, nu):
    volatility = normal_smile(forward, alpha, beta, rho, nu).Volatility(forward)
    assert volatility == pytest.approx(atm_normal_closed_form(forward, EXPIRY, alpha, beta, rho, nu), rel=1e-13)
    quantlib = ql.shiftedSabrVolatility(forward, forward, EXPIRY, alpha, beta, nu, rho, 0.0, ql.Normal)
    assert volatility == pytest.approx(quantlib, rel=1e-13)


@pytest.mark.parametrize("forward, alpha, beta, rho, nu", SMILES)
@pytest.mark.parametrize("offset", [-0.005, -0.002, 0.002, 0.005])
def test_normal_volatility_near_the_money_agrees_with_quantlibs_variant(forward, alpha, beta, rho, nu, offset):
    # QuantLib expands in log-moneyness where Hagan's normal formula expands in F - K: the two
    # agree to the expansion's order, so to a fraction of a percent this close to the money.
    strike = forward + offset
    quantlib = ql.shiftedSabrVolatility(strike, forward, EXPIRY, alpha, beta, nu, rho, 0.0, ql.Normal)
    assert normal_smile(forward, alpha, beta, rho, nu).Volatility(strike) == pytest.approx(quantlib, rel=2e-3)


@pytest.mark.parametrize("strike", [-0.02, -0.005, 0.0, 0.01, 0.05])
def test_normal_sabr_without_vol_of_vol_is_bachelier_at_any_strike_sign(strike):
    smile = zep.SwaptionSmile.FromParameters(-0.002, EXPIRY, 0.0075, 0.0, 0.5, 0.0, "BACHELIER")
    assert smile.Volatility(strike) == pytest.approx(0.0075, rel=1e-15)


@pytest.mark.parametrize("alpha, expiry", [(0.1, 1.0), (0.2, 2.0), (0.3, 5.0)])
def test_lognormal_sabr_without_vol_of_vol_has_blacks_normal_volatility_at_the_money(alpha, expiry):
    # beta 1 and nu 0 is Black's model: at the money its price F (2 N(alpha sqrt(T) / 2) - 1) is
    # Bachelier's sigma sqrt(T / 2 pi), which fixes the exact normal volatility.
    forward = 0.03
    black_price = forward * math.erf(alpha * math.sqrt(expiry) / (2 * math.sqrt(2)))
    exact = black_price * math.sqrt(2 * math.pi / expiry)
    smile = zep.SwaptionSmile.FromParameters(forward, expiry, alpha, 1.0, 0.0, 0.0, "BACHELIER")
    assert smile.Volatility(forward) == pytest.approx(exact, rel=(alpha ** 2 * expiry) ** 2 / 100)


@pytest.mark.parametrize("forward, alpha, beta, rho, nu", SMILES[1:])
@pytest.mark.parametrize("offset", [-0.01, -0.005, 0.0, 0.005, 0.01, 0.02])
def test_bachelier_and_black_prices_agree_to_the_expansions_accuracy(forward, alpha, beta, rho, nu, offset):
    # Both expansions are exact to first order in the variance alpha^2 T (here about 0.05 in
    # lognormal terms over one year): their prices part at its square, some 1e-3 of the price.
    expiry, strike = 1.0, forward + offset
    lognormal = zep.SwaptionSmile.FromParameters(forward, expiry, alpha, beta, rho, nu).Volatility(strike)
    normal = zep.SwaptionSmile.FromParameters(forward, expiry, alpha, beta, rho, nu, "BACHELIER").Volatility(strike)
    is_call = offset >= 0.0
    black = zep.ForwardOptionValue(is_call, forward, strike, expiry, lognormal, "BLACK")
    bachelier = zep.ForwardOptionValue(is_call, forward, strike, expiry, normal, "BACHELIER")
    at_the_money = zep.ForwardOptionValue(True, forward, forward, expiry, lognormal, "BLACK")
    assert bachelier == pytest.approx(black, abs=2e-3 * at_the_money), f"strike {strike}"


@pytest.mark.parametrize("forward, beta", [(-0.003, 0.0), (0.012, 0.0), (0.03, 0.5)])
def test_normal_slice_fit_reproduces_its_quotes(forward, beta):
    alpha, rho, nu = 0.009 / (forward ** beta if beta else 1.0), -0.25, 0.45
    strikes = [forward + d for d in (-0.01, -0.005, -0.0025, 0.0, 0.0025, 0.005, 0.01)]
    truth = normal_smile(forward, alpha, beta, rho, nu)
    quotes = [truth.Volatility(k) for k in strikes]
    fitted = zep.SwaptionSmile(forward, EXPIRY, strikes, quotes, beta, "BACHELIER")
    assert fitted.FitError() < 1e-9
    assert list(fitted.Parameters()) == pytest.approx([alpha, beta, rho, nu], rel=1e-5, abs=1e-7)
    assert fitted.ModelName() == "BACHELIER"
    copy = pickle.loads(pickle.dumps(fitted))
    assert copy.Volatility(forward + 0.003) == fitted.Volatility(forward + 0.003)


@pytest.mark.parametrize("strike", [-0.004, 0.0, 0.02, 0.05])
def test_shifted_lognormal_smile_is_quantlibs_shifted_sabr(strike):
    forward, shift, alpha, beta, rho, nu = -0.001, 0.02, 0.05, 0.5, -0.2, 0.35
    smile = zep.SwaptionSmile.FromParameters(forward, EXPIRY, alpha, beta, rho, nu, "SHIFTEDBLACK", shift)
    quantlib = ql.shiftedSabrVolatility(strike, forward, EXPIRY, alpha, beta, nu, rho, shift)
    assert smile.Volatility(strike) == pytest.approx(quantlib, rel=1e-12)
    assert (smile.ModelName(), smile.Shift()) == ("SHIFTEDBLACK", shift)


@pytest.mark.parametrize("build, message", [
    (lambda: zep.SwaptionSmile(0.03, 5.0, [-0.01, 0.02, 0.03], [0.01, 0.01, 0.01], 0.5, "BACHELIER"),
     "quote 0 needs a positive strike and volatility for the normal SABR smile unless beta is 0"),
    (lambda: zep.SwaptionSmile.FromParameters(-0.01, 5.0, 0.01, 0.5, 0.0, 0.3, "NORMAL"),
     "the forward swap rate -0.010000 must be positive for the normal SABR smile unless beta is 0"),
    (lambda: zep.SwaptionSmile.FromParameters(-0.01, 5.0, 0.05, 0.5, 0.0, 0.3, "SHIFTEDBLACK", 0.005),
     "must be positive for the shifted lognormal SABR smile"),
    (lambda: zep.SwaptionSmile.FromParameters(0.01, 5.0, 0.05, 0.5, 0.0, 0.3, "SHIFTEDBLACK", -0.01),
     "the shift -0.010000 must be finite and not negative"),
    (lambda: zep.SwaptionSmile.FromParameters(0.01, 5.0, 0.05, 0.5, 0.0, 0.3, "SABR"), "'SABR' is not a volatility"),
])
def test_expansion_refusals(build, message):
    with pytest.raises(Exception, match=message.replace("(", r"\(").replace(")", r"\)")):
        build()


def test_volatilities_over_an_array_are_the_volatility_at_each_strike():
    smile = normal_smile(*SMILES[0])
    strikes = numpy.array([[-0.01, 0.0, 0.01], [0.02, 0.03, 0.05]])
    volatilities = smile.Volatilities(strikes)
    assert volatilities.shape == (2, 3) and volatilities.dtype == numpy.float64
    assert volatilities.tolist() == [[smile.Volatility(k) for k in row] for row in strikes.tolist()]
