#!/bin/sh
# refuses_broken_content.sh FORGE CONTENT: every row breaks one thing in a copy of the content; the forge must name
# each of them and write nothing.
set -eu
forge=$1 content=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$content" "$work/content"
status=0

breaks() { # FILE, sed expression
    cp "$work/content/$1" "$work/before"
    sed -i "$2" "$work/content/$1"
    if cmp -s "$work/before" "$work/content/$1"; then echo "changes nothing: $1 $2" && status=1; fi
}
complains() { # words
    grep -q "$1" "$work/said" || { echo "no complaint with: $1" && status=1; }
}

breaks levels/testlevel.xml 's/barrel.cpm/barel.cpm/'
breaks levels/testlevel.xml 's/name="rosa"/name="harald"/'
breaks levels/testlevel.xml 's/villager\\villager/villager\\nobody/'
breaks levels/intro.xml 's/length="6000"/length="600"/'
breaks config/movement.cfg 's/GRAVITY .*/GRAVITY 5/'
breaks config/animation.cfg 's/BOTH_FALL/BOTH_FELL/'
breaks config/menu.cfg 's/HL_QUIT_LEFT .*/HL_QUIT_LEFT 200/'
breaks config/menu.cfg 's/HL_LOAD_RIGHT .*/HL_LOAD_RIGHT 1025/'
breaks config/window.cfg 's/icon.bmp/icon2.bmp/'
breaks objects.xml 's/grenade.cpm/grenadine.cpm/'
breaks levels/intro.xml 's/<\/level>/<!-- play_sound(sounds\\nowhere,10) --><\/level>/'

if "$forge" "$work/content" "$work/out" 2>"$work/said" >/dev/null; then echo "not refused" && status=1; fi
if [ -e "$work/out" ]; then echo "something was written" && status=1; fi
complains 'barel.cpm, which nobody makes'
complains 'harald and harald are the same to the game'
complains 'nobody_head.cff, which nobody makes'
complains 'missing or too short'
complains 'GRAVITY is a float and needs a point'
complains 'lower half has no BOTH_FELL'
complains 'HL_QUIT overlaps QUIT'
complains 'HL_LOAD does not lie inside the picture'
complains 'icon2.bmp, which nobody makes'
complains 'grenadine.cpm, which nobody makes'
complains 'intro.xml plays sounds/nowhere.wav, which nobody makes'
exit $status
