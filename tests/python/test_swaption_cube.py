"""The swaption volatility cube: each slice's SABR smile reprices its quotes, between slices the
volatility at one spread over the forward is bilinear in expiry and tenor and flat outside,
under Black and (with negative forwards) Bachelier quotes; NumPy input, pickling, refusals."""
import pickle

import numpy
import pytest
import QuantLib as ql

import zep

EXPIRIES = [1.0, 5.0, 10.0]
TENORS = [2.0, 10.0]
SPREADS = [-0.01, -0.005, 0.0, 0.005, 0.01, 0.02]
FORWARDS = numpy.array([[0.025, 0.030], [0.031, 0.034], [0.033, 0.035]])
BETA = 0.5


def lognormal_parameters(e, t):
    """A different SABR smile per slice: alpha, rho, nu."""
    return 0.2 * FORWARDS[e, t] ** (1 - BETA) * (1 - 0.02 * e), -0.2 - 0.05 * t - 0.03 * e, 0.5 - 0.08 * e


def lognormal_quote(e, t, strike):
    alpha, rho, nu = lognormal_parameters(e, t)
    return ql.sabrVolatility(strike, FORWARDS[e, t], EXPIRIES[e], alpha, BETA, nu, rho)


def lognormal_quotes():
    return numpy.array([[[lognormal_quote(e, t, FORWARDS[e, t] + s) for s in SPREADS] for t in range(len(TENORS))]
                        for e in range(len(EXPIRIES))])


@pytest.fixture(scope="module")
def cube():
    return zep.SwaptionCube(EXPIRIES, TENORS, SPREADS, FORWARDS, lognormal_quotes(), BETA)


@pytest.mark.parametrize("e", range(len(EXPIRIES)))
@pytest.mark.parametrize("t", range(len(TENORS)))
def test_every_slice_reprices_its_quotes(cube, e, t):
    forward = FORWARDS[e, t]
    for spread in SPREADS:
        quote = lognormal_quote(e, t, forward + spread)
        assert cube.Volatility(EXPIRIES[e], TENORS[t], forward, forward + spread) == pytest.approx(quote, abs=1e-8)
    assert list(cube.SliceSmile(e, t).Parameters()) == pytest.approx(
        [lognormal_parameters(e, t)[0], BETA, *lognormal_parameters(e, t)[1:]], rel=1e-5, abs=1e-6)
    assert cube.FitError() < 1e-8


@pytest.mark.parametrize("expiry, tenor", [(3.0, 6.0), (7.5, 4.0), (1.5, 9.0)])
@pytest.mark.parametrize("spread", [-0.007, 0.0, 0.012])
def test_between_slices_the_volatility_at_one_spread_is_bilinear(cube, expiry, tenor, spread):
    e = 0 if expiry < EXPIRIES[1] else 1
    t = 0
    we = (expiry - EXPIRIES[e]) / (EXPIRIES[e + 1] - EXPIRIES[e])
    wt = (tenor - TENORS[t]) / (TENORS[t + 1] - TENORS[t])

    def corner(i, j):
        return lognormal_quote(i, j, FORWARDS[i, j] + spread)

    expected = ((1 - we) * ((1 - wt) * corner(e, t) + wt * corner(e, t + 1))
                + we * ((1 - wt) * corner(e + 1, t) + wt * corner(e + 1, t + 1)))
    assert cube.Volatility(expiry, tenor, 0.029, 0.029 + spread) == pytest.approx(expected, abs=1e-8)


@pytest.mark.parametrize("expiry, tenor, e, t", [(0.25, 1.0, 0, 0), (30.0, 30.0, 2, 1), (0.5, 15.0, 0, 1)])
def test_the_cube_is_flat_beyond_its_quoted_slices(cube, expiry, tenor, e, t):
    forward = 0.028
    assert cube.Volatility(expiry, tenor, forward, forward + 0.004) == pytest.approx(
        lognormal_quote(e, t, FORWARDS[e, t] + 0.004), abs=1e-8)


def test_normal_cube_takes_negative_forwards():
    forwards = numpy.array([[-0.004, 0.001], [0.002, 0.006]])
    spreads = [-0.01, -0.005, 0.0, 0.005, 0.01]

    def quote(f, k):
        return ql.shiftedSabrVolatility(k, f, 2.0, 0.008, 0.0, 0.4, -0.2, 0.05, ql.Normal)

    # QuantLib's normal expansion works on shifted rates; its quotes are any smooth normal smile here.
    quotes = [[[quote(f, f + s) for s in spreads] for f in row] for row in forwards]
    cube = zep.SwaptionCube([1.0, 5.0], [5.0, 10.0], spreads, forwards, quotes, 0.0, "BACHELIER")
    assert cube.ModelName() == "BACHELIER"
    assert cube.FitError() < 2e-5
    assert cube.Volatility(1.0, 5.0, -0.004, -0.009) == pytest.approx(quote(-0.004, -0.009), abs=2e-5)


def test_flat_input_pickling_and_axes(cube):
    flat = zep.SwaptionCube(EXPIRIES, TENORS, SPREADS, FORWARDS.ravel().tolist(), lognormal_quotes().ravel().tolist(),
                            BETA)
    copy = pickle.loads(pickle.dumps(cube))
    for other in (flat, copy):
        assert other.Volatility(4.0, 7.0, 0.03, 0.027) == cube.Volatility(4.0, 7.0, 0.03, 0.027)
    assert (list(cube.Expiries()), list(cube.Tenors()), cube.ModelName()) == (EXPIRIES, TENORS, "BLACK")
    strikes = numpy.array([0.02, 0.031, 0.045])
    assert cube.Volatilities(4.0, 7.0, 0.03, strikes).tolist() == [cube.Volatility(4.0, 7.0, 0.03, k) for k in strikes]


@pytest.mark.parametrize("change, message", [
    (dict(forwards=FORWARDS[:, :1]), "one forward per expiry and tenor: 6 expected, 3 given"),
    (dict(volatilities=lognormal_quotes()[:, :, :5]), "one volatility per expiry, tenor and strike spread: 36"),
    (dict(expiries=[1.0, 5.0, 5.0]), "the expiries must rise"),
    (dict(tenors=[-2.0, 10.0]), "every tenor must be positive"),
    (dict(spreads=[-0.05] + SPREADS[1:]), "the slice 1y into 2y: quote 0 needs a positive strike"),
    (dict(model="SABR"), "'SABR' is not a volatility model"),
])
def test_cube_refusals(change, message):
    arguments = dict(expiries=EXPIRIES, tenors=TENORS, spreads=SPREADS, forwards=FORWARDS,
                     volatilities=lognormal_quotes(), beta=BETA, model="BLACK")
    arguments.update(change)
    with pytest.raises(Exception, match=message):
        zep.SwaptionCube(*arguments.values())


def test_cube_reads_refuse_what_lies_outside_it(cube):
    with pytest.raises(Exception, match="the expiry, tenor, forward and strike must be finite"):
        cube.Volatility(float("nan"), 5.0, 0.03, 0.03)
    with pytest.raises(Exception, match="the slice \\(3, 0\\) is outside the cube"):
        cube.SliceSmile(3, 0)
    with pytest.raises(Exception, match="the strike -0.010000 is -0.040000 from the forward; a neighbouring slice at "
                                        "that spread fails: the strike .* must be positive for the lognormal SABR"):
        cube.Volatility(5.0, 5.0, 0.03, 0.03 - 0.04)
