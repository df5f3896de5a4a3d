"""What the scripts timing zep beside QuantLib share."""
import time


def best_of(function, repeats, rounds=5):
    """Seconds per call: the fastest of several rounds, each the mean over `repeats` calls."""
    best = float("inf")
    for _ in range(rounds):
        start = time.perf_counter()
        for _ in range(repeats):
            function()
        best = min(best, (time.perf_counter() - start) / repeats)
    return best


def ql_date(text):
    """A QuantLib date from "YYYY-MM-DD"."""
    import QuantLib as ql

    return ql.Date(int(text[8:]), int(text[5:7]), int(text[:4]))
