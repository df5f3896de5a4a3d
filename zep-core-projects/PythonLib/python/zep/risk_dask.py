"""Historical VaR revalued on a dask.distributed cluster.

The portfolio is scattered to every worker once (it pickles as its trade definitions); the
scenarios travel as shock lists in chunks, each chunk revalued on a worker with the library's
own threads, and the chunks' P&L rows are put back in scenario order before the report is
computed here, exactly as an in-process run computes it. Dask schedules, retries and moves the
data; nothing here does. Dask is imported by the caller's Client only: the library needs none.
"""
import operator

from . import zeplib

# Chunks per worker thread: enough to keep every thread busy to the end of the run, few enough
# that the per-chunk cost (the unshocked revaluation, the transfer) stays small.
CHUNKS_PER_THREAD = 4


def _revalue_chunk(portfolio, scenarios):
    """On a worker: the chunk's P&L, scenario-major, as one float64 array (compact to send back)."""
    import numpy
    return numpy.asarray(zeplib._RevaluePnL(portfolio, scenarios), dtype=numpy.float64)


def _chunk_size(client, scenario_count, chunk_size):
    if chunk_size is None:
        threads = max(sum(client.nthreads().values()), 1)
        return max(-(-scenario_count // (threads * CHUNKS_PER_THREAD)), 1)
    try:
        size = operator.index(chunk_size)  # any integer type, NumPy's included; not 2.5, not True
    except TypeError:
        size = 0
    if isinstance(chunk_size, bool) or size < 1:
        raise ValueError(f"The chunk size must be a positive whole number of scenarios, not {chunk_size!r}.")
    return size


def distributed_var_report(client, portfolio, factors, levels, confidences, tag, chunk_size=None):
    """The HistoricalVaR report (as the library's _HistoricalVaR returns it), revalued on the
    client's workers."""
    import numpy
    if portfolio is None:
        raise ValueError("HistoricalVaR needs a Portfolio, not None.")
    scenarios = zeplib.HistoricalScenarios(factors, levels)
    zeplib._CheckVaRInputs(portfolio, confidences, len(scenarios))  # refuse before sending anything
    size = _chunk_size(client, len(scenarios), chunk_size)
    base = client.scatter(portfolio, broadcast=True, hash=False)  # a key of its own: no other run releases it
    futures = [client.submit(_revalue_chunk, base, scenarios[start:start + size], pure=False)
               for start in range(0, len(scenarios), size)]
    pnl = numpy.concatenate(client.gather(futures)) if futures else numpy.empty(0)
    return zeplib._VaRReport(portfolio, [scenario.Name() for scenario in scenarios], pnl.tolist(), confidences,
                             tag)
