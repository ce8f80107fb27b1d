#!/usr/bin/env bash
# Measures the gadget against its control program and prints one table; bench/README.md tells how to read it.
# Nothing is judged: exit status 0 unless something could not be built or measured.
set -euo pipefail
cd "$(dirname "$0")"

# shellcheck source=scripts/packages.sh
. scripts/packages.sh
install_packages
mkdir -p build
echo "Building (progress: build/bench.log)" >&2
if ! { cmake --preset bench && cmake --build --preset bench; } >build/bench.log 2>&1; then
    tail -n 40 build/bench.log >&2
    echo "The build failed; everything it said is in build/bench.log" >&2
    exit 1
fi
exec bench/report build/bench
