#!/bin/sh
# Looks at the packages of a folder as their users meet them: scripts/check_packages.sh FOLDER VERSION.
#
# The Debian packages have to please lintian, apt has to find all that they depend on, and they are
# installed in a system that is thrown away, tried there and removed again. The programs of that system run
# with this machine's libraries: that shows that no file of their own is missing; that the libraries
# come with the packages is apt's word, who only simulates. The zip is unpacked and tried under Wine.
set -eu
packages=$(cd "$1" && pwd)
version=$2
scripts=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

fail() {
    echo "run: $1" >&2
    exit 5
}

# try FOLDER_OF_EXAMPLES BATCH LAYOUT_TOOL [OPTION]: the programs do what they are for. Commands may have
# words; the option is one of zelmo-batch.
try() {
    # shellcheck disable=SC2086
    $2 --version | tr -d '\r' | grep -qx "zelmo-batch $version" || fail "$2 is of another version"
    # shellcheck disable=SC2086
    $3 "$1/array.gds" --process "$1/array.txt" > layout.txt || fail "$3 does not run"
    grep -q CROSSBAR layout.txt || fail "$3 does not find the layout's cell"
    rm -rf page.html
    # shellcheck disable=SC2086
    $2 --quiet --columns 200 --steps last ${4:-} --report page.html "$1/array.gds" "$1/array.txt" ||
        fail "$2 does not run"
    grep -q '</html>' page.html || fail "$2 made no page"
}

# Of this version, each once.
debs=""
for package in zelmo-batch zelmo $(cd "$packages" && ls | sed -n "s/^\(python3-zelmo\)_$version.*/\1/p"); do
    found=$(ls "$packages/${package}_${version}"_*.deb) || fail "there is no package $package"
    debs="$debs $found"
done

echo "== lintian"
# shellcheck disable=SC2086
lintian --allow-root --fail-on error $debs || fail "lintian finds errors"

echo "== What they depend on"
# shellcheck disable=SC2086
apt-get --simulate --no-install-recommends -o Debug::NoLocking=1 install $debs > apt.txt 2>&1 || {
    cat apt.txt >&2
    fail "apt cannot install what the packages depend on"
}
for deb in $debs; do
    name=$(dpkg-deb -f "$deb" Package)
    grep -q "^Inst $name " apt.txt || fail "apt would not install $name"
done

echo "== Installing in a system of its own"
mkdir -p system/var/lib/dpkg/info system/var/lib/dpkg/updates system/var/log
touch system/var/lib/dpkg/status
find system | sort > before.txt
# What they depend on is this machine's. Not root's own: fakeroot is enough to own what is installed.
in_system() {
    PATH=$PATH:/usr/sbin:/sbin fakeroot dpkg --root="$work/system" --force-not-root --force-depends --log=/dev/null "$@" \
        > dpkg.txt 2>&1 || {
        cat dpkg.txt >&2
        fail "dpkg $1 failed"
    }
}
# shellcheck disable=SC2086
in_system --install $debs
in_system --audit
usr=$work/system/usr
try "$usr/share/doc/zelmo/examples" "$usr/bin/zelmo-batch" "$usr/bin/zelmo-layout" --output=pictures
[ "$(find pictures -name '*.png' | wc -l)" -eq 1 ] || fail "zelmo-batch made no picture"
status=0
QT_QPA_PLATFORM=offscreen timeout 5 "$usr/bin/zelmo" > zelmo.txt 2>&1 || status=$?
[ "$status" -eq 124 ] || fail "zelmo does not stay open: status $status, $(cat zelmo.txt)"
desktop-file-validate "$usr/share/applications/zelmo.desktop"
pages="zelmo zelmo-batch zelmo-layout"
case $debs in
    *python3-zelmo*)
        pages="$pages zelmo-study"
        PYTHONPATH=$usr/lib/python3/dist-packages PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 - \
            "$usr/share/doc/zelmo/examples" "$usr" << 'END' || fail "the Python package does not work"
import sys
import zelmo

examples, usr = sys.argv[1:]
assert zelmo.__file__.startswith(usr), zelmo.__file__
run = zelmo.Run(examples + "/array.gds", examples + "/array.txt", columns=200)
run.run()
assert run.layers["Columns"].thickness.max() > 0
run.picture(width=320).save("python.png")
END
        PYTHONDONTWRITEBYTECODE=1 "$usr/bin/zelmo-study" --version | grep -qx "zelmo-study $version" ||
            fail "zelmo-study is of another version"
        ;;
esac
for page in $pages; do
    MANPATH=$usr/share/man man -w "$page" > man.txt 2>&1 || fail "there is no manual page $page"
done

echo "== Removing them"
names=""
for deb in $debs; do
    names="$(dpkg-deb -f "$deb" Package) $names"
done
# shellcheck disable=SC2086
in_system --purge $names
find system -path system/var/lib/dpkg -prune -o -print | sort > after.txt
grep -v "^system/var/lib/dpkg" before.txt | diff - after.txt > left.txt || {
    cat left.txt >&2
    fail "the packages leave something behind"
}

zip=$packages/zelmo-$version-windows-x64.zip
if [ -e "$zip" ]; then
    echo "== The zip for Windows"
    unzip -q "$zip"
    folder=zelmo-$version-windows-x64
    for program in zelmo zelmo-batch zelmo-layout; do
        [ -f "$folder/$program.exe" ] || fail "there is no $program.exe in the zip"
    done
    # Pictures need a display here, which this command does without.
    try "$folder/examples" "sh $scripts/wine.sh $folder/zelmo-batch.exe" \
        "sh $scripts/wine.sh $folder/zelmo-layout.exe" --no-pictures
fi
echo "== All of this works"
