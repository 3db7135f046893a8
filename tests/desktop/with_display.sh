#!/bin/sh
# Runs a command on an X server of its own: with_display.sh WIDTHxHEIGHT COMMAND ARGUMENT...
set -eu
size=$1
shift
numbers=$(mktemp)
Xvfb -displayfd 3 -screen 0 "${size}x24" -nolisten tcp 3> "$numbers" > /dev/null 2>&1 &
server=$!
trap 'kill "$server" 2> /dev/null || true; rm -f "$numbers"' EXIT
waited=0
while [ ! -s "$numbers" ]; do
    waited=$((waited + 1))
    if [ "$waited" -gt 300 ]; then
        echo "with_display.sh: Xvfb did not start" >&2
        exit 1
    fi
    sleep 0.1
done
DISPLAY=":$(cat "$numbers")" "$@"
