#!/bin/sh
# Runs a Windows program in a Wine prefix of its own and ends the prefix's server after it:
# in_prefix.sh PREFIX PROGRAM ARGUMENT...
set -eu
ZELMO_WINE_PREFIX=$1
export ZELMO_WINE_PREFIX
shift
status=0
sh "$(dirname "$0")/../../../scripts/wine.sh" "$@" || status=$?
WINEPREFIX="$ZELMO_WINE_PREFIX" WINEDEBUG=-all wineserver -k > /dev/null 2>&1 || true
exit "$status"
