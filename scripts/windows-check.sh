#!/usr/bin/env bash
# Builds everything for 64-bit Windows and runs the tests under Wine: installs and builds what is missing, configures
# and builds the preset "windows", and ends with ctest's summary. Arguments go to ctest (for instance -R host_tests).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/windows-deps.sh >/dev/null
cmake --preset windows
cmake --build --preset windows

trap 'scripts/run-wine.sh --stop build/windows' EXIT
scripts/run-wine.sh --start build/windows
ctest --preset windows "$@"
