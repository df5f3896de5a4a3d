"""Dates, periods and frequencies as a Python user meets them."""
import datetime
import random
import re

import numpy

import pytest
from hypothesis import given, settings, strategies as st

import zep

EXCEL_EPOCH = datetime.date(1899, 12, 30)  # serial 0 for every date after 28 February 1900


def serial(day):
    return (day - EXCEL_EPOCH).days


@pytest.mark.parametrize(
    "text",
    ["2024/03/15", "2024-03-15", "15/03/2024", "15-03-2024", "20240315", "15-03-24", "15/03/24",
     "15032024", "15Mar24", "15mar24", "150324", "15/mar/2024"],
)
def test_every_spelling_of_15_march_2024(text):
    assert zep.Date(text).SerialNumber() == serial(datetime.date(2024, 3, 15))


@pytest.mark.parametrize(
    "text, message",
    [
        ("1900-12-31", "Year out of bound. It must be in [1901,2199]"),
        ("15/13/2024", "Month out of bound. It must be in January-December range [1,12]"),
        ("15/xx/2024", "Month out of bound. It must be in January-December range [1,12]"),
        ("2023-02-29", "Day outside of month range"),
        ("1/2/3/4", "Invalid date format: must be YYYY/MM/DD, YYYY-MM-DD, DD/MM/YYYY, DD-MM-YYYY, "
                    "YYYYMMDD, DD-MM-YY, DD/MM/YY, DDMMYYYY, DDMthYY, DDMMYY"),
        ("2024.0315", "Invalid date format"),
        ("12345", "Error: Valid Non delimited date formats are YYYYMMDD, DDMMYYYY, DDMthYY, DDMMYY"),
        ("99999999999/01/2024", "Bad date: must be YYYY/MM/DD, YYYY-MM-DD, DD/MM/YYYY, DD-MM-YYYY or YYYYMMDD"),
    ],
)
def test_bad_date_texts_raise_the_library_message(text, message):
    with pytest.raises(RuntimeError) as info:
        zep.Date(text)
    assert str(info.value) == message


def test_random_dates_agree_with_the_spreadsheet_serial_and_print_day_first():
    rng = random.Random(7)
    for _ in range(2000):
        day = datetime.date(1901, 1, 1) + datetime.timedelta(days=rng.randrange(109574 - 367 + 1))
        date = zep.Date(day.isoformat())
        assert date.SerialNumber() == serial(day), day
        assert str(date) == day.strftime("%d/%m/%Y")
        assert (date.Year(), date.Month(), date.DayOfMonth()) == (day.year, day.month, day.day)
        assert date.to_date() == day and zep.Date(day) == date


def test_python_conveniences():
    date = zep.Date("2024-03-15")
    assert str(date) == "15/03/2024" and repr(date) == "zep.Date('2024-03-15')"
    assert date + 17 == zep.Date("2024-04-01") and 17 + date == date + 17
    assert date - 15 == "2024-02-29"
    assert date - zep.Date("2024-01-01") == 74
    assert date + zep.Period("1M") == zep.Date("2024-04-15")
    assert date - zep.Period("1Y") == zep.Date("2023-03-15")
    assert date < "2024-03-16" and date >= datetime.date(2024, 3, 15)
    assert len({date, zep.Date(45366), zep.Date(15, 3, 2024)}) == 1
    assert date != "not a date" and date != 3.5
    assert str(zep.Date()) == "null date" and zep.Date().Year() == 2026


@pytest.mark.parametrize(
    "text, length, unit",
    [("ON", 1, zep.Days), ("o/n", 1, zep.Days), ("TOM", 1, zep.Days), ("today", 0, zep.Days),
     ("SW", 1, zep.Weeks), ("10Y", 10, zep.Years), ("-1M", -1, zep.Months), ("Y", 0, zep.Years),
     ("3w", 3, zep.Weeks)],
)
def test_period_texts(text, length, unit):
    period = zep.Period(text)
    assert (period.Length(), period.Units(), period.Text()) == (length, unit, text)


@pytest.mark.parametrize(
    "left, right, expected",
    [("12M", "1Y", False), ("1Y", "12M", False), ("4W", "1M", True), ("1Y", "0D", True),
     ("0D", "1Y", False), ("0D", "-1D", True), ("1M", "31D", True), ("1M", "30D", False),
     ("1Y", "53W", True), ("2W", "14D", False), ("6M", "1Y", True)],
)
def test_period_ordering(left, right, expected):
    assert (zep.Period(left) < zep.Period(right)) is expected


def test_period_errors():
    with pytest.raises(RuntimeError, match=r"^Last character of a period string must be one of \{d, w, m, y\} \(zep::Period::Period: "):
        zep.Period("3X")
    with pytest.raises(RuntimeError, match=r"^Period string can't be an empty string \("):
        zep.Period("")


@pytest.mark.parametrize(
    "text, code",
    [("daily", 365), ("1od", 365), ("1 day ois", 260), ("1 business day", 260), ("weekly", 52),
     ("Quarterly", 4), ("3M", 4), ("semi-annual", 2), ("annual", 1), ("once", 0),
     ("continuous", 366), ("cont", 366)],
)
def test_string_to_frequency(text, code):
    assert zep.stringToFrequency(text) == code


