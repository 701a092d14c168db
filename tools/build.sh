#!/usr/bin/env bash
# Configures and builds one preset: tools/build.sh PRESET TARGET...
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift
echo "== Building ($preset)"
if ! cmake --preset "$preset" >"/tmp/quorvane-configure-$$.log" 2>&1; then
    cat "/tmp/quorvane-configure-$$.log" >&2
    rm -f "/tmp/quorvane-configure-$$.log"
    echo "The build could not be configured; the first error above says why." >&2
    exit 1
fi
rm -f "/tmp/quorvane-configure-$$.log"
cmake --build "build/$preset" --target "$@" || {
    echo "The build failed; the first error above says where." >&2
    exit 1
}
