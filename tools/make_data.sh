#!/usr/bin/env bash
# Makes the run-time data: tools/make_data.sh FORGE GAME CONTENT OUTPUT
# The forge draws and models; the octrees are made by the game's own console command.
set -euo pipefail
forge=$1 game=$2 content=$3 output=$4
mkdir -p "$output"
"$forge" "$content" "$output"
commands=()
while IFS= read -r line; do
    [ -n "$line" ] && commands+=(--exec "$line")
done <"$output/octrees.txt"
"$game" --user "$output" "${commands[@]}"
