#!/usr/bin/env bash
# Measures which lines and branches of src/ (the tool apart) the tests reach; writes build/coverage/report.txt with
# the uncovered ones and build/coverage/report/index.html. Fails below 97 % of lines or 90 % of branches.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

cmake --preset coverage --log-level=WARNING
cmake --build --preset coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage --quiet
mkdir -p build/coverage/report
gcovr --root . --object-directory build/coverage --filter src/ --exclude src/host/ --exclude-throw-branches \
    --exclude-unreachable-branches --txt build/coverage/report.txt --html-details build/coverage/report/index.html \
    --print-summary --fail-under-line 97 --fail-under-branch 90
