#!/usr/bin/env python3
"""Writes Holidays.txt, the holiday file shipped with zep, from the rules of each centre.

Run from anywhere: python lum-time/data/generate_holidays.py [output path]

Format: the header "CALENDAR_C;HOLIDAY_D;GLOBAL_F", then one record per holiday, centre code;
date as YYYYMMDD; global flag N (every record here is one dated holiday; Y would repeat the day
and month every later year). Years 1901 to 2199. Weekend holidays are listed as they fall; the
days that replace them are listed too. Centres and the years their rules apply from:

TARGET  euro area TARGET2 closing days, none before the system opened in 1999: 1 January and
        25 December from 1999; Good Friday, Easter Monday, 1 May and 26 December from 2000;
        31 December 1999 and 2001.
LON     England and Wales bank holidays: Good Friday, Easter Monday; Whit Monday until 1964,
        last Monday of May from 1965; first Monday of August until 1964, last Monday of August
        from 1965; 1 January from 1974; first Monday of May from 1978; Christmas and Boxing Day,
        moved to the next free weekday when on a weekend; the announced one-off days and moves.
NYC     Federal Reserve holidays: 1 January, 4 July, 25 December, 11 November (1938-1970 and from
        1978) and 19 June (from 2022) move to Monday from a Sunday (a Saturday is not moved);
        Washington's Birthday 22 February, third Monday of February from 1971; Memorial Day
        30 May, last Monday of May from 1971; Labor Day first Monday of September; Columbus Day
        12 October from 1937, second Monday of October from 1971; Veterans Day fourth Monday of
        October 1971-1977; Thanksgiving last Thursday of November, fourth Thursday from 1942;
        Martin Luther King Jr. Day third Monday of January from 1986.
TKY     Tokyo banks: 1-3 January and 31 December in every year; national holidays from 1948 with
        their dates by law, equinoxes by the astronomical formula (the 2100 constants carried
        on after 2150), substitute holidays from 1973 and citizens' holidays from 1988.
SYB     Brazilian exchange (used by Act252): 1 January, Carnival Monday and Tuesday, Good Friday,
        21 April, Corpus Christi, 7 September, 2 November, 15 November, 25 December in every
        year; 1 May from 1925; 12 October from 1980; 20 November from 2024.
"""
import datetime as dt
import os
import sys

FIRST_YEAR, LAST_YEAR = 1901, 2199
D = dt.date
ONE_DAY = dt.timedelta(days=1)


def easter(year):
    """Gregorian Easter Sunday (the anonymous computus)."""
    a, b, c = year % 19, year // 100, year % 100
    d, e = divmod(b, 4)
    f = (b + 8) // 25
    g = (b - f + 1) // 3
    h = (19 * a + b - d - g + 15) % 30
    i, k = divmod(c, 4)
    l = (32 + 2 * e + 2 * i - h - k) % 7
    m = (a + 11 * h + 22 * l) // 451
    month, day = divmod(h + l - 7 * m + 114, 31)
    return D(year, month, day + 1)


