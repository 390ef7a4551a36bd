#!/usr/bin/env bash
# Tests a Debian package of this project: runs lintian, installs it, runs queries with the tool, builds a host against
# it, and removes it. Nothing may be left afterwards.
# Usage: scripts/deb-check.sh [--install] PACKAGE.deb
#
# Everything happens in a separate folder with a copy of this machine's package database, so the dependencies are
# checked and the machine stays unchanged. --install uses the machine itself and needs root.
set -euo pipefail

on_machine=
if [[ ${1-} == --install ]]; then
    on_machine=yes
    shift
fi
package=$(realpath "$1")
readonly package
if [[ -z $on_machine ]] && ((EUID != 0)); then
    exec fakeroot "$0" "$package"
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

die()
{
    printf 'deb-check: %s\n' "$*" >&2
    exit 1
}

# The root folder of the installation, without a slash at its end.
root=
run_dpkg() { dpkg "$@"; }

# Makes a root folder whose database says what this machine has. The package's scripts call ldconfig, which must keep
# to that folder too.
make_root()
{
    root=$work/root
    mkdir -p "$root/var/lib/dpkg" "$work/bin"
    # Its locks are root's alone.
    tar -C /var/lib/dpkg -c --exclude=lock --exclude=lock-frontend --exclude=Lock . | tar -C "$root/var/lib/dpkg" -x
    printf '#!/bin/sh\nexit 0\n' >"$work/bin/ldconfig"
    chmod +x "$work/bin/ldconfig"
    run_dpkg()
    {
        PATH=$work/bin:$PATH dpkg --root="$root" --log="$work/log" --force-not-root --force-script-chrootless --no-triggers "$@"
    }
}

# expect TEXT COMMAND...: the command must succeed and print exactly TEXT.
expect()
{
    local expected=$1 answer
    shift
    answer=$("$@") || die "failed: $*"
    [[ $answer == "$expected" ]] || die "$* prints '$answer', not '$expected'"
}

check_use()
{
    local documents=$root/usr/share/doc/xmlplugin
    expect $'alpha\nbeta\ngamma' "$root/usr/bin/xmlvalue" '//server/@name' "$documents/examples/servers.xml"
    printf "<!DOCTYPE a [<!ENTITY e 'of an entity'>]><a x='&e;'/>" >"$work/declared.xml"
    expect 'of an entity' "$root/usr/bin/xmlvalue" a/@x "$work/declared.xml"
    (cd "$work" && cmake -E tar cf packed.zip --format=zip declared.xml)
    expect 'of an entity' "$root/usr/bin/xmlvalue" a/@x "$work/packed.zip"
    "$root/usr/bin/xmlvalue" --version | grep -q "$root/usr/lib/.*XmlPlugin.so" || die "another plug-in was loaded"
    [[ -e $documents/copyright && -e $documents/docs/host-guide.md ]] || die "documents are missing"
    cmake -DFOLDER="$documents" -P "$(dirname "${BASH_SOURCE[0]}")/../tests/package/CheckLinks.cmake" || die "documents lead to what is not installed"

    cmake -S "$documents/examples/host" -B "$work/host" -DCMAKE_PREFIX_PATH="$root/usr" >/dev/null
    cmake --build "$work/host" >/dev/null
    expect 4 "$work/host/host" 'count(//port)' "$documents/examples/servers.xml"
    expect 1.1.1 env PKG_CONFIG_PATH="$(dirname "$root"/usr/lib/*/pkgconfig/xmlplugin.pc)" pkg-config --modversion xmlplugin
}

lintian --allow-root --fail-on error,warning "$package" || die "lintian is not content"

if [[ -z $on_machine ]]; then
    make_root
fi
name=$(dpkg-deb --field "$package" Package)
dpkg-deb --fsys-tarfile "$package" | tar -t | sed -n 's|^\./\(.*[^/]\)$|\1|p' >"$work/files"

run_dpkg -i "$package" >/dev/null
while read -r file; do
    [[ -e $root/$file || -L $root/$file ]] || die "not installed: $file"
done <"$work/files"
check_use
run_dpkg -r "$name" >/dev/null
while read -r file; do
    [[ ! -e $root/$file && ! -L $root/$file ]] || die "not removed: $file"
done <"$work/files"
[[ -n $on_machine || -z $(find "$root" -path "$root/var" -prune -o ! -type d -print) ]] || die "the removal left files"

printf '%s installs, works and is removed: %s files\n' "${package##*/}" "$(wc -l <"$work/files")"
