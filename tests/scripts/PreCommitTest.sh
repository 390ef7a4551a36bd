#!/usr/bin/env bash
# The hook of scripts/pre-commit.sh refuses what it should and nothing else. Usage: PreCommitTest.sh SOURCE-FOLDER
set -euo pipefail
source_folder=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
git init -q .
cp -r "$source_folder/scripts" "$source_folder/.clang-format" .

failures=0
# expect STATUS NAME FILE TEXT: the hook's status for a commit of one file with this text, and only with it.
expect()
{
    local status=0
    printf '%b' "$4" >"$3"
    git add -- "$3"
    scripts/pre-commit.sh --files-only >/dev/null 2>&1 || status=$?
    [[ $status == "$1" ]] || { printf '%s: status %s, not %s\n' "$2" "$status" "$1" && failures=1; }
    git rm -q --cached -- "$3"
}

expect 0 nothing_wrong a.cpp 'int main()\n{\n    return 0;\n}\n'
expect 0 script b.sh 'echo a\n'
expect 0 name_with_blank 'a b.sh' 'echo a\n'
expect 1 broken_script b.sh 'if\n'
expect 1 carriage_return c.md 'a\r\n'
expect 1 mark_of_a_merge c.md '<<<<<<< HEAD\na\n'
if command -v clang-format >/dev/null; then
    expect 1 layout a.cpp 'int  main( ){return 0;}\n'

    # Lines that a commit does not touch are not its fault.
    printf 'int  a( );\n\nint b();\n' >a.h
    git add a.h
    git -c user.name=a -c user.email=a@example.org commit -q --no-verify -m a
    expect 0 other_lines a.h 'int  a( );\n\nint c();\n'
fi
exit "$failures"
