#!/usr/bin/env bash
# Builds the library, the tool and every test program, then runs all tests with ctest and
# prints ctest's summary. Exits non-zero when a build step or a test fails.
#
# Environment:
#   BUILD_DIR         build tree (default: build below the source root)
#   JOBS              parallel build and test jobs (default: number of processors, at most 2
#                     on a CI machine is plenty)
#   ZEKL_CMAKE_ARGS   extra cmake arguments, e.g. "-DZEKL_WARNINGS_AS_ERRORS=ON"
#   CTEST_ARGS        extra ctest arguments, e.g. "-L model"
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${BUILD_DIR:-$root/build}"
jobs="${JOBS:-$(nproc 2>/dev/null || echo 2)}"

generator=()
if [[ ! -f "$build/CMakeCache.txt" ]] && command -v ninja >/dev/null; then
  generator=(-G Ninja)
fi

# shellcheck disable=SC2086
cmake -S "$root" -B "$build" "${generator[@]}" -DZEKL_BUILD_TESTS=ON ${ZEKL_CMAKE_ARGS:-}
cmake --build "$build" -j "$jobs"

# ctest prints its summary ("100% tests passed, 0 tests failed out of N") last.
# shellcheck disable=SC2086
ctest --test-dir "$build" --output-on-failure -j "$jobs" ${CTEST_ARGS:-}
