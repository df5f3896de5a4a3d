"""A tour of zep's dates and tenors: parsing the many date spellings a desk receives, rolling
dates by tenors, printing tenors between dates, and what a bad date looks like from Python."""
import zep

print(f"zep {zep.__version__}")
print("\nDate texts as they arrive from trade feeds:")
for text in ["2024-03-15", "15/03/2024", "20240315", "15Mar24", "150324", "00/03/2024"]:
    date = zep.Date(text)
    print(f"  {text:>12} -> {date}  (serial {date.SerialNumber()})")

trade = zep.Date("2024-01-31")
print(f"\nRolling {trade} by market tenors (no end-of-month rule, the day is clamped):")
for tenor in ["O/N", "SW", "1M", "3M", "1Y", "-1M"]:
    maturity = trade + zep.Period(tenor)
    print(f"  {tenor:>4} -> {maturity}   tenor back from trade date: {maturity.TenorString(trade) if maturity >= trade else '-'}")

print(f"\nDays between {trade} and 2024-12-31: {zep.Date('2024-12-31') - trade}")
print(f"Quarterly coupon period: {zep.Period(zep.stringToFrequency('quarterly'))}")

print("\nBad input arrives as a Python exception carrying the library's message:")
for bad in ["2024-02-30", "2024-13-01"]:
    try:
        zep.Date(bad)
    except RuntimeError as error:
        print(f"  zep.Date({bad!r}) -> RuntimeError: {error}")
try:
    zep.Date(5)
except RuntimeError as error:
    print(f"  zep.Date(5) -> RuntimeError: {error}")

calendar = zep.Calendar()
print("\nBusiness-day rolls on the shipped holiday calendars:")
for text, rule, centres in [("2025-05-31", "modified following", ""), ("2025-05-31", "following", ""),
                            ("2025-12-25", "following", "LON"), ("2025-12-25", "following", "LON+NYC"),
                            ("2026-02-16", "following", "SYB")]:
    rolled = calendar.Adjust(zep.Date(text), zep.stringToDateAdjusterRule(rule), centres)
    print(f"  {text} {rule:>18} in {centres or 'weekends only':>14} -> {rolled}")

start, end = zep.Date("2024-03-15"), zep.Date("2024-09-30")
print(f"\nDay counts from {start} to {end}:")
for name in ["Act360", "Act365Fixed", "Thirty360", "ThirtyE360ISDA", "ActActISDA", "Act252"]:
    counter = zep.DayCounter(zep.stringToConvention(name))
    print(f"  {counter.ToString():>15}: {counter.DayCount(start, end):4d} days, "
          f"year fraction {counter.YearFraction(start, end):.6f}")
