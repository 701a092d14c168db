#!/usr/bin/env bash
# The program's tool modes, without a display: tool_modes_test.sh GAME_PROGRAM GAME_DATA
set -u
game=$1 data=$2
unset DISPLAY
user=$(mktemp -d)
trap 'rm -rf "$user"' EXIT
failures=0
# expect STATUS PATTERN ARGUMENTS...: exit status, and a pattern in the output
expect() {
    local status=$1 pattern=$2 output
    shift 2
    output=$("$game" --data "$data" --user "$user" "$@" 2>&1)
    local got=$?
    if [ $got -ne "$status" ] || ! grep -qE -- "$pattern" <<<"$output"; then
        echo "FAILED: $* gave status $got and: $output"
        failures=$((failures + 1))
    fi
}
expect 0 '^[0-9]+\.[0-9]+\.[0-9]+$' --version
expect 0 'Usage' --help
expect 0 '' --exec 'drop_md3 src_mdl\mannequin mannequin 1 made\mannequin'
for part in lower upper head; do
    [ -s "$user/made/mannequin_$part.cff" ] || { echo "FAILED: no $part part"; failures=$((failures + 1)); }
done
expect 1 'Cannot load the Head model: ".*nobody_head.md3"' --exec 'drop_md3 src_mdl\mannequin nobody'
expect 0 'Octree saved to file made\\floor.oct' --exec 'dropOctree src_mdl\island.obj made\floor.oct 450 4 32 1'
cmp -s "$data/oct/island_collision.oct" "$user/made/floor.oct" && { echo 'FAILED: two models, one octree'; failures=$((failures + 1)); }
expect 1 'Invalid parameters' --exec 'dropOctree src_mdl\island.obj made\floor.oct 9 4 32 1'
expect 1 'Could not find file "none.obj"' --exec 'dropOctree none.obj made\floor.oct 60 4 32 1'
expect 1 'Unable to recognize command "fly"' --exec 'fly high'
expect 1 'Command bind takes|Unable to recognize' --exec 'bind'
expect 0 '^help: ' --exec 'help help'
printf '<level name="a">\n<object name="o"\n on_set="fly()" />\n<object name="p" on_set="swim(1)" /></level>' >"$user/bad.xml"
expect 1 'bad.xml:4: Unrecognised procedure "swim" in CML file' --check bad.xml
expect 1 'missing.xml: CML file contains errors! .*: it cannot be read' --check missing.xml
printf '<level name="a">\n<object name="o" on_set="set_animation(BOTH_FLY)">\n<appearance type="animated"><model file="chars\\hen\\hen" /></appearance><physics />\n<dialogue name="d">\nHello ^1\nthere. ^7 </dialogue></object></level>' >"$user/odd.xml"
expect 0 'odd.xml:2: warning: the lower body of the model chars.hen.hen has no animation "BOTH_FLY"' --check odd.xml
expect 0 'odd.xml:5: warning: dialogue "d": a blank is missing after the tag "\^1"' --check odd.xml
expect 0 'odd.xml:6: warning: dialogue "d": \^7 on the same page as text' --check odd.xml
expect 1 '^[0-9]+ errors, [0-9]+ warnings$' --check bad.xml odd.xml
output=$("$game" --data "$data" --user "$user" --check intro.xml testlevel.xml deepwood.xml summit.xml 2>&1)
[ -z "$output" ] || { echo "FAILED: the shipped levels: $output"; failures=$((failures + 1)); }
for size in 10x10 800x 800x600x 99999999999x600; do expect 1 'wants a size' --window $size; done
for shot in a.png @3 a.png@ a.png@3rd a.png@-1; do expect 1 'wants FILE@FRAME' --screenshot $shot; done
[ -e "$user/quorvane.html" ] && { echo 'FAILED: tool modes write no log page'; failures=$((failures + 1)); }
[ -e "$user/settings.cfl" ] && { echo 'FAILED: tool modes save no settings'; failures=$((failures + 1)); }
output=$("$game" --user "$user/empty" 2>&1)
[ $? -eq 1 ] && grep -q './play' <<<"$output" || { echo "FAILED: without data: $output"; failures=$((failures + 1)); }
exit $((failures > 0))
