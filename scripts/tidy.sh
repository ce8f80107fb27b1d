#!/usr/bin/env bash
# Runs clang-tidy with the rules of .clang-tidy on all our code, or on the files that are named. Takes many
# minutes, so test.sh leaves it out. Exit status: 0 clean, 1 findings, 2 it could not run.
set -uo pipefail
cd "$(dirname "$0")/.." || exit 2
command -v clang-tidy >/dev/null || {
    echo "clang-tidy is missing: apt-get install clang-tidy" >&2
    exit 2
}
mkdir -p build
cmake --preset dev -B build/tidy -DGADGET_BENCH=ON >build/tidy.log 2>&1 || {
    cat build/tidy.log >&2
    exit 2
}
folders=(src platform tests)
[[ -d bench ]] && folders+=(bench)
files=("$@")
((${#files[@]})) || mapfile -t files < <(find "${folders[@]}" -name '*.cpp' | sort)
printf '%s\n' "${files[@]}" | xargs -P "$(nproc)" -n 1 clang-tidy --quiet -p build/tidy || {
    echo "clang-tidy: findings in ${#files[@]} files, see above" >&2
    exit 1
}
echo "clang-tidy: ${#files[@]} files are clean"
