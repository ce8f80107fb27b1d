#!/usr/bin/env bash
# The long random remote: 20 seeds that play so many actions together, one process a core, with the sanitizers on:
#   scripts/random_remote.sh [ACTIONS, 1000000]   (the preset asan must be built)
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1
actions=${1:-1000000} seeds=20
[[ $actions =~ ^[1-9][0-9]*$ ]] && ((actions >= seeds)) || {
    echo "scripts/random_remote.sh: '$actions' is no number of actions, $seeds or more" >&2
    exit 2
}
mkdir -p build/random-remote && cd build/random-remote || exit 1

play() {
    RANDOM_REMOTE_SEED=$1 RANDOM_REMOTE_ACTIONS=$2 ../asan/tests/random-remote-test >"$1.log" 2>&1
    local status=$?
    echo "seed $1: $2 actions, $([[ $status == 0 ]] && echo passed || echo "FAILED, build/random-remote/$1.log"), $SECONDS s"
    return "$status"
}
export -f play
seq 0 $((seeds - 1)) | xargs -P "$(nproc)" -I{} bash -c "play {} $((actions / seeds))"
