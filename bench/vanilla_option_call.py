"""Cost of one MVanillaOption call from Python through the wrapper frame: building an option from
date texts and numbers, its price, and its premium-adjusted delta."""
import timeit

import zep

ARGS = (1, 0, 1e6, 1.10, 1.08, "2024-01-15", "2024-07-15", "2024-07-17", "2024-07-17", 0.035, 0.02, 0.09)
option = zep.MVanillaOption(*ARGS)
for label, call, count in [("construct from date texts", lambda: zep.MVanillaOption(*ARGS), 20_000),
                           ("Price()", option.Price, 200_000),
                           ("Delta(False)", lambda: option.Delta(False), 200_000)]:
    best = min(timeit.repeat(call, number=count, repeat=3)) / count
    print(f"{label:<28} {best * 1e6:6.2f} us per call")