def nth_weekday(year, month, weekday, n):
    """The n-th given weekday (Monday 0) of the month; n = -1 for the last one."""
    if n > 0:
        first = D(year, month, 1)
        return first + dt.timedelta(days=(weekday - first.weekday()) % 7 + 7 * (n - 1))
    last = D(year + month // 12, month % 12 + 1, 1) - ONE_DAY
    return last - dt.timedelta(days=(last.weekday() - weekday) % 7)


def is_weekend(day):
    return day.weekday() >= 5


def target(year):
    days = []
    if year >= 1999:
        days += [D(year, 1, 1), D(year, 12, 25)]
    if year >= 2000:
        e = easter(year)
        days += [e - 2 * ONE_DAY, e + ONE_DAY, D(year, 5, 1), D(year, 12, 26)]
    if year in (1999, 2001):
        days.append(D(year, 12, 31))
    return days


LONDON_ONE_OFF = [D(1973, 11, 14), D(1977, 6, 7), D(1981, 7, 29), D(1999, 12, 31), D(2002, 6, 3),
                  D(2011, 4, 29), D(2012, 6, 5), D(2022, 6, 3), D(2022, 9, 19), D(2023, 5, 8)]
LONDON_MOVED = {  # (year, rule) -> the day the holiday was moved to
    (1995, "early may"): D(1995, 5, 8), (2020, "early may"): D(2020, 5, 8),
    (2002, "spring"): D(2002, 6, 4), (2012, "spring"): D(2012, 6, 4), (2022, "spring"): D(2022, 6, 2),
}


def with_substitutes(fixed, taken):
    """Fixed-date holidays on a weekend add the next weekday not already a holiday."""
    days = []
    for day in fixed:
        days.append(day)
        if is_weekend(day):
            substitute = day
            while is_weekend(substitute) or substitute in taken or substitute in days:
                substitute += ONE_DAY
            days.append(substitute)
    return days


def london(year):
    e = easter(year)
    days = [e - 2 * ONE_DAY, e + ONE_DAY]
    if year < 1965:
        days += [e + 50 * ONE_DAY, nth_weekday(year, 8, 0, 1)]
    else:
        days += [LONDON_MOVED.get((year, "spring"), nth_weekday(year, 5, 0, -1)),
                 nth_weekday(year, 8, 0, -1)]
    if year >= 1978:
        days.append(LONDON_MOVED.get((year, "early may"), nth_weekday(year, 5, 0, 1)))
    days += [d for d in LONDON_ONE_OFF if d.year == year]
    fixed = [D(year, 12, 25), D(year, 12, 26)]
    if year >= 1974:
        fixed.insert(0, D(year, 1, 1))
    return days + with_substitutes(fixed, set(days))


def sunday_to_monday(day):
    return day + ONE_DAY if day.weekday() == 6 else day


def new_york(year):
    fixed = [D(year, 1, 1), D(year, 7, 4), D(year, 12, 25)]
    if 1938 <= year <= 1970 or year >= 1978:
        fixed.append(D(year, 11, 11))
    if year >= 2022:
        fixed.append(D(year, 6, 19))
    days = [sunday_to_monday(d) for d in fixed]
    modern = year >= 1971
    days.append(nth_weekday(year, 2, 0, 3) if modern else sunday_to_monday(D(year, 2, 22)))
    days.append(nth_weekday(year, 5, 0, -1) if modern else sunday_to_monday(D(year, 5, 30)))
    days.append(nth_weekday(year, 9, 0, 1))
    if year >= 1937:
        days.append(nth_weekday(year, 10, 0, 2) if modern else sunday_to_monday(D(year, 10, 12)))
    if 1971 <= year <= 1977:
        days.append(nth_weekday(year, 10, 0, 4))
    days.append(nth_weekday(year, 11, 3, 4) if year >= 1942 else nth_weekday(year, 11, 3, -1))
    if year >= 1986:
        days.append(nth_weekday(year, 1, 0, 3))
    return days


def equinox(year, constants):
    base = next(c for first, c in constants if year >= first)
    return int(base + 0.242194 * (year - 1980) - (year - 1980) // 4)


def japan_national(year):
    """Japanese national holidays by law, before substitute and citizens' holidays."""
    if year < 1948:
        return []
    days = [D(year, 11, 3), D(year, 11, 23)]
    if year >= 1949:
        days += [D(year, 1, 1), D(year, 4, 29), D(year, 5, 3), D(year, 5, 5)]
        days.append(nth_weekday(year, 1, 0, 2) if year >= 2000 else D(year, 1, 15))
        days.append(D(year, 3, equinox(year, [(2100, 21.8510), (1980, 20.8431), (0, 20.8357)])))
        days.append(D(year, 9, equinox(year, [(2100, 24.2488), (1980, 23.2488), (0, 23.2588)])))
    if year >= 1966:
        days.append(nth_weekday(year, 9, 0, 3) if year >= 2003 else D(year, 9, 15))
        sports = {2020: D(2020, 7, 24), 2021: D(2021, 7, 23)}
        days.append(sports.get(year, nth_weekday(year, 10, 0, 2) if year >= 2000 else D(year, 10, 10)))
    if year >= 1967:
        days.append(D(year, 2, 11))
    if 1989 <= year <= 2018:
        days.append(D(year, 12, 23))
    if year >= 2020:
        days.append(D(year, 2, 23))
    if year >= 2007:
        days.append(D(year, 5, 4))
    if year >= 1996:
        marine = {2020: D(2020, 7, 23), 2021: D(2021, 7, 22)}
        days.append(marine.get(year, nth_weekday(year, 7, 0, 3) if year >= 2003 else D(year, 7, 20)))
    if year >= 2016:
        days.append({2020: D(2020, 8, 10), 2021: D(2021, 8, 8)}.get(year, D(year, 8, 11)))
    one_off = [D(1959, 4, 10), D(1989, 2, 24), D(1990, 11, 12), D(1993, 6, 9), D(2019, 4, 30),
               D(2019, 5, 1), D(2019, 5, 2), D(2019, 10, 22)]
    return days + [d for d in one_off if d.year == year]


def tokyo(year):
    national = set(japan_national(year))
    extra = set()
    if year >= 1973:  # a Sunday holiday moves to the next day that is no holiday (Monday until 2006)
        for day in national:
            if day.weekday() == 6 and day >= D(1973, 4, 12):
                substitute = day + ONE_DAY
                while year >= 2007 and substitute in national:
                    substitute += ONE_DAY
                extra.add(substitute)
    if year >= 1988:  # a weekday between two national holidays is a holiday too
        for day in national:
            between = day + ONE_DAY
            if between + ONE_DAY in national and between not in national and between.weekday() != 6:
                extra.add(between)
    bank = {D(year, 1, 1), D(year, 1, 2), D(year, 1, 3), D(year, 12, 31)}
    return sorted(national | extra | bank)


def brazil_exchange(year):
    e = easter(year)
    days = [D(year, 1, 1), e - 48 * ONE_DAY, e - 47 * ONE_DAY, e - 2 * ONE_DAY, D(year, 4, 21),
            e + 60 * ONE_DAY, D(year, 9, 7), D(year, 11, 2), D(year, 11, 15), D(year, 12, 25)]
    if year >= 1925:
        days.append(D(year, 5, 1))
    if year >= 1980:
        days.append(D(year, 10, 12))
    if year >= 2024:
        days.append(D(year, 11, 20))
    return days


CENTRES = {"TARGET": target, "LON": london, "NYC": new_york, "TKY": tokyo, "SYB": brazil_exchange}


def records():
    for code, rule in CENTRES.items():
        days = sorted({d for year in range(FIRST_YEAR, LAST_YEAR + 1) for d in rule(year)
                       if FIRST_YEAR <= d.year <= LAST_YEAR})
        for day in days:
            yield f"{code};{day:%Y%m%d};N"


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    path = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "Holidays.txt")
    with open(path, "w", newline="\n") as out:
        out.write("CALENDAR_C;HOLIDAY_D;GLOBAL_F\n")
        for line in records():
            out.write(line + "\n")


if __name__ == "__main__":
    main()
