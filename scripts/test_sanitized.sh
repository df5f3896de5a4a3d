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

# The interpreter is not instrumented: the sanitizer runtimes must be the first libraries of the
# process (ASan refuses to start otherwise), so they are preloaded, those of the compiler that
# built the tree. PYTHONMALLOC=malloc puts every Python object on the sanitizer's heap, so an
# overrun of a Python buffer is caught and the leak check follows pointers held by Python objects
# (pymalloc's arenas are invisible to it). Leak stacks keep two frames so that the interpreter's
# own leftovers at exit can be told from zep's (see tests/python/lsan_interpreter.supp). A huge
# malloc from Python returns null (MemoryError, as without the sanitizer) instead of aborting.
# A report written to a standard error that pytest captures dies with the process the sanitizers
# stop: ASan writes its reports to files (any report fails the run, also one from a child process
# whose test passed), and pytest captures sys.stderr only, which leaves UBSan's reports (it
# ignores log_path) on the run's output.
logs="$PWD/$tree/sanitizer-reports"
rm -rf "$logs" && mkdir -p "$logs"
cxx=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$tree/CMakeCache.txt")
export LD_PRELOAD="$("$cxx" -print-file-name=libasan.so):$("$cxx" -print-file-name=libubsan.so)"
export PYTHONMALLOC=malloc
export ASAN_OPTIONS="detect_leaks=1:malloc_context_size=2:allocator_may_return_null=1:log_path=$logs/asan"
export UBSAN_OPTIONS="$UBSAN_OPTIONS:log_path=$logs/ubsan"
export LSAN_OPTIONS="suppressions=$PWD/tests/python/lsan_interpreter.supp:print_suppressions=0"
export ZEP_PYTHONPATH="$PWD/$tree/python" ZEP_SANITIZED=1

# Run from the tests folder, as scripts/test.sh does; conftest.py makes sure the package imported
# is the sanitized one.
status=0
(cd tests/python && ../../.venv/bin/python -m pytest -q -p no:cacheprovider --capture=sys .) || status=$?
if compgen -G "$logs/*" >/dev/null; then
  cat "$logs"/*
  echo "sanitizer reports above (also in $logs)" >&2
  exit 1
fi
exit "$status"
