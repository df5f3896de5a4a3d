import calendar as civil
import datetime as dt
import pickle
import random

import pytest

import zep

CANONICAL = ["NONE", "Act360", "Act365Fixed", "Thirty360", "ThirtyE360ISDA", "ThirtyEPlus360",
             "ThirtyU360", "ActActISDA", "ActActICMA", "Act365L", "ActActAFB", "Act365Leap",
             "ActActXTR", "ActActICMAComplement", "Act252", "Act360Inclusive", "Act365Inclusive"]


def is_month_end(d):
    return d.day == civil.monthrange(d.year, d.month)[1]


def thirty_360(code, s, e):
    """Rules A to D of the 30/360 family, from the definitions."""
    d1, d2, m2 = s.day, e.day, e.month
    if code == zep.Thirty360:
        d1, d2 = min(d1, 30), min(d2, 30)
    elif code == zep.ThirtyE360ISDA:
        d1 = 30 if is_month_end(s) else d1
        d2 = 30 if is_month_end(e) else d2
    elif code == zep.ThirtyEPlus360:
        d1 = min(d1, 30)
        if d2 == 31:
            d2, m2 = 1, m2 + 1
    else:
        if d2 == 31 and d1 >= 30:
            d2 = 30
        d1 = min(d1, 30)
    return 360 * (e.year - s.year) + 30 * (m2 - s.month) + (d2 - d1)


def act_act_isda(s, e):
    length = lambda y: 366 if civil.isleap(y) else 365
    return ((dt.date(s.year + 1, 1, 1) - s).days / length(s.year)
            + (e - dt.date(e.year, 1, 1)).days / length(e.year) + e.year - s.year - 1)


def antisymmetric(reference, s, e):
    return reference(s, e) if s <= e else -reference(e, s)


def random_pairs(count, seed):
    rng = random.Random(seed)
    first, last = dt.date(1901, 1, 1).toordinal(), dt.date(2199, 12, 31).toordinal()
    for _ in range(count):
        a = rng.randint(first, last)
        b = rng.randint(first, last) if rng.random() < 0.7 else min(last, a + rng.randint(0, 400))
        yield dt.date.fromordinal(a), dt.date.fromordinal(b)


@pytest.mark.parametrize("code", [zep.Thirty360, zep.ThirtyE360ISDA, zep.ThirtyEPlus360, zep.ThirtyU360])
def test_thirty_360_family_matches_the_reference_on_random_pairs(code):
    counter = zep.DayCounter(code)
    for s, e in random_pairs(3000, seed=code):
        expected = antisymmetric(lambda a, b: thirty_360(code, a, b), s, e)
        assert counter.DayCount(s, e) == expected, (s, e)
        assert counter.YearFraction(s, e) == pytest.approx(expected / 360, abs=1e-14), (s, e)


@pytest.mark.parametrize("code, reference", [
    (zep.Act360, lambda s, e: (e - s).days / 360),
    (zep.Act365Fixed, lambda s, e: (e - s).days / 365),
    (zep.ActActISDA, lambda s, e: antisymmetric(act_act_isda, s, e)),
    (zep.Act360Inclusive, lambda s, e: antisymmetric(lambda a, b: ((b - a).days + 1) / 360, s, e)),
])
def test_actual_family_matches_the_reference_on_random_pairs(code, reference):
    counter = zep.DayCounter(code)
    pairs = list(random_pairs(3000, seed=100 + code))
    for s, e in pairs:
        assert counter.YearFraction(s, e) == pytest.approx(reference(s, e), abs=1e-12), (s, e)
    starts, ends = zip(*pairs)
    assert counter.YearFraction(list(starts), ends) == pytest.approx([reference(s, e) for s, e in pairs])


