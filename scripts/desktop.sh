#!/bin/sh
# Builds the desktop program and opens it among the examples, where its file dialogs then begin.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    cat >&2 << 'END'
run: there is no display to open a window on. Start this in a terminal of a desktop session, over
ssh with -X, or on a display without a screen: xvfb-run ./run --desktop
Pictures without any window: ./run
END
    exit 1
fi

sh "$root/scripts/build.sh" desktop release zelmo zelmo_assets zelmo_examples

echo "== Opening Zelmo: load cmos_inverter.gds, then run cmos_inverter.txt"
cd "$root/build/release/examples"
status=0
../zelmo || status=$?
if [ "$status" -ne 0 ]; then
    echo "run: zelmo ended with status $status; can the display \
${WAYLAND_DISPLAY:-${DISPLAY:-}} be reached from here?" >&2
fi
exit "$status"
