import datetime

import pytest

import zep


def product(*scripts):
    dates = [datetime.date(2030, 1 + i, 15) for i in range(len(scripts))]
    return zep.ScriptProduct(dates, list(scripts))


def test_variable_names_come_in_order_of_first_appearance():
    p = product("B = 1 IF SPOT() > A THEN C PAYS B ENDIF", "A = C")
    assert p.VariableNames() == ["B", "A", "C"]
    assert p.EventCount() == 2


@pytest.mark.parametrize("script, expected", [
    ("X = -2^2", 4.0),
    ("X = 2^3^2", 64.0),
    ("x = 2 + 3 * 4", 14.0),
    ("X = MAX(1, SPOT(), 3) - MIN(4, 5)", 96.0),
])
def test_grammar_values(script, expected):
    assert product(script).Evaluate([(100.0, 1.0)]) == {"X": expected}


def test_payments_accumulate_with_the_numeraire_of_their_date():
    p = product("P PAYS 10", "P PAYS SPOT()")
    assert p.Evaluate([(100.0, 0.9), (50.0, 0.8)]) == {"P": pytest.approx(10 * 0.9 + 50 * 0.8)}


def test_smoothed_logic_blends_the_branches():
    p = product("IF SPOT() > 100; 2 THEN X = 10 ELSE X = 4 ENDIF")
    assert p.Evaluate([(100.5, 1.0)]) == {"X": 10.0}
    # band of width 2: degree (1 + 0.5) / 2
    assert p.Evaluate([(100.5, 1.0)], True)["X"] == pytest.approx(0.75 * 10 + 0.25 * 4)


def test_default_eps_applies_to_comparisons_without_their_own():
    p = product("IF SPOT() > 100 THEN X = 1 ENDIF")
    assert p.Evaluate([(100.001, 1.0)], True)["X"] == pytest.approx(0.6)
    assert p.Evaluate([(100.5, 1.0)], True, 2.0)["X"] == pytest.approx(0.75)


def test_debug_text_shows_the_analysis():
    text = product("N = 0 IF SPOT() > 100; 0.5 THEN N = 1 ENDIF IF N >= 1 THEN X = 1 ENDIF").DebugText()
    assert "[CONT,EPS=0.5]" in text
    assert "[DISCRETE,BOUNDS=" in text
    assert "[FIRSTELSE=-1]" in text


@pytest.mark.parametrize("script, message", [
    ("X = SPOT", "No opening ( following function name"),
    ("1X = 2", "Variable name 1X is invalid"),
    ("X = MIN(1)", "Function MIN: wrong number of arguments"),
    ("IF X > 1 THEN Y = 1 ELSE Y = 2", "'If/then/else' is not followed by 'endIf'"),
    ("X = 1 / 0", "Division by {0}"),
])
def test_parse_failures_raise_the_language_message(script, message):
    with pytest.raises(RuntimeError, match="MScriptProduct::MScriptProduct failed: ") as failure:
        product(script)
    assert message in str(failure.value)


def test_dates_must_increase():
    with pytest.raises(RuntimeError, match="strictly increasing"):
        zep.ScriptProduct(["2030-02-01", "2030-01-01"], ["X = 1", "Y = 1"])


@pytest.mark.parametrize("dates, scripts", [
    (None, ["X = 1"]), (["2030-01-01"], None), (["2030-01-01"], [3]), ([5], ["X = 1"]), ("2030-01-01", ["X = 1"]),
])
def test_bad_arguments_raise_type_errors(dates, scripts):
    with pytest.raises(TypeError):
        zep.ScriptProduct(dates, scripts)


@pytest.mark.parametrize("scenario, error", [
    ([(1.0, 1.0)], RuntimeError), ([(1.0, 1.0), (2.0,)], TypeError), (None, TypeError), ([(1.0, "a"), (1.0, 1.0)], TypeError),
])
def test_bad_scenarios_are_rejected(scenario, error):
    p = product("X = SPOT()", "Y = SPOT()")
    with pytest.raises(error):
        p.Evaluate(scenario)


def test_an_empty_product_reports_not_initialized():
    with pytest.raises(RuntimeError, match="not initialized!"):
        zep.MScriptProduct().DebugText()
