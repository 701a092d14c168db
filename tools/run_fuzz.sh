#!/usr/bin/env bash
# Replays every seed and every input that ever failed, then lets libFuzzer look for new ones:
#     tools/run_fuzz.sh SECONDS [JOBS [FOLDER]]
# SECONDS for each reader (0: replay only), JOBS of them at a time (default 2), FOLDER with the built programs
# (default build/sanitized/targets). An input that fails is kept in FOLDER/../failed.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
limits=(-max_len=16384 -timeout=10 -rss_limit_mb=1024 -malloc_limit_mb=256 -print_final_stats=1)
export LSAN_OPTIONS="suppressions=$root/tools/lsan.supp:print_suppressions=0" UBSAN_OPTIONS=print_stacktrace=1

# One reader: PROGRAM SECONDS
fuzz_one() {
    local program=$1 seconds=$2 name failed log status=0 inputs=() corpus
    name=$(basename "$program" _fuzz)
    failed=$(dirname "$(dirname "$program")")/failed/$name
    log=$(mktemp)
    corpus=$(mktemp -d)
    mkdir -p "$failed"
    for folder in "$root/fuzz/seeds/$name" "$root/fuzz/found/$name"; do
        [ -d "$folder" ] && inputs+=("$folder"/*)
    done
    [ ${#inputs[@]} -gt 0 ] || { echo "The reader $name has no seeds in fuzz/seeds/$name."; return 1; }
    "$program" "${limits[@]}" -artifact_prefix="$failed/" "${inputs[@]}" >"$log" 2>&1 || status=$?
    if [ $status -ne 0 ]; then
        tail -n 40 "$log"
        echo "The reader $name failed on one of its kept inputs: $(grep '^Running: ' "$log" | tail -n 1 | cut -c 10-)"
    elif [ "$seconds" -gt 0 ]; then
        cp "${inputs[@]}" "$corpus"
        [ -e "$root/fuzz/$name.dict" ] && limits+=(-dict="$root/fuzz/$name.dict")
        "$program" "${limits[@]}" -max_total_time="$seconds" -artifact_prefix="$failed/" "$corpus" >"$log" 2>&1 || status=$?
        if [ $status -ne 0 ]; then
            tail -n 40 "$log"
            echo "The reader $name failed on a new input: $(sed -n 's/.*Test unit written to //p' "$log" | tail -n 1)"
            echo "Mend the reader, then keep the input in fuzz/found/$name."
        else
            echo "$name: ${#inputs[@]} inputs replayed, $(sed -n 's/^stat::number_of_executed_units: *//p' "$log")" \
                "executions, nothing found"
        fi
    else
        echo "$name: ${#inputs[@]} inputs replayed"
    fi
    rm -rf "$log" "$corpus"
    return $status
}

if [ "${1:-}" = --one ]; then
    fuzz_one "$3" "$2"
    exit
fi
seconds=${1:?tools/run_fuzz.sh SECONDS [JOBS [FOLDER]]} jobs=${2:-2}
folder=$(cd "${3:-$root/build/sanitized/targets}" && pwd) || exit 1
programs=("$folder"/*_fuzz)
[ -x "${programs[0]}" ] || { echo "There are no fuzz targets in $folder; build the preset sanitized." >&2; exit 1; }
printf '%s\0' "${programs[@]}" | xargs -0 -n 1 -P "$jobs" bash "$0" --one "$seconds" || {
    echo "Fuzzing failed; the sentences above name the reader and the input." >&2
    exit 1
}
