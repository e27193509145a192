# shellcheck shell=bash disable=SC2034 # the lists are for those that source it
# What run, test and .ci/run share: where the project lies, which Debian packages each of
# them needs, and how a missing one is installed. This file is sourced, not run.

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)

build_packages=(g++ cmake ninja-build libsqlite3-dev unixodbc-dev libcups2-dev libcli11-dev
    nlohmann-json3-dev)
# The servers and their drivers are for the tests of the ODBC, CUPS and FTP adapters, which start them
# themselves.
server_packages=(postgresql odbc-postgresql mariadb-server-core mariadb-client-core odbc-mariadb
    libsqliteodbc cups-daemon python3-pyftpdlib proftpd-core)
test_packages=("${build_packages[@]}" "${server_packages[@]}" libgtest-dev libgmock-dev python3
    sqlite3 xvfb xterm xdotool x11-xkb-utils pkg-config dpkg-dev file groff-base)

# A compiler cache is used where there is one; nothing depends on it.
if [[ -z ${CMAKE_CXX_COMPILER_LAUNCHER:-} ]] && command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi

fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

jobs() {
    nproc 2>/dev/null || echo 2
}

package_is_installed() {
    [[ $(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

# Installs those of the named Debian packages that are missing. With all of them there, apt is
# not called at all. On another system the configuring step says what is missing.
ensure_packages() {
    command -v dpkg-query >/dev/null && command -v apt-get >/dev/null || return 0
    local package missing=() as_root=()
    for package in "$@"; do
        package_is_installed "$package" || missing+=("$package")
    done
    ((${#missing[@]})) || return 0

    if ((EUID != 0)); then
        command -v sudo >/dev/null ||
            fail "please install as root: apt-get install ${missing[*]}"
        as_root=(sudo)
    fi
    printf 'Installing %s\n' "${missing[*]}"
    # No server that a package brings is to begin its service here.
    local policy=/usr/sbin/policy-rc.d ours=()
    if [[ ! -e $policy ]]; then
        printf '#!/bin/sh\nexit 101\n' | "${as_root[@]}" tee "$policy" >/dev/null
        "${as_root[@]}" chmod 755 "$policy"
        ours=("$policy")
    fi
    local log failed=
    log=$(mktemp)
    if ! { "${as_root[@]}" apt-get -qq update &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get -qq install --yes --no-install-recommends "${missing[@]}"; } \
        </dev/null >"$log" 2>&1; then
        cat -- "$log" >&2
        failed=yes
    fi
    rm -f -- "$log"
    ((${#ours[@]} == 0)) || "${as_root[@]}" rm -f -- "${ours[@]}"
    [[ -z $failed ]] || fail "could not install: ${missing[*]}"
}

# Configures a preset into build/PRESET; further arguments are passed to cmake.
configure() {
    local preset=$1
    shift
    (cd -- "$root" && cmake --log-level=WARNING --preset "$preset" "$@" >/dev/null)
}

# Builds a configured preset; further arguments are passed to cmake.
build() {
    local preset=$1
    shift
    cmake --build "$root/build/$preset" --parallel "$(jobs)" "$@"
}
