#!/usr/bin/env bash
# Runs the fuzz targets of the preset asan-ubsan, from the inputs that are kept for each.
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/common.sh"

usage() {
    cat <<'TEXT'
Usage: scripts/fuzz.sh [SECONDS] [NAME...]

Runs each fuzz target, or those that are named (rpc, sql, ...), for SECONDS (60), as many at a time
as there are processors, from a copy of its inputs in fuzz/corpus. The fuzzers are those of the
preset asan-ubsan with KVARTA16_FUZZ, which has to be built; KVARTA16_FUZZ_BUILD names another build
folder.

A target that fails is named with the file that makes it fail, and the exit status is 1. What a run
finds lies in the build folder under fuzz-runs/NAME: new inputs in corpus/, what fails beside it, and its
log.
TEXT
}

seconds=60
names=()
for argument in "$@"; do
    case $argument in
        -h | --help)
            usage
            exit 0
            ;;
        *[!0-9]*) names+=("$argument") ;;
        *) seconds=$argument ;;
    esac
done

build=${KVARTA16_FUZZ_BUILD:-$root/build/asan-ubsan}
fuzzers=$build/bin/fuzz
[[ -d $fuzzers ]] || fail "there are no fuzzers in $fuzzers; build the preset asan-ubsan"
if ((${#names[@]} == 0)); then
    for fuzzer in "$fuzzers"/*_fuzz; do
        name=${fuzzer##*/}
        names+=("${name%_fuzz}")
    done
fi

# One target from beginning to end; what it says goes to its log.
run_one() {
    local name=$1 folder=$build/fuzz-runs/$1 kept=$root/fuzz/corpus/$1 words=()
    [[ -x $fuzzers/${name}_fuzz ]] || fail "there is no fuzzer $fuzzers/${name}_fuzz"
    [[ -d $kept ]] || fail "there are no inputs in $kept"
    rm -rf -- "$folder"
    mkdir -p -- "$folder"
    cp -R -- "$kept" "$folder/corpus"
    [[ ! -f $root/fuzz/$name.dict ]] || words=("-dict=$root/fuzz/$name.dict")
    if "$fuzzers/${name}_fuzz" -max_total_time="$seconds" -seed=16 -rss_limit_mb=4096 -timeout=20 \
        -print_final_stats=1 -artifact_prefix="$folder/" "${words[@]}" "$folder/corpus" \
        >"$folder/log" 2>&1; then
        printf '%-16s %s runs\n' "$name" \
            "$(sed -n 's/^stat::number_of_executed_units: *//p' "$folder/log")"
        return 0
    fi
    tail -n 40 -- "$folder/log" >&2
    printf '%s failed: %s\n' "$name" \
        "$(find "$folder" -maxdepth 1 -type f ! -name log | tr '\n' ' ')" >&2
    return 1
}

# As many at a time as there are processors; the next one begins when any has ended.
failed=0
running=0
for name in "${names[@]}"; do
    if ((running == $(jobs))); then
        wait -n || failed=1
        running=$((running - 1))
    fi
    run_one "$name" &
    running=$((running + 1))
done
while ((running > 0)); do
    wait -n || failed=1
    running=$((running - 1))
done
exit "$failed"
