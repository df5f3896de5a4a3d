import datetime as dt
import os

import pytest

import zep

HEADER = "CALENDAR_C;HOLIDAY_D;GLOBAL_F\n"


@pytest.fixture(scope="module")
def cal():
    return zep.Calendar()


@pytest.fixture
def search(monkeypatch, tmp_path):
    """Isolates the holiday-file search: no environment variable, a scratch base directory."""
    monkeypatch.delenv("ZEP_HOLIDAYS_PATH", raising=False)
    base, packaged = zep.Calendar.SearchBase(), zep.Calendar.PackagedHolidayFile()
    zep.Calendar.SetSearchBase(str(tmp_path / "a" / "b" / "c"))
    yield tmp_path
    zep.Calendar.SetSearchBase(base)
    zep.Calendar.SetPackagedHolidayFile(packaged)


def write(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)
    return str(path)


# Well-known closing days of each shipped centre, and ordinary days on which it is open.
@pytest.mark.parametrize("centre, holiday", [
    ("TARGET", "2024-03-29"), ("TARGET", "2024-04-01"), ("TARGET", "2024-05-01"), ("TARGET", "2024-12-26"),
    ("TARGET", "2001-12-31"), ("LON", "2024-05-06"), ("LON", "2024-08-26"), ("LON", "2022-06-03"),
    ("LON", "2022-09-19"), ("LON", "2021-12-28"), ("LON", "2011-04-29"), ("LON", "1960-06-06"),
    ("NYC", "2024-07-04"), ("NYC", "2024-11-28"), ("NYC", "2024-01-15"), ("NYC", "2024-06-19"),
    ("NYC", "2023-01-02"), ("NYC", "1965-02-22"), ("TKY", "2024-01-02"), ("TKY", "2024-02-12"),
    ("TKY", "2024-05-06"), ("TKY", "2024-09-23"), ("TKY", "2019-05-01"), ("TKY", "2023-03-21"),
    ("TKY", "2015-09-22"), ("SYB", "2024-02-12"), ("SYB", "2024-02-13"), ("SYB", "2024-05-30"),
    ("SYB", "2024-11-20"), ("SYB", "2025-03-04"), ("SYB", "2025-06-19"), ("SYB", "2025-04-18")])
def test_shipped_calendars_close_on_well_known_holidays(cal, centre, holiday):
    assert not cal.IsBusinessDay(holiday, centre)
    assert zep.Date(holiday) in cal.Dates(centre)


@pytest.mark.parametrize("centre, open_day", [
    ("TARGET", "2024-07-04"), ("LON", "2024-07-04"), ("NYC", "2024-03-29"), ("TKY", "2024-12-27"),
    ("SYB", "2024-07-04"), ("TARGET", "1998-12-25")])
def test_shipped_calendars_open_on_ordinary_days(cal, centre, open_day):
    assert cal.IsBusinessDay(open_day, centre)


def test_shipped_file_covers_every_year_of_the_date_range(cal):
    for centre in ["LON", "NYC", "TKY", "SYB"]:
        years = {d.Year() for d in cal.Dates(centre)}
        assert years == set(range(1901, 2200)), centre
    assert cal.Centres() == ["LON", "NYC", "SYB", "TARGET", "TKY"]


def test_month_end_rolls_without_holidays(cal):
    assert cal.Adjust("2025-05-31", zep.ModifiedFollowing, "") == dt.date(2025, 5, 30)
    assert cal.Adjust("2025-05-31", zep.Following, "") == dt.date(2025, 6, 2)
    assert cal.Adjust("2025-06-01", zep.ModifiedPreceding, "") == dt.date(2025, 6, 2)
    assert cal.Adjust("2025-05-31", "ModFol", "") == cal.Adjust("2025-05-31", "MODF", "")


@pytest.mark.parametrize("rule", [zep.Following, zep.Preceding, zep.ModifiedFollowing,
                                  zep.ModifiedPreceding, zep.Unadjusted])
def test_business_days_stay_put(cal, rule):
    assert cal.Adjust("2025-06-26", rule, "LON+NYC+TARGET") == "2025-06-26"


def test_several_centres_close_when_any_closes(cal):
    assert cal.IsBusinessDay("2024-07-04", "LON")
    assert not cal.IsBusinessDay("2024-07-04", "LON+NYC")
    assert cal.Adjust("2024-07-04", zep.Following, "NYC,LON") == "2024-07-05"


def test_market_rolls_and_fx_option_dates(cal):
    assert cal.Adjust("2025-01-01", zep.IMM, "") == "2025-03-19"
    assert cal.NextFutureRollDate("2025-03-19", "IMM") == "2025-06-18"
    assert cal.Adjust("2025-01-01", zep.LME, "") == "2025-01-15"
    delivery, expiry = cal.FXODeliveryExpiryDates("2024-06-03", "2024-06-05", "1M", "NYC")
    assert (delivery, expiry) == (zep.Date("2024-07-05"), zep.Date("2024-07-02"))
    assert cal.FXODeliveryExpiryDates("2024-06-03", "2024-06-05", zep.Period("1W"), "NYC") == \
        (zep.Date("2024-06-12"), zep.Date("2024-06-10"))


