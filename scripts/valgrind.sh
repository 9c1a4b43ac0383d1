#!/usr/bin/env bash
# Runs every gtest program of a normal (not sanitized) build tree under valgrind memcheck.
# Any invalid access, use of uninitialised memory, or definite/indirect leak fails the run.
#
# Usage: scripts/valgrind.sh [build-dir]          (default: build below the source root)
# Environment:
#   VALGRIND_PROGRAMS  names of the test programs to run (default: every tests/zekl_*_tests)
#   VALGRIND_FILTER_<program>  a gtest filter for that program, for example
#                      VALGRIND_FILTER_zekl_reader_tests='-ReaderSpeed.*'
#   VALGRIND_OPTIONS_<program>  further valgrind options for that program
#   VALGRIND_LOG_DIR   where each program's valgrind log goes (default: <build-dir>/valgrind)
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${1:-$root/build}"
logs="${VALGRIND_LOG_DIR:-$build/valgrind}"

command -v valgrind >/dev/null || { echo "valgrind.sh: valgrind not found" >&2; exit 1; }
[ -d "$build/tests" ] || { echo "valgrind.sh: no test programs below $build/tests" >&2; exit 1; }
mkdir -p "$logs"

if [ -n "${VALGRIND_PROGRAMS:-}" ]; then
  programs="$VALGRIND_PROGRAMS"
else
  programs="$(cd "$build/tests" && find . -maxdepth 1 -type f -name 'zekl_*_tests' -perm -u+x -printf '%f\n' | sort)"
fi
[ -n "$programs" ] || { echo "valgrind.sh: no test programs found" >&2; exit 1; }

status=0
for program in $programs; do
  exe="$build/tests/$program"
  [ -x "$exe" ] || { echo "valgrind.sh: $exe missing" >&2; status=1; continue; }
  filter_var="VALGRIND_FILTER_$program"
  filter="${!filter_var:-*}"
  options_var="VALGRIND_OPTIONS_$program"
  read -r -a options <<<"${!options_var:-}"
  echo "=== $program (filter: $filter)"
  if valgrind "${options[@]}" --tool=memcheck --leak-check=full --show-leak-kinds=definite,indirect \
      --errors-for-leak-kinds=definite,indirect --error-exitcode=1 --track-origins=no \
      --num-callers=30 --log-file="$logs/$program.log" \
      "$exe" --gtest_filter="$filter" --gtest_brief=1 >"$logs/$program.out" 2>&1; then
    grep -E 'ERROR SUMMARY|definitely lost|indirectly lost' "$logs/$program.log" || true
  else
    echo "valgrind.sh: $program FAILED" >&2
    tail -n 40 "$logs/$program.out" >&2
    grep -E -A 30 'Invalid|uninitialised|definitely lost in|indirectly lost in' "$logs/$program.log" | head -n 120 >&2 || true
    status=1
  fi
done
exit "$status"
