#!/usr/bin/env bash
# What the game does when the machine fails it: survival_test.sh GAME_PROGRAM GAME_DATA FAILING_CALLS_LIBRARY
# Every case ends, or goes on, with a sentence for the person at the terminal.
set -u
game=$1 data=$2 shim=$3
work=$(mktemp -d)
server=
trap '[ -n "$server" ] && kill "$server" 2>/dev/null; rm -rf "$work"' EXIT
# Leaks are looked for where the game is stepped. Without a window SDL still takes the ending signals.
export ASAN_OPTIONS=detect_leaks=0 SDL_VIDEODRIVER=dummy ALSOFT_DRIVERS=null
failures=0
fail() {
    echo "FAILED: $*"
    failures=$((failures + 1))
}
# expect NAME STATUS PATTERN COMMAND...: exit status, and a pattern in the output
expect() {
    local name=$1 status=$2 pattern=$3 output
    shift 3
    output=$("$@" 2>&1)
    local got=$?
    if [ $got -ne "$status" ] || ! grep -qE -- "$pattern" <<<"$output"; then
        fail "$name gave status $got and: $output"
    fi
}
# play USER SIGNAL ARGUMENTS...: runs the game until it stands, then ends it by the signal
play() {
    local user=$1 signal=$2
    shift 2
    "$game" --data "$data" --user "$user" --level testlevel.xml "$@" &
    local pid=$!
    # The start writes this file before the level is loaded.
    for _ in $(seq 200); do
        [ -e "$user/s_mdl/grenade.cpm" ] && break
        kill -0 $pid 2>/dev/null || break
        sleep 0.1
    done
    sleep 2
    kill -s "$signal" $pid 2>/dev/null
    wait $pid
}
# The same with arguments of one's own and no file to wait for.
stop_after() {
    timeout --preserve-status -k 20 -s TERM "$@"
}

# --- Data
printf '' >"$work/file"
expect 'no such data' 1 'Cannot open the directory or archive' "$game" --data "$work/none" --user "$work/u"
expect 'a file for a data set' 1 'Cannot open the directory or archive' "$game" --data "$work/file" --user "$work/u"
cp -r "$data" "$work/cut"
find "$work/cut" -type f -size +100c ! -name '*.cfg' -exec truncate -s 100 {} +
expect 'a level that is cut short' 1 'The level "testlevel.xml" cannot be loaded; .*says why' \
    "$game" --data "$work/cut" --user "$work/cut_level" --level testlevel.xml
cp -r "$data" "$work/bare"
rm "$work/bare/oct/island.oct"
expect 'a level without its scenery' 0 'Not everything could be loaded; .*quorvane.html says what' \
    stop_after 5 "$game" --data "$work/bare" --user "$work/bare_level" --level testlevel.xml
expect 'a data set that is cut short' 0 'Not everything could be loaded; .*quorvane.html says what' \
    stop_after 5 "$game" --data "$work/cut" --user "$work/cut_menu"
grep -q 'CML file contains errors! (intro.xml)' "$work/cut_menu/quorvane.html" || fail 'the log does not name the file'

# An empty model converts into nothing.
mkdir -p "$work/empty/3ds" "$work/empty/s_mdl"
printf 'MM\006\000\000\000' >"$work/empty/3ds/grenade.3ds"
cp "$data/s_mdl/grenade.cpm" "$work/empty/s_mdl" 2>/dev/null || printf 'good' >"$work/empty/s_mdl/grenade.cpm"
cp "$work/empty/s_mdl/grenade.cpm" "$work/good"
expect 'a model without an object' 0 'Not everything could be loaded' play "$work/empty" TERM
cmp -s "$work/good" "$work/empty/s_mdl/grenade.cpm" || fail 'an empty model replaces a good one'
grep -q 'Cannot convert 3ds.grenade.3ds: it holds no object' "$work/empty/quorvane.html" || fail 'an empty model has no row'

# --- User directory
expect 'a file for a directory' 1 'The directory ".*file" cannot be created' \
    "$game" --data "$data" --user "$work/file" --level testlevel.xml
# Not even root can write there.
expect 'a read-only directory' 0 'quorvane.html cannot be written, nor can settings be saved there' \
    stop_after 5 "$game" --data "$data" --user /proc/self --level testlevel.xml

# --- Disk
# failing CALL TEXT TIMES COMMAND...: the first TIMES of those system calls fail whose path contains TEXT
failing() {
    FAIL_CALL=$1 FAIL_PATH=$2 FAIL_TIMES=$3 LD_PRELOAD=$shim "${@:4}"
}
mkdir "$work/full"
cp "$data/settings.cfl" "$work/full"
ln -s /dev/full "$work/full/quorvane.html"
full_disk() { failing "$1" .cfl. 999 play "$work/full" TERM; }
expect 'a full disk' 0 'quorvane.html cannot be written' full_disk open
for call in open fsync rename; do
    expect "settings when $call fails" 0 'The settings could not be saved; what stands above says why' full_disk $call