@pytest.mark.parametrize("call, message", [
    (lambda c: c.Adjust("", zep.Following, ""), "^Can't adjust a null date$"),
    (lambda c: c.Adjust("2025-06-02", 9, ""), "^Unknown adjusting rule$"),
    (lambda c: c.Adjust("2025-06-02", "sideways", ""), "'sideways' is an invalid date rolling convention"),
    (lambda c: c.IsBusinessDay("2025-06-02", "LON+ABC"),
     r"Can't find the fincancial center code 'ABC' in the calendar \(zep::Calendar::Dates"),
    (lambda c: c.BusinessDaysBetween("2025-06-01", "2025-06-03", ""), "Input 1: Start Date is not a business day"),
    (lambda c: c.BusinessDaysBetween("2025-06-02", "2025-06-01", ""), "Input 2: End Date is not a business day"),
    (lambda c: c.BusinessDaysBetween("2025-06-03", "2025-06-02", ""), "End date must be on or after start date"),
    (lambda c: c.NextFutureRollDate("2025-06-02", "XYZ"), "Unknown money market"),
    (lambda c: c.NextCommodityDeliveryDate("2025-06-02", "XYZ"), "Unknown commodity market"),
    (lambda c: c.FXODeliveryExpiryDates("2025-06-02", "2025-06-02", "1M", ""),
     "Spot Date should be later than Reference Date!"),
    (lambda c: c.LoadMurexHolidays(""), "No holiday file provided"),
    (lambda c: c.LoadHolidaysFromFile("/nonexistent/Holidays.txt"), "File cannot be found!"),
])
def test_bad_input_raises_the_library_message(cal, call, message):
    with pytest.raises(RuntimeError, match=message):
        call(cal)


def test_business_days_between_counts_after_start_up_to_end(cal):
    assert cal.BusinessDaysBetween("2025-06-02", "2025-06-09", "") == 5
    # London, Christmas 2024: 24, 27 and 30 December.
    assert cal.BusinessDaysBetween("2024-12-23", "2024-12-30", "LON") == 3


def test_rule_texts_and_codes():
    assert [zep.Following, zep.Preceding, zep.ModifiedFollowing, zep.ModifiedPreceding, zep.IMM,
            zep.Unadjusted, zep.LME] == list(range(7))
    for text, rule in [("next", 0), ("Previous", 1), ("modfollowing", 2), ("ModFol", 2), ("MODF", 2),
                       ("prec eom", 3), ("IMM", 4), ("Anniv", 5), ("LME", 6)]:
        assert zep.stringToDateAdjusterRule(text) == rule, text


def test_holiday_file_with_a_bad_line_loads_nothing(tmp_path):
    cal = zep.Calendar()
    path = write(tmp_path / "h.txt", HEADER + "NEW;20240102;N\nNEW;20240199;N\n")
    with pytest.raises(RuntimeError, match=r"h\.txt' at line 3"):
        cal.LoadHolidaysFromFile(path)
    with pytest.raises(RuntimeError, match="'NEW'"):
        cal.Dates("NEW")
    cal.LoadHolidaysFromFile(write(tmp_path / "g.txt", HEADER + "NEW;20240102;N\n"))
    assert cal.Dates("NEW") == [zep.Date("2024-01-02")]
    assert cal != zep.Calendar()
    assert "NEW" in repr(cal)


def test_trading_system_export(tmp_path):
    cal = zep.Calendar()
    cal.LoadMurexHolidays(write(tmp_path / "mx.csv", "Calendar,Date,Description\nMXA,02/01/2024,Bank holiday\n"))
    assert not cal.IsBusinessDay("2024-01-02", "MXA")
    with pytest.raises(RuntimeError, match="Holiday file provided is empty"):
        cal.LoadMurexHolidays(write(tmp_path / "empty.csv", ""))


def test_environment_variable_names_file_or_directory(search, monkeypatch):
    path = write(search / "env" / "Holidays.txt", HEADER + "ENV;20240102;N\n")
    for location in [path, str(search / "env")]:
        monkeypatch.setenv("ZEP_HOLIDAYS_PATH", location)
        assert zep.Calendar().Centres() == ["ENV"]


def test_environment_variable_pointing_elsewhere_is_not_found(search, monkeypatch):
    elsewhere = str(search / "nowhere" / "Holidays.txt")
    monkeypatch.setenv("ZEP_HOLIDAYS_PATH", elsewhere)
    with pytest.raises(RuntimeError) as failure:
        zep.Calendar()
    text = str(failure.value)
    assert text.startswith("Holiday.txt not found. Base=")
    assert "\nTried paths:\n  - " + elsewhere in text
    assert "zep::Calendar::Calendar" in text


def test_relative_search_order_then_the_packaged_file(search):
    zep.Calendar.SetPackagedHolidayFile("")
    with pytest.raises(RuntimeError) as failure:
        zep.Calendar()
    tried = [line[4:] for line in str(failure.value).split("\n") if line.startswith("  - ")]
    tried[-1] = tried[-1].split(" (zep::")[0]
    expected = [search / "a/b/control", search / "a/b/data", search / "a/control", search / "a/data", search / "config"]
    assert tried == [str(d / "Holidays.txt") for d in expected]

    zep.Calendar.SetPackagedHolidayFile(write(search / "pkg" / "Holidays.txt", HEADER + "PKG;20240102;N\n"))
    assert zep.Calendar().Centres() == ["PKG"]
    write(search / "a" / "data" / "Holidays.txt", HEADER + "DATA;20240102;N\n")
    assert zep.Calendar().Centres() == ["DATA"]
    write(search / "a" / "b" / "control" / "Holidays.txt", HEADER + "CTRL;20240102;N\n")
    assert zep.Calendar().Centres() == ["CTRL"]


def test_module_registers_its_own_holiday_file_at_import(search):
    packaged = zep.Calendar.PackagedHolidayFile()
    assert packaged == os.path.join(os.path.dirname(os.path.abspath(zep.__file__)), "data", "Holidays.txt")
    assert os.path.isfile(packaged)
    # Nothing found relative to the base: the packaged file is loaded with every shipped centre.
    assert zep.Calendar().Centres() == ["LON", "NYC", "SYB", "TARGET", "TKY"]
