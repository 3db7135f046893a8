#!/bin/sh
# Builds the guide as a site: static pages in build/release/guide/html, with all pictures made anew.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
exec sh "$root/scripts/build.sh" guide release guide
