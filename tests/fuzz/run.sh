#!/bin/sh
# Runs fuzz targets of the preset `fuzz`: tests/fuzz/run.sh SECONDS [TARGET...], each for so long,
# one after the other. As SECONDS, `short` is $ZELMO_FUZZ_SECONDS or 20, always in the same order.
# What targets learn stays in build/fuzz/fuzz/corpus; what breaks something is put into
# build/fuzz/fuzz/findings, named after its target.
set -eu
seconds=$1
shift
sources=$(cd "$(dirname "$0")" && pwd)
[ -f fuzz/corpus/made ] || cd "$sources/../../build/fuzz"
options="-timeout=60 -rss_limit_mb=3000 -print_final_stats=1 -verbosity=1"
if [ "$seconds" = short ]; then
    seconds=${ZELMO_FUZZ_SECONDS:-20}
    options="$options -seed=1 -timeout=120"
fi
targets=${*:-layout gzip path_outline process_file color_table shader_file text run}
mkdir -p fuzz/findings
for target in $targets; do
    words=""
    if [ -f "$sources/$target.dict" ]; then
        cp "$sources/$target.dict" fuzz
        words="-dict=fuzz/$target.dict"
    fi
    mkdir -p "fuzz/corpus/$target"
    echo "=== $target: $seconds s"
    # shellcheck disable=SC2086
    "./fuzz_$target" $options $words -max_total_time="$seconds" \
        -artifact_prefix="fuzz/findings/$target-" "fuzz/corpus/$target" > "fuzz/$target.log" 2>&1 || {
        tail -n 60 "fuzz/$target.log"
        exit 1
    }
    grep -a -E 'number_of_executed_units|DONE' "fuzz/$target.log"
done
