#!/usr/bin/env bash
# Runs every test again on a second build tree, build/asan, compiled with AddressSanitizer (leak
# detection included) and UndefinedBehaviorSanitizer: the C++ tests through ctest, then the
# Python tests against that tree's package. Any finding (a bad read or write, a leak, undefined
# behaviour) fails the run. Expects scripts/setup.sh to have run (the pinned tools of .venv).
set -euo pipefail
cd "$(dirname "$0")/.."
export PATH="$PWD/.venv/bin:$PATH"  # the pinned swig, cmake and ninja

tree=build/asan
cmake -S . -B "$tree" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZEP_SANITIZE=ON \
  -DZEP_BUILD_TESTS=ON -DZEP_BUILD_PYTHON=ON -DPython_EXECUTABLE="$PWD/.venv/bin/python" >/dev/null
cmake --build "$tree"

export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
ASAN_OPTIONS=detect_leaks=1:check_initialization_order=1:strict_init_order=1 \
  ctest --test-dir "$tree" --output-on-failure -j 2

# The Python tests on the sanitized package. The interpreter is not instrumented and ASan must be
# the first library of the process: the runtimes of the compiler that built the tree are preloaded.
cxx=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$tree/CMakeCache.txt")
export LD_PRELOAD="$("$cxx" -print-file-name=libasan.so):$("$cxx" -print-file-name=libubsan.so)"
# Every Python object on the sanitizer's heap: an overrun of a Python buffer is caught, and the leak
# check follows pointers held by Python objects (pymalloc's arenas are invisible to it).
export PYTHONMALLOC=malloc
# Leak stacks of two frames tell the interpreter's own leftovers at exit from zep's leaks (see
# tests/python/lsan_interpreter.supp); a huge malloc from Python returns null, a MemoryError as
# without the sanitizer. Reports go to files: the standard error pytest captures dies with a
# process ASan stops, and a report from a child process fails the run even where its test passed.
logs="$PWD/$tree/sanitizer-reports"
rm -rf "$logs" && mkdir -p "$logs"
export ASAN_OPTIONS="detect_leaks=1:malloc_context_size=2:allocator_may_return_null=1:log_path=$logs/asan"
export LSAN_OPTIONS="suppressions=$PWD/tests/python/lsan_interpreter.supp:print_suppressions=0"
export ZEP_PYTHONPATH="$PWD/$tree/python" ZEP_SANITIZED=1

# From the tests folder, as scripts/test.sh runs them; conftest.py makes sure the package imported
# is the sanitized one. UBSan writes its reports to standard error whatever log_path says, so
# pytest captures sys.stderr only and leaves them on the run's output.
status=0
(cd tests/python && ../../.venv/bin/python -m pytest -q -p no:cacheprovider --capture=sys .) || status=$?
if compgen -G "$logs/*" >/dev/null; then
  cat "$logs"/*
  echo "sanitizer reports above (also in $logs)" >&2
  exit 1
fi
exit "$status"
