#!/usr/bin/env bash
# Runs clang-tidy with the rules of .clang-tidy on the gadget and the platform, or on the files that are named. Takes
# minutes, so test.sh leaves it out.
set -euo pipefail
cd "$(dirname "$0")/.."
command -v clang-tidy >/dev/null || { echo "clang-tidy is missing: apt-get install clang-tidy" >&2; exit 1; }
cmake --preset dev >/dev/null
files=("$@")
((${#files[@]})) || mapfile -t files < <(find src platform -name '*.cpp' | sort)
printf '%s\n' "${files[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy --quiet -p build/dev
