#!/bin/sh
# Runs a command under a Wayland compositor of its own, without a screen:
# with_wayland.sh WIDTHxHEIGHT SCALE COMMAND ARGUMENT... The size is in pixels that programs count in,
# each of which is SCALE by SCALE of the screen.
# Without weston it ends with 77, which CTest takes as skipped.
set -eu
if ! command -v weston > /dev/null; then
    echo "with_wayland.sh: weston is not installed (scripts/setup.sh tests)" >&2
    exit 77
fi
size=$1
scale=$2
shift 2
XDG_RUNTIME_DIR=$(mktemp -d)
export XDG_RUNTIME_DIR
chmod 700 "$XDG_RUNTIME_DIR"
weston --backend=headless-backend.so --use-pixman --no-config --idle-time=0 --socket=zelmo \
    --width="${size%x*}" --height="${size#*x}" --scale="$scale" --debug \
    --log="$XDG_RUNTIME_DIR/log" > /dev/null 2>&1 &
compositor=$!
trap 'kill "$compositor" 2> /dev/null || true; wait "$compositor" 2> /dev/null || true
rm -rf "$XDG_RUNTIME_DIR"' EXIT
waited=0
while [ ! -S "$XDG_RUNTIME_DIR/zelmo" ]; do
    waited=$((waited + 1))
    if [ "$waited" -gt 300 ] || ! kill -0 "$compositor" 2> /dev/null; then
        echo "with_wayland.sh: weston did not start" >&2
        cat "$XDG_RUNTIME_DIR/log" >&2 || true
        exit 1
    fi
    sleep 0.1
done
# Nobody types or points here, and the toolkit's way of typing under Wayland relies on somebody who does:
# another one is named.
QT_QPA_PLATFORM=wayland QT_IM_MODULE=compose WAYLAND_DISPLAY=zelmo "$@"
