#!/bin/sh
# Makes what users install, in build/packages: Debian packages and a zip for Windows, and tries them.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
packages=$root/build/packages

for preset in release windows; do
    python=
    [ "$preset" = windows ] || python="zelmo_python zelmo_studies"
    # shellcheck disable=SC2086
    sh "$root/scripts/build.sh" packages "$preset" zelmo zelmo-batch zelmo-layout zelmo_assets \
        zelmo_page zelmo_examples zelmo_program_documents $python
done
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$root/build/release/CMakeCache.txt")

echo "== Packing"
mkdir -p "$packages"
for preset in release windows; do
    log=$root/build/package-$preset.log
    (cd "$root/build/$preset" && cpack -B "$packages") > "$log" 2>&1 || {
        cat "$log" >&2
        echo "run: the package could not be made" >&2
        exit 5
    }
    sed -n 's/^CPack: - package: \(.*\) generated\.$/\1/p' "$log"
done
rm -rf "$packages/_CPack_Packages"
sh "$root/scripts/check_packages.sh" "$packages" "$version"
