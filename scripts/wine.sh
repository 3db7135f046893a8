#!/bin/sh
# Runs a Windows program under Wine, in a prefix of the build folder, or in the one that
# ZELMO_WINE_PREFIX names. One server is kept alive for
# all test programs: starting a prefix anew for each would cost seconds every time.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
export WINEPREFIX="${ZELMO_WINE_PREFIX:-$root/build/wine}"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree=;mshtml="
export WINEARCH=win64
mkdir -p "$WINEPREFIX"
# The prefix is made by one program alone, while the others wait.
exec 9> "$WINEPREFIX.lock"
flock 9
if [ ! -f "$WINEPREFIX/ready" ]; then
    wineboot --init > /dev/null 2>&1 9>&- || true
    touch "$WINEPREFIX/ready"
fi
# The services of a new server would hold the output of the first program open for as long as they
# run, and with it whoever reads that output to its end: a program without output starts them.
if wineserver -p600 > /dev/null 2>&1 9>&-; then
    wine cmd /c exit > /dev/null 2>&1 < /dev/null 9>&- || true
fi
flock -u 9
exec 9>&-
exec wine "$@"
