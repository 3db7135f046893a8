#!/bin/sh
# Sets up what is missing and builds: scripts/build.sh SET PRESET TARGET... (the sets are those of
# setup.sh). Ends with 5 on failure.
set -eu
cd "$(dirname "$0")/.."
set=$1
preset=$2
shift 2

echo "== Setting up"
sh scripts/setup.sh "$set"

# Only what the set is for is configured, as no more is sure to be installed. What the folder was
# configured for before, by ./test for instance, stays: nothing is built twice or thrown away.
configured() {
    grep -q "^$1:BOOL=ON" "build/$preset/CMakeCache.txt" 2> /dev/null
}
left_out=""
configured ZELMO_TESTS || left_out="-DZELMO_TESTS=OFF"
if { [ "$set" = rendering ] || [ "$set" = guide ] || [ "$set" = pages ]; } && ! configured ZELMO_DESKTOP; then
    left_out="$left_out -DZELMO_DESKTOP=OFF"
fi

case $set in
    guide | packages | tests) ;;
    *) configured ZELMO_PYTHON || left_out="$left_out -DZELMO_PYTHON=OFF" ;;
esac

echo "== Building"
mkdir -p build
# shellcheck disable=SC2086
cmake --preset "$preset" $left_out > "build/configure-$preset.log" 2>&1 || {
    cat "build/configure-$preset.log" >&2
    echo "run: the build could not be configured" >&2
    exit 5
}
cmake --build --preset "$preset" --target "$@" || {
    echo "run: the build failed" >&2
    exit 5
}
