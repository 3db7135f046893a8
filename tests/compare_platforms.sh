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

# Files of numbers, but for the times in the summary and the folders that its inputs lie in
mkdir "$out/numbers-linux" "$out/numbers-windows"
set -- --quiet --no-pictures --overwrite --steps deposition,last --probe 0.5,0.5 --csv probes.csv \
    --json probes.json --cut 0,0,1,1 --cuts . --summary summary.json "$layout" "$process"
(cd "$out/numbers-linux" && ../../release/zelmo-batch "$@")
(cd "$out/numbers-windows" && ../../../scripts/wine.sh ../../windows/zelmo-batch.exe "$@")
for platform in linux windows; do
    sed -i -e 's/seconds": [0-9.e-]*/seconds": 0/' -e 's/"path": .*/"path": ""/' \
        "$out/numbers-$platform/summary.json"
done
diff -r "$out/numbers-linux" "$out/numbers-windows"
# A page of them, but for its times
mkdir "$out/assets"
cp assets/colors.txt "$out/assets"
echo "let page = 1;" > "$out/assets/page.js"
echo "body { margin: 0 }" > "$out/assets/page.css"
set -- --quiet --no-pictures --assets "$PWD/$out/assets" --report page.html "$layout" "$process"
(cd "$out/numbers-linux" && ../../release/zelmo-batch "$@")
(cd "$out/numbers-windows" && ../../../scripts/wine.sh ../../windows/zelmo-batch.exe "$@")
for platform in linux windows; do
    sed -i -e 's/"seconds":[0-9.e-]*/"seconds":0/g' -e 's/Completed in [0-9.]* s/Completed/g' \
        "$out/numbers-$platform/page.html"
done
diff -r "$out/numbers-linux" "$out/numbers-windows"
[ -s "$out/numbers-linux/page.html" ]
[ -s "$out/numbers-linux/probes.csv" ] && [ -s "$out/numbers-linux/summary.json" ]

echo "$pictures pictures, all records, all numbers and a page are the same on Linux and Windows"
rm -rf "$out"
