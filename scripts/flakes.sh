#!/usr/bin/env bash
# Runs the whole suite again and again beside two busy processes, in random order and without retries, and counts what
# failed:  scripts/flakes.sh [RUNS, 50] [PRESET, dev] [COMMAND...]   (the preset must be built)
# A command such as scripts/random_remote.sh keeps the machine busy in place of two empty loops, which follow it.
set -uom pipefail # m: a group for each busy job, so that its children end with it
cd "$(dirname "$0")/.." || exit 1
runs=${1:-50} preset=${2:-dev} log=$PWD/build/flakes.log
command=("${@:3}")
[[ $runs =~ ^[1-9][0-9]*$ ]] || { echo "scripts/flakes.sh: '$runs' is no number of runs" >&2; exit 2; }

spin() { while :; do :; done; }
keep_busy() {
    ((${#command[@]} == 0)) || "${command[@]}" >build/flakes-beside.log 2>&1
    spin &
    spin
}
keep_busy &
busy=$!
trap 'kill -- "-$busy"' EXIT

: >"$log"
for ((run = 1; run <= runs; run++)); do
    start=$SECONDS
    ctest --preset "$preset" --parallel "$(($(nproc) + 1))" --schedule-random >"build/flakes-$run.log" 2>&1
    sed -n '/^The following tests FAILED:/,$ { /(Skipped)$/d; s/^[[:space:]]*\([0-9][0-9]* - .*\)/run '"$run"': \1/p }' \
        "build/flakes-$run.log" | tee -a "$log"
    total=$(sed -n 's/.* tests failed out of \([0-9]*\)$/\1/p' "build/flakes-$run.log")
    echo "run $run: ${total:-no} tests, $((SECONDS - start)) s"
    [[ -n $total ]] || echo "run $run: did not end" >>"$log"
done
echo "$runs runs, $(wc -l <"$log") failures (build/flakes.log)"
[[ ! -s $log ]]
