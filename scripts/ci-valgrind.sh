#!/usr/bin/env bash
# CI memcheck step: builds a normal RelWithDebInfo tree and runs the test programs under
# valgrind (scripts/valgrind.sh). Within about ten minutes on two cores: the programs run in
# full except for the tests that only repeat a check many times over large inputs, which
# memcheck makes slow without adding coverage. They still run in the normal and sanitizer
# builds. Left out here:
#   zekl_hostile_tests: HostileStructure.TenMegabyte*, HostileStructure.HundredThousand*,
#     HostileStructure.ManyAttributesOnOneElementDoNotHurt,
#     HostileEntities.ManyReferencesToOneLargeEntity*
#     (the every-byte truncation test and all entity, encoding and file tests do run).
#   zekl_writer_tests: SafeFileOutput_Open.NoMemoryForTheBufferLeavesNoDescriptorAndNoFile,
#     which makes the program's own operator new fail; memcheck puts its own operator new in
#     its place, so the failure cannot happen under it.
#
# Environment: BUILD_DIR (default build-valgrind below the source root), JOBS (default 2).
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${BUILD_DIR:-$root/build-valgrind}"
jobs="${JOBS:-2}"

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZEKL_BUILD_TESTS=ON \
  -DZEKL_SANITIZE=OFF -DZEKL_WARNINGS_AS_ERRORS=ON >/dev/null
cmake --build "$build" -j "$jobs"

export VALGRIND_FILTER_zekl_hostile_tests="${VALGRIND_FILTER_zekl_hostile_tests:-*-HostileStructure.TenMegabyte*:HostileStructure.HundredThousand*:HostileStructure.ManyAttributesOnOneElementDoNotHurt:HostileEntities.ManyReferencesToOneLargeEntity*}"
export VALGRIND_FILTER_zekl_writer_tests="${VALGRIND_FILTER_zekl_writer_tests:-*-SafeFileOutput_Open.NoMemoryForTheBufferLeavesNoDescriptorAndNoFile}"
# zekl_codec_tests counts allocations through its own operator new and delete: valgrind must
# leave them in place (intercepting malloc and free under them) instead of replacing only new.
export VALGRIND_OPTIONS_zekl_codec_tests="${VALGRIND_OPTIONS_zekl_codec_tests:---soname-synonyms=somalloc=nouserintercepts}"
exec "$root/scripts/valgrind.sh" "$build"
