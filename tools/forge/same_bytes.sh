#!/bin/sh
# same_bytes.sh FORGE CONTENT MADE: makes the data once more; every file must be the one that the build has made.
set -eu
forge=$1 content=$2 made=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$forge" "$content" "$work"
cd "$work"
find . -type f >names
count=$(grep -c . names)
[ "$count" -gt 100 ] || { echo "only $count files were made"; exit 1; }
while read -r name; do
    [ "$name" = ./names ] || cmp "$name" "$made/$name" || touch differs
done <names
[ ! -e differs ]
