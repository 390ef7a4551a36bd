#!/usr/bin/env bash
# Checks which folder includes which, and the layout of the sources. Runs shellcheck over the scripts, cppcheck over the
# sources, and clang-tidy with the compile commands of a preset (default: dev). Every finding must be fixed, or suppressed
# on its line with the reason.
# Usage: scripts/lint.sh [PRESET]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=build/${1:-dev}

scripts/check-rooms.py
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format --dry-run -Werror
# clang-tidy asks for braces in src; a newer clang-format, which can insert them, is quicker for everything.
braces=$(mktemp)
trap 'rm -f "$braces"' EXIT
sed '$a InsertBraces: true' .clang-format >"$braces"
# shellcheck disable=SC2016 # the inner shell expands them
git ls-files -z '*.cpp' '*.h' | xargs -0 -n 1 -P "$(nproc)" bash -c '
    clang-format-16 --style="file:$0" --assume-filename="$1" <"$1" | clang-format --assume-filename="$1" |
        cmp --quiet - "$1" || { echo "$1: a statement body without braces" >&2; exit 1; }' "$braces"
shellcheck .ci/run scripts/*.sh tests/scripts/*.sh src/host/completion/xmlvalue.bash
cmake --preset "${1:-dev}" --log-level=WARNING -DCMAKE_EXPORT_COMPILE_COMMANDS=ON >/dev/null
mkdir -p "$build/cppcheck"
cppcheck --quiet --std=c++20 --language=c++ --enable=warning,performance,portability --inline-suppr \
    --error-exitcode=1 --cppcheck-build-dir="$build/cppcheck" -j "$(nproc)" \
    -I src/platform -I src/common -I src/plugins/XmlPlugin/common src
find src -name '*.cpp' -print0 | sort -z |
    xargs -0 -n 4 -P "$(nproc)" clang-tidy --quiet --extra-arg=-Wno-unknown-warning-option -p "$build" 2> >(grep -v 'warnings generated' >&2)
echo "lint: no findings"
