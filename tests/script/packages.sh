#!/bin/sh
# usage: packages.sh SOURCE_DIR
# Builds the Debian packages, asks lintian about them, and installs, uses, removes and purges them in a clean root of Debian.
# What takes time, the build and the root, is kept below build/packages for the next time.
set -eu

[ "$(id -u)" -eq 0 ] || exec sudo -n -- "$0" "$@"

source=$(CDPATH='' cd -- "$1" && pwd)
work=$source/build/packages
copy=$work/ztdecode
mkdir -p "$copy"
root=$(mktemp -d "$work/root.XXXXXX")
trap 'rm -rf "$root"' EXIT

# logged WORDS COMMAND...: what it says is shown only when it fails.
logged() {
    words=$1
    shift
    "$@" >"$work/log" 2>&1 </dev/null || {
        cat "$work/log"
        echo "packages: $words failed"
        exit 1
    }
}

# A copy of the sources, in one place always: what was built there before is built no more.
find "$copy" -mindepth 1 -maxdepth 1 ! -name 'obj-*' -exec rm -rf {} +
git -c safe.directory="$source" -C "$source" ls-files -z --cached --others --exclude-standard |
    tar --create --directory "$source" --null --files-from - --ignore-failed-read 2>/dev/null |
    tar --extract --directory "$copy"
cd "$copy"

version=$(sed -n 's/^    VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt)
packaged=$(dpkg-parsechangelog -S Version)
[ "$packaged" = "$version" ] || {
    echo "debian/changelog has the version $packaged, CMakeLists.txt $version"
    exit 1
}

rm -f "$work"/*.deb "$work"/*.changes "$work"/*.buildinfo
CCACHE_BASEDIR=$copy
CCACHE_NOHASHDIR=1
export CCACHE_BASEDIR CCACHE_NOHASHDIR
if command -v ccache >/dev/null; then
    CCACHE_DIR=$(ccache --get-config cache_dir) # debhelper has another HOME
    export CCACHE_DIR
fi
DEB_BUILD_OPTIONS="nocheck parallel=$(nproc)"
export DEB_BUILD_OPTIONS
logged "the build" dpkg-buildpackage --build=binary --no-pre-clean --unsigned-changes
logged lintian lintian --allow-root --fail-on error,warning "$work"/*.changes
if grep '^[EW]:' "$work/log"; then exit 1; fi
packages=$(find "$work" -maxdepth 1 -name '*.deb' ! -name '*-dbgsym_*')
for name in libztdecode5 libztdecode-dev ztdecode python3-ztdecode; do
    case $packages in
        *"/${name}_$version"*) ;;
        *)
            echo "no package $name was built"
            exit 1
            ;;
    esac
done

# The root has what the packages and their tests depend on, and nothing of this project.
needed=$(sed -n 's/^Depends: //p' debian/tests/control | tr -s ', ' '\n\n' | grep -v ztdecode | sort -u | paste -sd,)
needed=$needed,libarchive13,man-db,python3
if [ ! -f "$work/root.tar" ] || [ "$(cat "$work/root.has" 2>/dev/null)" != "$needed" ]; then
    rm -f "$work/root.has"
    logged "making a clean root" mmdebstrap --variant=apt --include="$needed" --dpkgopt=force-unsafe-io \
        --dpkgopt='path-exclude=/usr/share/locale/*' bookworm "$work/root.tar"
    echo "$needed" >"$work/root.has"
fi
tar --extract --directory "$root" --file "$work/root.tar" --exclude './dev/*'
mknod --mode=666 "$root/dev/null" c 1 3
mkdir "$root/tmp/packages" "$root/tmp/source" "$root/tmp/source/debian"
# Split on purpose: one word each.
# shellcheck disable=SC2086
cp $packages "$root/tmp/packages"
cp -R debian/tests "$root/tmp/source/debian"
cp -R examples "$root/tmp/source"

inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 "$@"; }
files() { (cd "$root" && find . -path ./var -prune -o -path ./tmp -prune -o -path ./dev -prune -o -print | sort); }

files >"$work/before"
logged "the installation" inside sh -c 'dpkg --install /tmp/packages/*.deb'

tests=$(sed -n 's/^Tests: //p' debian/tests/control)
[ -n "$tests" ]
for name in $tests; do
    logged "the test $name" inside sh -c '
        mkdir /tmp/work && cd /tmp/source && AUTOPKGTEST_TMP=/tmp/work "debian/tests/$1" && rm -rf /tmp/work' sh "$name"
    echo "$name: $(tail -n 1 "$work/log")"
done
for page in 'ztdecode' '3 ztdecode' '5 ztdecode-trace' '5 ztdecode-record'; do
    # shellcheck disable=SC2086
    logged "man $page" inside man $page
    grep -q ztdecode "$work/log"
done
logged "the completion" inside bash -c '. /usr/share/bash-completion/completions/ztdecode && complete -p ztdecode'

logged "the removal" inside dpkg --remove ztdecode libztdecode-dev python3-ztdecode libztdecode5
if inside sh -c 'command -v ztdecode || python3 -c "import ztdecode" 2>/dev/null'; then
    echo "something is there that was removed"
    exit 1
fi
logged "the purge" inside dpkg --purge ztdecode libztdecode-dev python3-ztdecode libztdecode5
files >"$work/after"
diff -u "$work/before" "$work/after"
if inside dpkg-query --list '*ztdecode*' 2>/dev/null | grep ztdecode; then exit 1; fi
echo "installed, used, removed, purged"
