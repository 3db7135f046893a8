#!/bin/sh
# Installs what the project is built with, from Debian's packages, and unpacks the Debian source
# packages that are compiled as part of the build. Does nothing where everything is there already.
#
#   scripts/setup.sh [SET]
#
# The sets, each with all that stands before it; without one, everything:
#   rendering   the batch program with its pictures
#   guide       the site of the guide, with Sphinx, the Python package and its studies; only the tests
#               have all of that, too
#   pages       the script of pages to share, with Node and the packages of web/; not for the desktop
#   desktop     the desktop program on Linux
#   packages    both for Windows, and what runs a Windows program here
#   tests       formatting, lint, the sanitizers' and the fuzz targets' compiler, the tests
set -eu
cd "$(dirname "$0")/.."
wanted=${1:-tests}

packages=""
sources=""
complete=""
# add SET PACKAGES SOURCES: what a set has beyond the one before it, as long as that is wanted.
add() {
    [ -z "$complete" ] || return 0
    packages="$packages $2"
    sources="$sources $3"
    [ "$1" != "$wanted" ] || complete=yes
}
add rendering "g++ cmake ninja-build dpkg-dev libcli11-dev nlohmann-json3-dev \
libtinygltf-dev libpng-dev libwebp-dev zlib1g-dev libegl-dev libgl-dev libopengl-dev libegl1 \
libegl-mesa0 libgl1-mesa-dri \
libfreetype-dev libfontconfig-dev fonts-liberation" "fmtlib glew libpolyclipping"
module="python3 python3-dev python3-numpy pybind11-dev"
studies="python3-distributed python3-dask python3-pandas python3-matplotlib"
guide="python3-sphinx python3-myst-parser $module $studies"
[ "$wanted" != guide ] || add guide "$guide" ""
# Node as Debian has it, or another one that is there already.
node=""
command -v npm > /dev/null || node="nodejs npm"
[ "$wanted" = desktop ] || add pages "$node" ""
add desktop qt6-base-dev ""
add packages "file g++-mingw-w64-x86-64-posix libz-mingw-w64-dev wine wine64 fakeroot lintian \
man-db desktop-file-utils unzip \
$module" "libpng1.6 libwebp"
add tests "$guide python3-jsonschema python3-pytest clang-14 clang-format-14 clang-tidy-14 libclang-rt-14-dev googletest \
libgtest-dev libbenchmark-dev libxcb1-dev admesh xvfb xauth chromium vim \
libkf5syntaxhighlighting-tools mandoc weston qt6-wayland \
munge slurmctld slurmd slurm-client" ""
if [ -z "$complete" ]; then
    echo "setup: $wanted is none of rendering, guide, pages, desktop, packages, tests" >&2
    exit 1
fi

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

missing=""
for package in $packages; do
    state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$state" = installed ] || missing="$missing $package"
done

if [ -n "$missing" ]; then
    echo "Installing:$missing"
    as_root apt-get update -q
    # shellcheck disable=SC2086
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends $missing
fi

# Source packages come from the same places as the machine's binary packages: its own lists, read
# with deb-src in place of deb, in a private folder so that the machine's lists stay as they are.
fetch_source() {
    name=$1
    target=build/third_party/$name
    [ -d "$target" ] && return 0
    lists=build/third_party/apt
    mkdir -p "$lists/sources.d" "$lists/state/partial" "$lists/download"
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*; do
        [ -f "$file" ] || continue
        case $file in
            *.sources) sed 's/^Types:.*/Types: deb-src/' "$file" ;;
            *) sed -n 's/^deb\( \)/deb-src\1/p' "$file" ;;
        esac > "$lists/sources.d/$(basename "$file")"
    done
    options="-o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts=$PWD/$lists/sources.d \
-o Dir::State::lists=$PWD/$lists/state -o APT::Sandbox::User=root"
    if [ ! -f "$lists/updated" ]; then
        # Lists of other software may offer no sources; only the package that is wanted matters.
        # shellcheck disable=SC2086
        apt-get $options update -q || true
        touch "$lists/updated"
    fi
    # Mirrors may name a version that they do not hold (any more): older ones do as well.
    # shellcheck disable=SC2086
    for version in $(apt-cache $options showsrc "$name" | sed -n 's/^Version: //p' | sort -rV | uniq); do
        rm -rf "$lists/download/${name%%[0-9]*}"*/
        if (cd "$lists/download" && apt-get $options source -q "$name=$version"); then
            mv "$lists/download/${name%%[0-9]*}"*/ "$target"
            return 0
        fi
    done
    echo "setup: the source package $name could not be fetched" >&2
    return 1
}

for source in $sources; do
    fetch_source "$source"
done

# CLI11, the JSON library and TinyGLTF are used as headers alone, for every target;
# a folder that holds only links to them keeps the rest of the machine's headers out.
mkdir -p build/third_party/include
ln -sfn /usr/include/CLI build/third_party/include/CLI
ln -sfn /usr/include/nlohmann build/third_party/include/nlohmann
ln -sfn /usr/include/tiny_gltf.h build/third_party/include/tiny_gltf.h

# What the page's script is bundled from, and with the tests what checks and drives it: the very
# versions of the lock file. A copy of that file tells for what the packages were installed.
install_npm_packages() {
    installed=web/node_modules/installed-$1
    for done in "$installed" web/node_modules/installed-tests; do
        ! cmp -s web/package-lock.json "$done" || return 0
    done
    echo "Installing the packages of web/"
    if [ "$1" = tests ]; then npm --prefix web ci; else npm --prefix web ci --omit=dev; fi
    cp web/package-lock.json "$installed"
}
case $wanted in
    pages | packages) install_npm_packages pages ;;
    tests) install_npm_packages tests ;;
esac
