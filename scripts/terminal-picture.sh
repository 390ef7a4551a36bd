#!/usr/bin/env bash
# Runs a few commands and prints a picture of the terminal with their real answers, as SVG.
# Usage: scripts/terminal-picture.sh FOLDER-OF-XMLVALUE >docs/terminal.svg
set -euo pipefail
PATH=$(cd "$1" && pwd):$PATH
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export LC_ALL=C.UTF-8

commands=(
    "xmlvalue '//book/@title' examples/library.xml"
    "xmlvalue \"//server[@role='database']/@host\" examples/servers.xml"
    "xmlvalue -c '//*/@name' examples/*.xml"
    "xmlvalue --one 'count(//port[@number < 1024])' examples/servers.xml"
    "xmlvalue '//book/text()' examples/library.xml"
    "echo \$?"
)

readonly columns=88 letter_width=8.43 line_height=20 margin=16 top=44

# The lines of the session; commands come after "$ ".
lines=()
status=0
for command in "${commands[@]}"; do
    lines+=("\$ $command")
    # What one command leaves as its status is there for the next.
    answer=$(bash -c "(exit $status); $command" 2>&1) && status=0 || status=$?
    while IFS= read -r line; do
        # A terminal breaks lines that are longer than it is wide.
        while ((${#line} > columns)); do
            lines+=("${line:0:columns}")
            line=${line:columns}
        done
        lines+=("$line")
    done <<<"$answer"
done

longest=0
for line in "${lines[@]}"; do
    ((${#line} <= longest)) || longest=${#line}
done
width=$(awk "BEGIN { printf \"%d\", $longest * $letter_width + 2 * $margin + 1 }")
height=$((top + ${#lines[@]} * line_height + margin))

escape() { sed -e 's/&/\&amp;/g' -e 's/</\&lt;/g' -e 's/>/\&gt;/g' <<<"$1"; }

cat <<SVG
<svg xmlns="http://www.w3.org/2000/svg" width="$width" height="$height" viewBox="0 0 $width $height" role="img">
<title>xmlvalue in a terminal</title>
<rect width="$width" height="$height" rx="8" fill="#1c2128"/>
<circle cx="20" cy="18" r="6" fill="#f47067"/><circle cx="40" cy="18" r="6" fill="#daaa3f"/><circle cx="60" cy="18" r="6" fill="#57ab5a"/>
<g font-family="ui-monospace, 'DejaVu Sans Mono', Menlo, Consolas, monospace" font-size="14" fill="#adbac7" xml:space="preserve">
SVG
y=$top
for line in "${lines[@]}"; do
    y=$((y + line_height))
    case $line in
        '$ '*) printf '<text x="%s" y="%s"><tspan fill="#57ab5a">$</tspan><tspan fill="#e6edf3" font-weight="bold"> %s</tspan></text>\n' \
            $margin $((y - 6)) "$(escape "${line#\$ }")" ;;
        *) printf '<text x="%s" y="%s">%s</text>\n' $margin $((y - 6)) "$(escape "$line")" ;;
    esac
done
printf '</g>\n</svg>\n'
