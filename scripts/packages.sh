#!/usr/bin/env bash
# What is not worth each run of ./test: the libraries as shared ones, and Clang.
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

case ${1:-} in
    -h | --help)
        cat <<'TEXT'
Usage: scripts/packages.sh [FOLDER]

Builds the libraries and the tool as shared ones into FOLDER, by default build/shared, and installs
them there; checks that they show what the headers mark and nothing else; builds tests/consumer
against them as CMake and as pkg-config finds them, under Clang and GCC; and compiles each installed
header alone under Clang with all warnings. Static libraries, Debian packages and the headers under
GCC are for ./test.
TEXT
        exit 0
        ;;
esac

ensure_packages "${build_packages[@]}" binutils clang pkg-config python3
cd -- "$root"
shared=$(realpath -m -- "${1:-build/shared}")
installed=$shared/packages/installed

begin() {
    printf '%s (%d s so far)\n' "$1" "$SECONDS"
}

begin 'shared libraries'
configure release -B "$shared" -DBUILD_SHARED_LIBS=ON -DKVARTA16_TESTS=OFF -DKVARTA16_EXAMPLES=OFF
cmake --build "$shared" --parallel "$(jobs)"
tests/packages/install.sh "$shared" "$installed"

begin 'their symbols'
python3 tests/packages/symbols_test.py "$installed" src
"$installed/bin/kvarta16" --version

begin 'a project that uses them'
adapters=()
for library in "$installed"/lib*/libkvarta16_*.so; do
    name=${library##*/libkvarta16_}
    adapters+=("${name%.so}")
done
tests/packages/with_cmake.sh "$installed" "$shared/packages/cmake" clang++ "${adapters[@]}" >/dev/null
tests/packages/with_pkg_config.sh "$installed" "$shared/packages/pkg_config" g++ "${adapters[@]}"

begin 'each header alone under Clang'
# shellcheck disable=SC2016 # the inner shell's own parameters
(cd -- "$installed/include" && find kvarta16 -name '*.h' -print0) |
    xargs -0 -n 1 -P "$(jobs)" bash -c '
        printf "#include <%s>\n#include <%s>\n" "$1" "$1" |
            clang++ -std=c++20 -fsyntax-only -x c++ -I"$0/include" -Wall -Wextra -Wpedantic \
                -Wconversion -Wshadow -Werror - || { echo "$1" >&2; exit 1; }
    ' "$installed"
printf 'shared libraries and headers, all well (%d s)\n' "$SECONDS"