@pytest.mark.parametrize("code", range(-1, 16))
def test_names_round_trip_and_repr(code):
    counter = zep.DayCounter(code)
    assert counter.ToString() == CANONICAL[code + 1]
    assert zep.stringToConvention(CANONICAL[code + 1].upper()) == code
    assert zep.DayCounter(CANONICAL[code + 1]) == counter
    assert repr(counter) == "zep.DayCounter('%s')" % CANONICAL[code + 1]
    assert eval(repr(counter)) == counter


def test_codes_are_module_constants_and_default_is_act_act_isda():
    assert [zep.NoConvention, zep.Act360, zep.Thirty360, zep.ActActISDA, zep.Act252, zep.Act365Inclusive] == \
        [-1, 0, 2, 6, 13, 15]
    assert zep.DayCounter() == zep.DayCounter(zep.ActActISDA)
    assert zep.DayCounter(0) != zep.DayCounter(1)
    assert len({zep.DayCounter(0), zep.DayCounter("act/360")}) == 1


@pytest.mark.parametrize("text, code", [
    ("Lin Act/360 cpn", 0), ("LIN ACT/365 ISD", 1), ("lin 30e/360 cpn", 2), ("lin 30/360 isda", 3),
    ("lin act/act xtr", 6), ("YLD ACT/ACT XTR", 11), ("lin act/act ism", 12), ("yld bus/252 spb", 13),
    ("Act360Inclusive", 14), ("act/365 fixed inclusive", 15), ("None", -1), ("8", 8)])
def test_external_spellings(text, code):
    assert zep.stringToConvention(text) == code


def test_unknown_spelling_and_code_raise_the_library_messages():
    with pytest.raises(RuntimeError, match=r"'Act/999' is an invalid day count convention\. "
                                           r"\(zep::DayCounter::stringToConvention"):
        zep.stringToConvention("Act/999")
    with pytest.raises(RuntimeError, match="'42' is an invalid day count convention."):
        zep.DayCounter(42).ToString()
    assert repr(zep.DayCounter(42)) == "zep.DayCounter(42)"
    with pytest.raises(RuntimeError, match="^Convention not implemented$"):
        zep.DayCounter(42).YearFraction("2024-01-01", "2024-02-01")
    with pytest.raises(RuntimeError, match="ActActAFB convention not implemented"):
        zep.DayCounter(zep.ActActAFB).YearFraction("2024-01-01", "2024-02-01")


def test_coupon_conventions_need_coupon_data():
    with pytest.raises(RuntimeError, match=r"^Cannot use convention Act/Act \(ICMA\) without"):
        zep.DayCounter(zep.ActActICMA).YearFraction("2024-01-15", "2024-03-15")
    with pytest.raises(RuntimeError, match="Cannot day count with once frequency"):
        zep.DayCounter(zep.Act365L).YearFraction("2024-01-15", "2024-03-15", "2024-07-15", zep.Once)
    icma = zep.DayCounter(zep.ActActICMA).YearFraction("2024-01-15", "2024-03-15", "2024-07-15", zep.Semiannual)
    assert icma == pytest.approx(60 / (182 * 2))


@pytest.mark.parametrize("start, end, expected_days", [
    ("2011-01-01", "2013-01-01", 730), ("2025-01-01", "2029-01-01", 1461 - 5), ("2050-01-01", "2057-01-01", 2557)])
def test_act365_leap_uses_its_fixed_table(start, end, expected_days):
    assert zep.DayCounter(zep.Act365Leap).YearFraction(start, end) == pytest.approx(expected_days / 365)


def test_act252_counts_business_days_of_the_brazilian_exchange():
    # 2 January 2025 to 2 January 2026: 251 weekdays less the weekday holidays of SYB in between.
    weekday_holidays = ["2025-03-03", "2025-03-04", "2025-04-18", "2025-04-21", "2025-05-01", "2025-06-19",
                        "2025-11-20", "2025-12-25", "2026-01-01"]
    start, end = dt.date(2025, 1, 2), dt.date(2026, 1, 2)
    weekdays = sum(1 for n in range(1, (end - start).days + 1) if (start + dt.timedelta(n)).weekday() < 5)
    expected = (weekdays - len(weekday_holidays)) / 252
    assert zep.DayCounter(zep.Act252).YearFraction(start, end) == pytest.approx(expected)
    assert zep.DayCounter("yld bus/252 spb").YearFraction(end, start) == pytest.approx(-expected)


