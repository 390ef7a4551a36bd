#!/usr/bin/env bash
# A short version of .ci/run for the changes about to be committed: checks the layout and the scripts of the changed
# files, then runs the development build and its tests. As a hook: ln -sf ../../scripts/pre-commit.sh .git/hooks/pre-commit
# Usage: scripts/pre-commit.sh [--files-only]     (without the build and the tests)
set -euo pipefail
cd "$(git rev-parse --show-toplevel)"

failed=0
fail()
{
    printf 'pre-commit: %s\n' "$*" >&2
    failed=1
}

# The staged version of a file, which may differ from the one in the folder.
staged() { git show ":$1"; }

# The changed lines of a file, as arguments of clang-format: the other lines are not part of this commit.
changed_lines()
{
    git diff --cached -U0 -- "$1" |
        sed -n -E 's/^@@ [^+]*\+([0-9]+)(,([0-9]+))? @@.*/\1 \3/p' |
        while read -r first count; do
            [[ $count == 0 ]] || printf -- '--lines=%s:%s\n' "$first" $((first + ${count:-1} - 1))
        done
}

has_layout()
{
    local lines
    mapfile -t lines < <(changed_lines "$1")
    [[ ${#lines[@]} -eq 0 ]] ||
        diff -q <(staged "$1") <(staged "$1" | clang-format "${lines[@]}" --assume-filename="$1") >/dev/null
}

check_file()
{
    local file=$1
    case $file in
    *.cpp | *.h)
        if command -v clang-format >/dev/null && ! has_layout "$file"; then
            fail "$file: not as .clang-format wants it (clang-format -i $file)"
        fi
        ;;
    *.sh)
        staged "$file" | bash -n || fail "$file: no valid script"
        ;;
    esac
    ! staged "$file" | grep -q -I $'\r' || fail "$file: carriage returns"
    ! staged "$file" | grep -n -I -E '^(<{7}|>{7}) ' || fail "$file: marks of a merge"
}

while IFS= read -r -d '' file; do check_file "$file"; done < <(git diff --cached --name-only -z --diff-filter=ACMR)
[[ $failed == 0 ]] || exit 1
[[ ${1-} != --files-only ]] || exit 0

# git tells a hook of its own index and folder; the tests that use git must not see that.
unset "${!GIT_@}"
cmake --preset dev --log-level=WARNING >/dev/null
cmake --build --preset dev
ctest --preset dev --progress
