#!/bin/sh
# Runs a Windows program under Wine, in a prefix of the build folder, or in the one that
# ZELMO_WINE_PREFIX names. One server is kept alive for all test programs, longer than a build takes:
# starting a prefix anew for each would cost seconds every time.
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
# run, and with it whoever reads that output to its end: a program without output starts them, and
# is started again until the new server has served one.
if wineserver -p3600 > /dev/null 2>&1 9>&-; then
    attempts=0
    until wine cmd /c exit > /dev/null 2>&1 < /dev/null 9>&-; do
        attempts=$((attempts + 1))
        if [ "$attempts" -ge 20 ]; then
            echo "wine.sh: Wine does not start a program in $WINEPREFIX" >&2
            exit 1
        fi
        sleep 0.5
    done
fi
flock -u 9
exec 9>&-
exec wine "$@"
