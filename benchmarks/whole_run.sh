#!/bin/sh
# Renders an example with the plain kernels and with the fast ones, one after the other, compares
# the pictures and prints the seconds of each: benchmarks/whole_run.sh [CELLS] [EXAMPLE]
set -eu
cd "$(dirname "$0")/../build/release"
cells=${1:-1000}
example=${2:-cmos_inverter}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
sed "s/-N [0-9]*/-N $cells/" "examples/$example.txt" > "$work/process.txt"
for program in zelmo-batch-plain zelmo-batch; do
    start=$(date +%s.%N)
    "./$program" --quiet -o "$work/$program" "examples/$example.gds" "$work/process.txt"
    end=$(date +%s.%N)
    awk -v program="$program" -v start="$start" -v end="$end" \
        'BEGIN { printf "%s: %.1f s\n", program, end - start }'
done
diff -r "$work/zelmo-batch-plain" "$work/zelmo-batch"
echo "$(ls "$work/zelmo-batch" | wc -l) pictures, the same bytes"
