#!/usr/bin/env bash
# Builds the consumer against an installed library as pkg-config finds it, and runs it:
# with_pkg_config.sh PREFIX SCRATCH COMPILER [ADAPTER...]
set -euo pipefail
prefix=$1 scratch=$2 compiler=$3
shift 3
here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
warnings=(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

command -v pkg-config >/dev/null || {
    echo 'SKIPPED: there is no pkg-config'
    exit 77
}
rm -rf -- "$scratch"
mkdir -p -- "$scratch/data"
cp -R -- "$prefix" "$scratch/moved"
modules=$(find "$scratch/moved" -type d -name pkgconfig)
libraries=$(dirname -- "$modules")
export PKG_CONFIG_PATH=$modules LD_LIBRARY_PATH=$libraries

# flags MODULE...: what the compiler gets before and after the sources.
flags() {
    local all
    all=$(pkg-config --cflags "$@") && read -ra before <<<"$all"
    all=$(pkg-config --libs "$@") && read -ra after <<<"$all"
}

flags kvarta16-posix kvarta16-sqlite
"$compiler" -std=c++20 "${warnings[@]}" "${before[@]}" "$here"/../consumer/{main,members}.cpp \
    "${after[@]}" -o "$scratch/consumer"
"$scratch/consumer" "$scratch/data"
flags kvarta16
"$compiler" -std=c++20 "${warnings[@]}" "${before[@]}" -c "$here/../consumer/links_one.cpp" \
    -o "$scratch/links_one.o"
for adapter in "$@"; do
    flags "kvarta16-$adapter"
    "$compiler" "$scratch/links_one.o" "${after[@]}" -o "$scratch/links_$adapter"
    "$scratch/links_$adapter" "$adapter"
done
