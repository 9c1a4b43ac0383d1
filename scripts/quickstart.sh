#!/usr/bin/env bash
# First run on a fresh Debian 12 machine: installs the missing build packages, builds the
# library and the zekl tool, and shows the tool at work.
#
# Environment:
#   BUILD_DIR  build tree (default: build below the source root; scripts/test.sh uses it too)
#   JOBS       parallel build jobs (default: number of processors)
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${BUILD_DIR:-$root/build}"
jobs="${JOBS:-$(nproc 2>/dev/null || echo 2)}"

# What building and testing need (scripts/test.sh uses the same tree).
packages=(build-essential cmake ninja-build pkg-config libxerces-c-dev libgtest-dev nlohmann-json3-dev
  libcli11-dev help2man bash-completion man-db)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$package")
  fi
done

if [[ ${#missing[@]} -gt 0 ]]; then
  echo "== installing: ${missing[*]}"
  sudo=()
  if [[ "$(id -u)" -ne 0 ]]; then
    if command -v sudo >/dev/null; then
      sudo=(sudo)
    else
      echo "quickstart: missing packages (${missing[*]}); run as root or install sudo" >&2
      exit 1
    fi
  fi
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
fi

echo "== configure and build ($build)"
generator=()
if [[ ! -f "$build/CMakeCache.txt" ]]; then
  generator=(-G Ninja)
fi
cmake -S "$root" -B "$build" "${generator[@]}"
cmake --build "$build" --target zekl -j "$jobs"

zekl="$build/tools/zekl/zekl"
echo "== zekl version"
"$zekl" version
echo "== zekl new --protocol UDS --nrc-table"
"$zekl" new --protocol UDS --nrc-table
echo  # the document's last line has no line end

example="$root/examples/uds_ecu.xml"
if [[ -f "$example" ]]; then
  echo "== zekl info examples/uds_ecu.xml"
  "$zekl" info "$example"
  echo "== zekl show examples/uds_ecu.xml"
  "$zekl" show "$example"
else
  echo "== examples/uds_ecu.xml not present: skipping info and show"
fi
echo "== quickstart done; run scripts/test.sh for the test suite"
