#!/bin/sh
# Sets up what is missing and builds: scripts/build.sh PRESET TARGET... Ends with 5 on failure.
set -eu
cd "$(dirname "$0")/.."
preset=$1
shift

echo "== Setting up"
sh scripts/setup.sh

echo "== Building"
mkdir -p build
cmake --preset "$preset" > "build/configure-$preset.log" 2>&1 || {
    cat "build/configure-$preset.log" >&2
    echo "run: the build could not be configured" >&2
    exit 5
}
cmake --build --preset "$preset" --target "$@" || {
    echo "run: the build failed" >&2
    exit 5
}