done
[ -z "$(find "$work/full" -name '*.new')" ] || fail 'what could not be finished is left behind'
[ -e "$work/full/players.cfl" ] && fail 'a hero is saved on a full disk'
cmp -s "$data/settings.cfl" "$work/full/settings.cfl" || fail 'a full disk costs the old settings'
# One failed look at the player's settings: neither the shipped nor the built-in ones take their place.
mkdir "$work/look"
for call in stat open; do
    tr '\000' '\001' <"$data/settings.cfl" | tail -c 214 >"$work/record" # nobody's defaults
    { printf '\001\000\000\000\243LATEST\000\000\000' && cat "$work/record"; } >"$work/look/settings.cfl"
    cp "$work/look/settings.cfl" "$work/before"
    expect "settings that $call cannot reach" 0 'settings could not be saved' \
        failing $call /settings.cfl 1 play "$work/look" TERM
    cmp -s "$work/before" "$work/look/settings.cfl" || fail "a failed $call costs the settings"
done
octree() { "$game" --data "$data" --user "$1" --exec "dropOctree src_mdl\\island.obj made.oct $2 4 32 1"; }
limited() { (ulimit -f 4 && octree "$work/limited" 450); }
expect 'a limit on file sizes' 1 'Could not write file "made.oct"' limited

# --- Signals
for signal in TERM INT; do
    # A shell's background jobs ignore INT: the game is started by timeout instead.
    expect "the signal $signal" 0 'Quorvane ends, as it was asked to' timeout --preserve-status -k 20 -s $signal 5 \
        "$game" --data "$data" --user "$work/$signal" --level testlevel.xml
    grep -q 'Good bye' "$work/$signal/quorvane.html" || fail "$signal leaves an unfinished log"
    [ -s "$work/$signal/settings.cfl" ] || fail "$signal costs the settings"
done
play "$work/killed" KILL 2>/dev/null
grep -q 'log manager was created' "$work/killed/quorvane.html" || fail 'a killed program leaves no log rows'

# Nobody reads what the game writes to the terminal.
{ play "$work/pipe" TERM 2>&1; echo $? >"$work/status"; } | true
[ "$(cat "$work/status")" = 0 ] && [ -s "$work/pipe/settings.cfl" ] || fail 'a closed pipe costs the settings'
# A second program in the same directory has a log of its own.
play "$work/two" TERM &
first=$!
for _ in $(seq 100); do
    [ -e "$work/two/quorvane.html" ] && break
    sleep 0.1
done
play "$work/two" TERM
wait $first
for page in quorvane.html quorvane-2.html; do
    grep -q 'Good bye' "$work/two/$page" || fail "of two programs one leaves no whole $page"
done

# --- Killed while it replaces a file: the old one or the new one remains
octree "$work/old" 450 >/dev/null
start=$(date +%s%N)
octree "$work/new" 100 >/dev/null
took=$(($(date +%s%N) - start))
mkdir "$work/replace"
cp "$work/old/made.oct" "$work/replace"
for step in 4 5 6 7 8 9 10 11; do
    "$game" --data "$data" --user "$work/replace" \
        --exec "dropOctree src_mdl\\island.obj made.oct $((step % 2 ? 450 : 100)) 4 32 1" >/dev/null 2>&1 &
    pid=$!
    sleep "$(printf '%d.%09d' $((took * step / 10 / 1000000000)) $((took * step / 10 % 1000000000)))"
    kill -KILL $pid 2>/dev/null
    wait $pid 2>/dev/null
    cmp -s "$work/replace/made.oct" "$work/old/made.oct" || cmp -s "$work/replace/made.oct" "$work/new/made.oct" ||
        fail "killed after $step tenths: the file is neither old nor new"
done

# --- Display
Xvfb -displayfd 3 -screen 0 1280x1024x24 -noreset 3>"$work/display" >/dev/null 2>&1 &
server=$!
for _ in $(seq 100); do
    [ -s "$work/display" ] && break
    sleep 0.1
done
export DISPLAY=":$(tr -d '[:space:]' <"$work/display")" SDL_VIDEODRIVER=x11
lose_display() {
    "$game" --data "$data" --user "$work/lost" --level testlevel.xml &
    local pid=$!
    for _ in $(seq 200); do
        [ -e "$work/lost/s_mdl/grenade.cpm" ] && break
        sleep 0.1
    done
    sleep 2
    kill "$server"
    wait $pid
}
expect 'a lost display' 1 'The display is gone: Quorvane ends' lose_display
grep -q 'Good bye' "$work/lost/quorvane.html" || fail 'a lost display leaves an unfinished log'
[ -s "$work/lost/settings.cfl" ] || fail 'a lost display costs the settings'
exit $((failures > 0))
