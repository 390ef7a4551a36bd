#!/usr/bin/env bash
# Runs clang-tidy over the sources, as the compile commands of a preset (default: dev) have them.
# Usage: scripts/lint.sh [PRESET]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=build/${1:-dev}

cmake --preset "${1:-dev}" --log-level=WARNING -DCMAKE_EXPORT_COMPILE_COMMANDS=ON >/dev/null
find src -name '*.cpp' -print0 | sort -z |
    xargs -0 -n 4 -P "$(nproc)" clang-tidy --quiet --extra-arg=-Wno-unknown-warning-option -p "$build" 2> >(grep -v 'warnings generated' >&2)
echo "lint: no findings"
