#!/usr/bin/env bash
# Builds the gadget and opens it in gadget-host. Without a display it runs a scripted tour on a virtual screen instead.
# Usage: ./run.sh [options of gadget-host], for instance
#   ./run.sh --network simulated=platform/network/simulated/scenarios/gateway-down.json
set -euo pipefail
root=$(cd "$(dirname "$0")" && pwd)
called_from=$PWD
host=$root/build/dev/bin/gadget-host
targets=(gadget-host ug-Ostrelle-efl gadget-resources gadget-networks)
kind=wired scenario=success
tour=$root/build/tour

build() {
    local log=$root/build/run.log
    mkdir -p build
    echo "Building (progress: build/run.log)"
    if ! { cmake --preset dev && cmake --build --preset dev --target "${targets[@]}"; } >"$log" 2>&1; then
        tail -n 40 "$log" >&2
        echo "The build failed; everything it said is in build/run.log" >&2
        exit 1
    fi
}

# has_option LONG SHORT ARGUMENT…
has_option() {
    local long=$1 short=$2 argument
    shift 2
    for argument in "$@"; do
        [[ $argument == "$long" || $argument == "$long="* || ( -n $short && $argument == "$short"* ) ]] && return 0
    done
    return 1
}

# The tour runs in a folder of its own, so files that were named from elsewhere need their whole path.
absolute_options() {
    local argument before=""
    options=()
    for argument in "$@"; do
        case $argument in
            *simulated=*) argument=${argument%%simulated=*}simulated=$(realpath -m "${argument#*simulated=}") ;;
            --store=* | --module=*) argument=${argument%%=*}=$(realpath -m "${argument#*=}") ;;
            *) [[ $before != --store && $before != --module && $before != -m ]] || argument=$(realpath -m "$argument") ;;
        esac
        options+=("$argument")
        before=$argument
    done
}

# A tour starts from an empty store and leaves its pictures, its transcript and its log in build/tour.
run_tour() {
    rm -rf "$tour"
    mkdir -p "$tour"
    local options status=0
    absolute_options "$@"
    has_option --network -n "$@" ||
        options+=(--network "simulated=$root/platform/network/simulated/scenarios/$scenario.json")
    has_option --store "" "$@" || options+=(--store "$tour/settings.db")
    echo "No display: running the tour tour/$kind.tour on a virtual screen"
    (cd "$tour" && xvfb-run -a -e xvfb.log -s "-screen 0 1920x1080x24" "$host" "${options[@]}" \
        --script "$root/tour/$kind.tour") >"$tour/transcript.txt" 2>"$tour/log.txt" || status=$?
    if ((status != 0)); then
        tail -n 15 "$tour/transcript.txt" "$tour/log.txt" >&2
        echo "The tour failed with exit code $status (./run.sh --help lists them)" >&2
    fi
    echo "Screenshots and transcript.txt: $tour"
    return "$status"
}

if has_option --wireless "" "$@"; then kind=wireless scenario=wifi-success; fi
cd "$root"
# shellcheck source=scripts/packages.sh
. scripts/packages.sh
install_packages
build
cd "$called_from"
if has_option --help -h "$@" || has_option --version -V "$@" || [[ -n ${DISPLAY:-} || -n ${WAYLAND_DISPLAY:-} ]]; then
    exec "$host" "$@"
elif has_option --script "" "$@"; then
    exec xvfb-run -a -s "-screen 0 1920x1080x24" "$host" "$@"
else
    run_tour "$@"
fi
