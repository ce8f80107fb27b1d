#!/usr/bin/env bash
# Builds the fuzz targets with clang and runs each for SECONDS (600 unless told), two at a time.
# Usage: tests/fuzz/run.sh [SECONDS [TARGET…]]. Exit status 0 only when no target found a fault.
# Findings, the grown inputs and the logs are left below build/fuzz/findings; nothing in the tree changes.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit 1
seconds=${1:-600}
if [[ ! $seconds =~ ^[1-9][0-9]*$ ]]; then
    echo "run.sh: '$seconds' is not a number of seconds" >&2
    exit 2
fi
targets=("${@:2}")
((${#targets[@]} > 0)) || mapfile -t targets < <(ls tests/fuzz/corpus)
for target in "${targets[@]}"; do
    [[ -d tests/fuzz/corpus/$target ]] || { echo "run.sh: there is no target '$target'" >&2 && exit 2; }
done

mkdir -p build
if ! { cmake --preset fuzz && cmake --build --preset fuzz; } >build/fuzz.log 2>&1; then
    tail -n 40 build/fuzz.log
    exit 1
fi

export UBSAN_OPTIONS=print_stacktrace=1
# The store syncs at every write: in memory that costs nothing.
[[ -d /dev/shm && -w /dev/shm ]] && export TMPDIR=/dev/shm

fuzz_one() {
    local target=$1 folder=build/fuzz/findings/$1 options=(-max_len=4096) status=0
    mkdir -p "$folder/corpus"
    [[ $target == address ]] && options=(-max_len=256)
    [[ $target == editing ]] && options=(-max_len=512)
    [[ $target == store_operations ]] && options=(-max_len=1024)
    [[ $target == store_file ]] && options=(-max_len=16384)
    [[ $target == script ]] && options=(-max_len=65536)
    "build/fuzz/fuzz/fuzz-$target" "${options[@]}" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="$folder/" "$folder/corpus" "tests/fuzz/corpus/$target" \
        >"$folder/log" 2>&1 || status=$?
    local executions
    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$folder/log")
    echo "$target: ${executions:-unknown} executions, $SECONDS s since the start, $(
        ((status == 0)) && echo "no finding" || echo "A FINDING: see $folder/log"
    )"
    return "$status"
}

status=0
for target in "${targets[@]}"; do
    while (($(jobs -rp | wc -l) >= 2)); do
        wait -n || status=1
    done
    fuzz_one "$target" &
done
while (($(jobs -p | wc -l) > 0)); do
    wait -n || { (($? == 127)) && break; status=1; }
done
exit "$status"
