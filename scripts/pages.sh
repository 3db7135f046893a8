#!/bin/sh
# Builds the page of every example and reference process, in build/pages: one file each, which a
# browser opens by itself. The pictures of the runs go to folders beside them.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
pages=$root/build/pages
built=$root/build/release

sh "$root/scripts/build.sh" pages release zelmo-batch zelmo_assets zelmo_page zelmo_examples

mkdir -p "$pages"
for process in "$built"/examples/*.txt "$built"/examples/processes/*.txt; do
    name=$(basename "$process" .txt)
    echo "== $name"
    "$built/zelmo-batch" --quiet --overwrite --report "$pages/$name.html" --output "$pages/$name" \
        "${process%.txt}.gds" "$process"
    echo "$pages/$name.html"
done
