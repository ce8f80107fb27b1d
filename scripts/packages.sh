# shellcheck shell=bash
# Sourced by run.sh, test.sh and bench.sh, from the root of the tree: installs the packages of packages.txt that are missing.

missing_packages() {
    local name
    grep -vE '^\s*(#|$)' packages.txt | while read -r name; do
        [[ $(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null) == installed ]] || echo "$name"
    done
}

# Quiet unless it fails. The package lists are fetched only when the installed ones do not do.
apt_install() {
    local log as_root=()
    log=$(mktemp)
    ((EUID == 0)) || as_root=(sudo)
    local install=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "$@")
    if "${install[@]}" >"$log" 2>&1 || { "${as_root[@]}" apt-get update -q && "${install[@]}"; } >"$log" 2>&1; then
        rm -f "$log"
        return 0
    fi
    tail -n 30 "$log" >&2
    rm -f "$log"
    return 1
}

install_packages() {
    local missing
    mapfile -t missing < <(missing_packages)
    ((${#missing[@]} == 0)) && return 0
    if ((EUID != 0)) && ! command -v sudo >/dev/null; then
        echo "Packages are missing; install them as root: apt-get install --no-install-recommends ${missing[*]}" >&2
        return 1
    fi
    echo "Installing ${#missing[@]} missing packages: ${missing[*]}"
    apt_install "${missing[@]}" || {
        echo "These packages could not be installed: ${missing[*]}" >&2
        return 1
    }
}
