#!/usr/bin/env bash
# CI fuzzing step: builds the libFuzzer targets with clang under AddressSanitizer and
# UndefinedBehaviorSanitizer and runs each for a bounded time. Any crash, leak, timeout, UB
# report or out-of-memory fails the step; the input that caused it is left in
# fuzz/corpus-run/artifacts/ (turn it into a regression input under tests/data/hostile/).
#
# Environment:
#   FUZZ_SECONDS  run time per target (default 60)
#   BUILD_DIR     build tree (default build-fuzz below the source root)
#   FUZZ_TARGETS  targets to run (default: all four)
#   JOBS          parallel compile jobs (default 2)
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${BUILD_DIR:-$root/build-fuzz}"
seconds="${FUZZ_SECONDS:-60}"
jobs="${JOBS:-2}"
targets="${FUZZ_TARGETS:-zekl_fuzz_reader zekl_fuzz_roundtrip zekl_fuzz_utils zekl_fuzz_codec}"
run="$root/fuzz/corpus-run"

for tool in clang clang++; do
  command -v "$tool" >/dev/null || { echo "ci-fuzz: $tool not found" >&2; exit 1; }
done

CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DZEKL_SANITIZE=ON -DZEKL_BUILD_FUZZERS=ON \
  -DZEKL_BUILD_TESTS=OFF -DZEKL_BUILD_TOOLS=OFF -DZEKL_INSTALL=OFF \
  -DZEKL_WARNINGS_AS_ERRORS=ON >/dev/null
# shellcheck disable=SC2086
cmake --build "$build" --target $targets -j "$jobs"

export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1:allocator_may_return_null=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"

mkdir -p "$run/artifacts"

seed() {
  local target="$1" corpus="$2"
  mkdir -p "$corpus"
  case "$target" in
    zekl_fuzz_utils)
      cp -n "$root"/fuzz/corpus/utils/* "$corpus"/ 2>/dev/null || true ;;
    zekl_fuzz_codec)
      cp -n "$root"/fuzz/corpus/codec/* "$corpus"/ 2>/dev/null || true ;;
    *)
      cp -n "$root"/fuzz/corpus/reader/* "$corpus"/ 2>/dev/null || true
      cp -n "$root"/examples/*.xml "$corpus"/ 2>/dev/null || true
      cp -n "$root"/tests/data/hostile/* "$corpus"/ 2>/dev/null || true ;;
  esac
}

status=0
for target in $targets; do
  corpus="$run/$target"
  seed "$target" "$corpus"
  echo "=== $target: ${seconds}s"
  dict="$root/fuzz/zekl.dict"
  if [[ "$target" == zekl_fuzz_codec ]]; then
    dict="$root/fuzz/zekl_codec.dict"
  fi
  if ! "$build/fuzz/$target" "$corpus" \
      -dict="$dict" \
      -max_total_time="$seconds" \
      -rss_limit_mb=2048 \
      -timeout=10 \
      -max_len=65536 \
      -print_final_stats=1 \
      -artifact_prefix="$run/artifacts/$target-" 2>"$run/$target.log"; then
    echo "ci-fuzz: $target FAILED" >&2
    tail -n 60 "$run/$target.log" >&2
    status=1
  fi
  grep -E '^stat::(number_of_executed_units|peak_rss_mb)|^#[0-9]+.*DONE' "$run/$target.log" || true
done
exit "$status"
