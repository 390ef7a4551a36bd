#!/usr/bin/env bash
# Measures which lines and branches of src/ (except the tool) the tests reach. Writes the uncovered ones to
# build/coverage/report.txt, and build/coverage/report/index.html. Fails below 97 % of lines or 90 % of branches.
#
# Runs the suites that mirror the sources, and those of faults; the others run the same code with more and larger
# documents. Branches that only an exception takes and branches that the compiler adds do not count. Neither does
# anything that a process does before an assertion ends it, because it then writes no counts.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
suites=(platform_tests xmlproxy_tests engine_tests docs_tests memory_fault_tests archive_damage_tests io_fault_tests)

names="($(IFS='|' && echo "${suites[*]}"))"

cmake --preset coverage --log-level=WARNING
cmake --build --preset coverage --target "${suites[@]}"
find build/coverage -name '*.gcda' -delete
ctest --preset coverage --quiet -R "^$names\$"

# Only what was built now: data left over from other programs refers to other sources.
mapfile -t objects < <(find build/coverage -type d -regextype egrep \
    -regex ".*/(platform/CMakeFiles/.*|src/(common|plugins)/.*|$names)\.dir")
mkdir -p build/coverage/report
gcovr --root . --object-directory build/coverage --filter src/ --exclude src/host/ --exclude-throw-branches \
    --exclude-unreachable-branches --txt build/coverage/report.txt --html-details build/coverage/report/index.html \
    --print-summary --fail-under-line 97 --fail-under-branch 90 "${objects[@]}"
