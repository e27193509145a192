#!/usr/bin/env bash
# Runs every test in a build that counts branches and prints, room by room, how many of them the
# tests take.
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

case ${1:-} in
    -h | --help)
        cat <<'TEXT'
Usage: scripts/coverage.sh [--missing] [ROOM...]

Builds the preset "coverage" (Clang) into build/coverage, runs every test there and prints per
room of src/ how many lines and how many outcomes of branches the tests reach. With --missing it
also lists, file by file, the outcomes that no test takes. ROOM limits both to these folders.
TEXT
        exit 0
        ;;
esac

ensure_packages "${test_packages[@]}" clang libclang-rt-dev llvm
configure coverage
build coverage
cd -- "$root"
profiles=build/coverage/profiles
rm -rf -- "$profiles"
# Four files a program that its processes add to, one after the other.
LLVM_PROFILE_FILE=$root/$profiles/%4m.profraw ctest --preset coverage --parallel "$(jobs)" --quiet
llvm-profdata merge -sparse -o build/coverage/all.profdata "$profiles"/*.profraw

objects=()
for program in build/coverage/tests/*_{test,replay} build/coverage/bin/kvarta16; do
    [[ ! -x $program ]] || objects+=(-object "$program")
done
llvm-cov export -instr-profile=build/coverage/all.profdata -skip-functions "${objects[@]}" \
    >build/coverage/all.json
python3 scripts/coverage_rooms.py build/coverage/all.json "$@"
