#!/usr/bin/env bash
# Uses apt to install the packages of the named groups that this machine lacks; does nothing if it has them all.
# Usage: scripts/install-deps.sh GROUP...   (the groups are the lists below)
set -euo pipefail

build=(g++ cmake ninja-build libxerces-c-dev libzip-dev libcli11-dev nlohmann-json3-dev)
test=(libgtest-dev libgmock-dev libxml2-utils zip libwayland-dev libvulkan-dev binutils pkg-config
    bash man-db locales patch python3)
lint=(python3 clang-tidy clang-format clang-format-16 cppcheck shellcheck)
coverage=(gcovr)
valgrind=(valgrind)
deb=(dpkg-dev lintian fakeroot pkg-config)
fuzz=(clang libclang-rt-14-dev)
bench=(libbenchmark-dev libxml2-dev libpugixml-dev libxalan-c-dev valgrind python3
    libxml2-utils xmlstarlet)

packages=()
for group in "$@"; do
    case $group in
        build) packages+=("${build[@]}") ;;
        test) packages+=("${test[@]}") ;;
        lint) packages+=("${lint[@]}") ;;
        coverage) packages+=("${coverage[@]}") ;;
        valgrind) packages+=("${valgrind[@]}") ;;
        deb) packages+=("${deb[@]}") ;;
        fuzz) packages+=("${fuzz[@]}") ;;
        bench) packages+=("${bench[@]}") ;;
        *) echo "install-deps.sh: unknown group: $group" >&2; exit 2 ;;
    esac
done

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
fi
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
