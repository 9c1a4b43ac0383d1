#!/usr/bin/env bash
# Fails when a C++ source of the tree is not formatted as .clang-format says.
# Fix with: clang-format -i <file> (or the whole list this script prints).
# Environment: CLANG_FORMAT (default clang-format).
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$root"
clang_format="${CLANG_FORMAT:-clang-format}"
command -v "$clang_format" >/dev/null || { echo "check-format: $clang_format not found" >&2; exit 1; }

dirs=()
for dir in include src tests tools examples bench fuzz; do
  [[ -d "$dir" ]] && dirs+=("$dir")
done

mapfile -d '' files < <(find "${dirs[@]}" -type f \( -name '*.h' -o -name '*.cpp' \) -print0 | sort -z)
if [[ ${#files[@]} -eq 0 ]]; then
  echo "check-format: no sources found"
  exit 0
fi

bad=()
for file in "${files[@]}"; do
  if ! "$clang_format" --dry-run --Werror "$file" >/dev/null 2>&1; then
    bad+=("$file")
  fi
done

if [[ ${#bad[@]} -gt 0 ]]; then
  echo "check-format: ${#bad[@]} of ${#files[@]} file(s) need clang-format:" >&2
  printf '  %s\n' "${bad[@]}" >&2
  # Show the first differences to make the failure readable in a CI log.
  "$clang_format" --dry-run --Werror "${bad[0]}" 2>&1 | head -n 20 >&2 || true
  exit 1
fi
echo "check-format: ${#files[@]} file(s) formatted"
