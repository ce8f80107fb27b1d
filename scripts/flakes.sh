#!/usr/bin/env bash
# Runs the whole suite again and again beside two busy processes, in random order and without retries, and counts what
# failed:  scripts/flakes.sh [RUNS, 50] [PRESET, dev]   (the preset must be built)
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1
runs=${1:-50} preset=${2:-dev} log=$PWD/build/flakes.log busy=()

for _ in 1 2; do
    (while :; do :; done) &
    busy+=($!)
done
trap 'kill "${busy[@]}"' EXIT

: >"$log"
for ((run = 1; run <= runs; run++)); do
    start=$SECONDS
    ctest --preset "$preset" --parallel "$(nproc)" --schedule-random >"build/flakes-$run.log" 2>&1
    grep -E '^\s+[0-9]+ - .* \((Failed|Timeout|SEGFAULT|Subprocess aborted|.*Exception.*)\)' "build/flakes-$run.log" |
        sed "s/^ */run $run: /" | tee -a "$log"
    total=$(sed -n 's/.* tests failed out of \([0-9]*\)$/\1/p' "build/flakes-$run.log")
    echo "run $run: ${total:-no} tests, $((SECONDS - start)) s"
    [[ -n $total ]] || echo "run $run: did not end" >>"$log"
done
echo "$runs runs, $(wc -l <"$log") failures (build/flakes.log)"
[[ ! -s $log ]]
