"""Text a user passes (labels, quotes) is refused by its message however long it is: matching it
must neither exhaust the stack nor take exponential time."""
import pytest

import zep
from test_fx_vol_surface import LABELS, QUOTES, REFERENCE, SPOT, TENORS, USD, EUR, expiry, flat, surface
from test_vanilla_option import MARKETS, option

DIGITS = "1" * 200_000


def test_a_long_strike_quote_is_an_invalid_strike_quote():
    with pytest.raises(RuntimeError, match="is an invalid strike quote"):
        option(*MARKETS[0]).StrikeFromQuote("CALL", DIGITS + " OTM")


@pytest.mark.parametrize("label, message", [
    (DIGITS + "RR", "not valid RR/BF/SS delta!"),
    ("RR " + DIGITS + ".5", "not valid RR/BF/SS delta!"),
    (DIGITS + "XX", "Unknown deltaString!"),
])
def test_a_long_quote_label_is_refused(label, message):
    with pytest.raises(RuntimeError, match="^" + message):
        zep.FXVolSurface.FromTenors(REFERENCE, REFERENCE, SPOT, TENORS, LABELS + [label],
                                    [list(row) + [0.0] for row in QUOTES], flat(USD), flat(EUR))


def test_a_long_pillar_label_is_refused_by_get_strike():
    with pytest.raises(RuntimeError, match="^DeltaString not suport in GetStrike!"):
        surface().GetStrike(expiry("1Y"), DIGITS + "Q")
