#!/usr/bin/env bash
# Configures and builds one preset: tools/build.sh PRESET TARGET...
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift
echo "== Building ($preset)"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! cmake --preset "$preset" >"$log" 2>&1; then
    cat "$log" >&2
    echo "The build could not be configured; the first error above says why." >&2
    exit 1
fi
cmake --build "build/$preset" --target "$@" || {
    echo "The build failed; the first error above says where." >&2
    exit 1
}
