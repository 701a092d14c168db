#!/usr/bin/env bash
# Installs what is missing of the named package groups: tools/setup.sh BUILD PLAY CHECK
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

missing=()
for group in "$@"; do
    name="${group}_PACKAGES"
    for package in ${!name}; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "== Installing: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null; then
        as_root=(sudo)
    else
        echo "These Debian packages are missing and there is no sudo. As root, run:" >&2
        echo "    apt-get update && apt-get install --no-install-recommends ${missing[*]}" >&2
        exit 1
    fi
fi
log=$(mktemp)
if ! { "${as_root[@]}" apt-get update &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -y --no-install-recommends install "${missing[@]}"; } </dev/null >"$log" 2>&1; then
    tail -n 15 "$log" >&2
    echo "The packages could not be installed (see above). Check the network and Debian's package sources, then run this again." >&2
    exit 1
fi
rm -f "$log"
