#!/usr/bin/env bash
# Runs a command on a virtual display of its own: tools/with_display.sh COMMAND...
# -noreset matters: without it the server resets between SDL's probing connections and loses clients.
set -euo pipefail
numbers=$(mktemp)
Xvfb -displayfd 3 -screen 0 1280x1024x24 -noreset 3>"$numbers" >/dev/null 2>&1 &
server=$!
trap 'kill "$server" 2>/dev/null || true; rm -f "$numbers"' EXIT
for _ in $(seq 100); do
    [ -s "$numbers" ] && break
    sleep 0.1
done
if [ ! -s "$numbers" ]; then
    echo "The virtual display (Xvfb) does not start." >&2
    exit 1
fi
export DISPLAY=":$(tr -d '[:space:]' <"$numbers")" SDL_VIDEODRIVER=x11 ALSOFT_DRIVERS=null
"$@"
