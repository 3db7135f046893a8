#!/bin/sh
# The programs for Linux and for Windows make the same bytes of the same two files: every picture,
# and the state of the model after every step. The desktop programs' own tests compare theirs with
# those of the batch program of their platform.
set -eu
cd "$(dirname "$0")/.."
out=build/compare
rm -rf "$out"
mkdir -p "$out"

layout=$PWD/build/release/examples/array.gds
process=$PWD/build/release/examples/array.txt
build/release/zelmo-batch --quiet --format bmp -o "$out/linux" "$layout" "$process"
scripts/wine.sh build/windows/zelmo-batch.exe --quiet --format bmp -o "$out/windows" \
    "$layout" "$process"
diff -r "$out/linux" "$out/windows"
pictures=$(find "$out/linux" -name '*.bmp' | wc -l)
[ "$pictures" -gt 0 ]

(cd build/release && ./zelmo-state-records "$layout" "$process" ../compare/linux.records 2> ../compare/linux.log)
(cd build/windows && ../../scripts/wine.sh zelmo-state-records.exe "$layout" "$process" \
    ../compare/windows.records 2> ../compare/windows.log)
cmp "$out/linux.records" "$out/windows.records"
[ -s "$out/linux.records" ]
echo "$pictures pictures and all records are the same on Linux and Windows"
rm -rf "$out"