def test_frequency_names_and_rejections():
    assert [zep.FrequencyToString(f) for f in (zep.NoFrequency, zep.Fourweekly, zep.Continuous)] == [
        "NoFrequency", "Fourweekly", "Continuous"]
    assert zep.longToFrequency(52) == zep.Weekly
    for call, value, function in [(zep.FrequencyToString, 5, "zep::FrequencyToString"),
                                  (zep.longToFrequency, 7, "zep::longToFrequency"),
                                  (zep.stringToFrequency, "DAILY", "zep::stringToFrequency")]:
        with pytest.raises(RuntimeError) as info:
            call(value)
        assert str(info.value).startswith(f"'{value}' is an invalid Frequency ({function}: ")


def _parses_or_raises_documented(parser, text):
    try:
        parser(text)
    except RuntimeError:
        pass  # the library's own message: the only failure a bad text may produce


@settings(max_examples=3000, deadline=None)
@given(st.text(alphabet=st.sampled_from("0123456789/-.+ aAmMyYdDwWnN\x00é"), max_size=14) | st.text(max_size=12))
def test_random_texts_only_ever_raise_library_errors(text):
    _parses_or_raises_documented(zep.Date, text)
    _parses_or_raises_documented(zep.Period, text)
    _parses_or_raises_documented(zep.stringToFrequency, text)


def test_weekday_runs_from_sunday_1_to_saturday_7():
    rng = random.Random(11)
    for _ in range(500):
        day = datetime.date(1901, 1, 1) + datetime.timedelta(days=rng.randrange(100000))
        assert zep.Date(day).Weekday() == day.isoweekday() % 7 + 1, day


@pytest.mark.parametrize("day", [datetime.date(1901, 1, 1), datetime.date(2024, 2, 29), datetime.date(2199, 12, 31)])
def test_date_converts_to_and_from_datetime64_days(day):
    as_numpy = numpy.datetime64(day, "D")
    assert zep.Date(as_numpy) == day and zep.Date.from_datetime64(as_numpy) == day
    assert zep.Date(day).to_datetime64() == as_numpy
    assert zep.Date.from_datetime64(numpy.datetime64(day, "ms") + numpy.timedelta64(5, "h")) == day


def test_date_arrays_convert_with_nat_as_the_null_date():
    days = numpy.array(["2024-03-15", "NaT", "1901-01-01"], dtype="datetime64[D]")
    dates = zep.Date.from_datetime64(days)
    assert dates == [zep.Date("2024-03-15"), zep.Date(), zep.Date("1901-01-01")]
    assert (zep.Date.datetime64_array(dates) == days)[[0, 2]].all()
    assert numpy.isnat(zep.Date.datetime64_array(["2024-03-15", zep.Date()]))[1]
    assert numpy.isnat(zep.Date().to_datetime64())


def test_equal_dates_hash_alike_and_alike_with_datetime_date():
    day = datetime.date(2024, 3, 15)
    assert len({zep.Date(day), zep.Date("15/03/2024"), day}) == 1
    assert zep.Date("2024-03-15") != zep.Date("2024-03-16")
    with pytest.raises(ValueError):
        zep.Date().to_date()


def test_increment_and_decrement_move_the_date_in_place_and_return_it():
    date = zep.Date("2024-02-28")
    assert date.Increment() is date and date == "2024-02-29"
    assert date.Increment().Increment() == "2024-03-02" and date == "2024-03-02"
    assert date.Decrement() is date and date == "2024-03-01"


@pytest.mark.parametrize("serial, step, function", [(109574, "Increment", "++"), (367, "Decrement", "--")])
def test_increment_past_the_last_date_fails_and_keeps_the_date(serial, step, function):
    date = zep.Date(serial)
    with pytest.raises(RuntimeError, match=rf"outside of range\. \(zep::Date::operator {re.escape(function)}: "):
        getattr(date, step)()
    assert date.SerialNumber() == serial


# 1Y < 0D is the library's deliberate mirror rule against a zero period.
@pytest.mark.parametrize("smaller, larger", [("1W", "8D"), ("11M", "1Y"), ("4W", "1M"), ("1Y", "0D")])
def test_periods_order_by_every_rich_comparison(smaller, larger):
    a, b = zep.Period(smaller), zep.Period(larger)
    assert a < b and a <= b and b > a and b >= a and not (b < a) and a != b


def test_repr_and_str_of_an_unbuilt_object_say_so():
    for cls in (zep.Date, zep.Calendar, zep.YieldCurve, zep.MVanillaOption, zep.DayCounter, zep.Period):
        unbuilt = cls.__new__(cls)
        assert repr(unbuilt) == str(unbuilt) == f"<zep.{cls.__name__}: not initialized>"


@pytest.mark.parametrize("valid", [zep.Days, zep.Weeks, zep.Months, zep.Years])
@pytest.mark.parametrize("invalid", [-1, 4, 5])
def test_period_of_an_unknown_unit_is_undecidable_against_any_unit(valid, invalid):
    for a, b in [(zep.Period(2, valid), zep.Period(3, invalid)), (zep.Period(3, invalid), zep.Period(2, valid))]:
        with pytest.raises(RuntimeError, match=r"^undecidable comparison between periods \(zep::Period::operator <: "):
            a < b