def test_sequence_form_rejects_bad_input_without_crashing():
    counter = zep.DayCounter(zep.Act360)
    with pytest.raises(RuntimeError, match=r"Number of start dates \(2\) must equal number of end dates\(1\)"):
        counter.YearFraction(["2024-01-01", "2024-02-01"], ["2024-03-01"])
    with pytest.raises(TypeError):
        counter.YearFraction(["2024-01-01", 3.5], ["2024-03-01", "2024-03-01"])
    with pytest.raises(RuntimeError, match="Day outside of month range"):
        counter.YearFraction(("2024-02-30",), ("2024-03-01",))
    with pytest.raises(TypeError):
        counter.YearFraction(None, "2024-03-01")


# Tuesday 2 January to Friday 19 January 2024: 13 weekdays after the start (3-5, 8-12, 15-19).
ACT252_START, ACT252_END = "2024-01-02", "2024-01-19"
HOLIDAY_HEADER = "CALENDAR_C;HOLIDAY_D;GLOBAL_F\n"


@pytest.fixture
def holiday_calendar(monkeypatch, tmp_path):
    """Builds a calendar holding only the SYB holidays given, from a holiday file in tmp_path."""
    def build(name, *holidays):
        path = tmp_path / f"{name}.txt"
        path.write_text(HOLIDAY_HEADER + "".join(f"SYB;{day};N\n" for day in holidays))
        monkeypatch.setenv("ZEP_HOLIDAYS_PATH", str(path))
        return zep.Calendar()
    return build


def test_act252_day_counters_on_different_calendars_count_their_own_holidays(holiday_calendar):
    wednesday = holiday_calendar("wednesday", "20240110")
    monday_tuesday = holiday_calendar("monday_tuesday", "20240115", "20240116")
    assert zep.DayCounter(zep.Act252, wednesday).YearFraction(ACT252_START, ACT252_END) == \
        pytest.approx(12 / 252)
    assert zep.DayCounter("yld bus/252 spb", monday_tuesday).YearFraction(ACT252_START, ACT252_END) == \
        pytest.approx(11 / 252)


def test_loading_holidays_into_another_calendar_leaves_a_day_counter_alone(holiday_calendar, tmp_path):
    counter = zep.DayCounter(zep.Act252, holiday_calendar("wednesday", "20240110"))
    shared = zep.DayCounter(zep.Act252).YearFraction(ACT252_START, ACT252_END)
    other = holiday_calendar("wednesday_again", "20240110")
    extra = tmp_path / "extra.txt"
    extra.write_text(HOLIDAY_HEADER + "SYB;20240115;N\nSYB;20240116;N\n")
    other.LoadHolidaysFromFile(str(extra))
    assert zep.DayCounter(zep.Act252, other).YearFraction(ACT252_START, ACT252_END) == pytest.approx(10 / 252)
    assert counter.YearFraction(ACT252_START, ACT252_END) == pytest.approx(12 / 252)
    assert zep.DayCounter(zep.Act252).YearFraction(ACT252_START, ACT252_END) == shared


def test_the_shared_calendar_of_day_counting_is_not_reachable_from_python():
    assert not hasattr(zep.Calendar, "Shared")


def test_act252_day_counter_travels_with_its_calendar(holiday_calendar):
    counter = zep.DayCounter(zep.Act252, holiday_calendar("wednesday", "20240110"))
    twin = pickle.loads(pickle.dumps(counter))
    assert twin.YearFraction(ACT252_START, ACT252_END) == pytest.approx(12 / 252)
    assert twin == counter and twin.GetCalendar() is not counter.GetCalendar()
    assert twin != zep.DayCounter(zep.Act252, holiday_calendar("monday", "20240115"))
