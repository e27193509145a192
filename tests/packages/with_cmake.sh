#!/usr/bin/env bash
# Builds the consumer against an installed library as CMake finds it, and runs it:
# with_cmake.sh PREFIX SCRATCH COMPILER [ADAPTER...]
set -euo pipefail
prefix=$1 scratch=$2 compiler=$3
shift 3
here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)

# Found where it stands now, and not where it was installed.
rm -rf -- "$scratch"
mkdir -p -- "$scratch"
cp -R -- "$prefix" "$scratch/moved"
IFS=';'
cmake -S "$here/../consumer" -B "$scratch/build" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_PREFIX_PATH="$scratch/moved" -DCONSUMER_ADAPTERS="$*"
unset IFS
cmake --build "$scratch/build"
for adapter in "$@"; do
    "$scratch/build/links_$adapter" "$adapter"
done
mkdir -- "$scratch/data"
"$scratch/build/consumer" "$scratch/data"
