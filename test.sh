#!/usr/bin/env bash
# Checks everything: format, build without warnings, all tests as built and with sanitizers, and the installation.
# The last line counts tests and checks together. Exit status 0 only when nothing failed.
set -uo pipefail
cd "$(dirname "$0")" || exit 1
passed=0 failed=0 skipped=0

check() {
    local what=$1
    shift
    echo "== $what"
    if "$@"; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "== FAILED: $what"
    fi
}

check_format() {
    find src platform tests bench -name '*.[ch]' -o -name '*.cpp' | sort |
        xargs -r clang-format --dry-run -Werror
}

build() {
    cmake --preset "$1" >"build/$1.log" 2>&1 && cmake --build --preset "$1" >>"build/$1.log" 2>&1 && return
    tail -n 60 "build/$1.log"
    return 1
}

# Counts every test of a run, from what ctest prints; a run without its closing line counts as a failure.
run_tests() {
    local log=$PWD/build/$1-tests.log status=0 total bad left_out
    echo "== tests, $1 build"
    ctest --preset "$1" --parallel "$(nproc)" --output-junit "$PWD/build/$1-tests.xml" 2>&1 | tee "$log" || status=$?
    total=$(sed -n 's/.* tests failed out of \([0-9]*\)$/\1/p' "$log")
    if [[ -z $total ]]; then
        failed=$((failed + 1))
        return
    fi
    bad=$(sed -n 's/.* \([0-9]*\) tests failed out of [0-9]*$/\1/p' "$log")
    left_out=$(grep -cE '^\s+[0-9]+ - .* \(Skipped\)$' "$log")
    passed=$((passed + total - bad - left_out)) failed=$((failed + bad)) skipped=$((skipped + left_out))
    # ctest also fails without a failed test, for instance when it finds none
    ((status == 0 || bad > 0)) || failed=$((failed + 1))
}

check_installation() {
    local stage=$PWD/build/stage file status=0 found
    rm -rf "$stage"
    DESTDIR=$stage cmake --install build/release >build/install.log 2>&1 || {
        cat build/install.log
        return 1
    }
    for file in usr/ug/lib/libug-Ostrelle-efl.so \
        usr/ug/res/edje/ug-Ostrelle-efl/ug-Ostrelle-efl.edj \
        usr/ug/res/images/ug-Ostrelle-efl/1920/network_popup_connect_1.png \
        usr/ug/res/locale/en/LC_MESSAGES/ug-Ostrelle-efl.mo \
        usr/bin/gadget-host \
        'usr/lib/*/libgadget-platform.so'; do
        # shellcheck disable=SC2086
        found=$(cd "$stage" && ls -d $file 2>/dev/null)
        if [[ -z $found ]]; then
            echo "not installed: /$file" && status=1
        elif [[ $(stat -c %A "$stage/$found") != -r*r*r* ]]; then
            echo "not readable for everyone: /$found" && status=1
        fi
    done
    "$stage/usr/bin/gadget-host" --version >/dev/null || { echo "the installed gadget-host does not start" && status=1; }
    return "$status"
}

summary() { echo "$passed passed, $failed failed, $skipped skipped"; }

# shellcheck source=scripts/packages.sh
. scripts/packages.sh
install_packages || {
    failed=1
    summary
    exit 1
}
mkdir -p build
check "format" check_format
for preset in dev asan; do
    before=$failed
    check "build, $preset" build "$preset"
    ((failed == before)) && run_tests "$preset"
done
before=$failed
check "build, release" build release
((failed == before)) && check "installation" check_installation
summary
((failed == 0))
