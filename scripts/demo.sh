#!/usr/bin/env bash
# Runs a few queries on an example document, and shows each command with its answer.
# Usage: scripts/demo.sh FOLDER-OF-XMLVALUE
set -euo pipefail
cd "$(dirname "$0")/.."
PATH="$1:$PATH"

show() {
    local argument line='$ xmlvalue'
    for argument in "$@"; do
        case $argument in
            *[!A-Za-z0-9/.@_=-]*) line+=" \"$argument\"" ;;
            *) line+=" $argument" ;;
        esac
    done
    echo "$line"
    xmlvalue "$@" || status=$?
    printf '\n'
    return 0
}

status=0
show '/network/server/@name' examples/servers.xml
show "//server[@role='database']/@host" examples/servers.xml
show '/network/server[2]/port/@number' examples/servers.xml
show 'count(//port)' examples/servers.xml
show --one "concat('ports: ', count(//port))" examples/servers.xml
show "//server[@role='mail']/@name" examples/servers.xml
echo "(no value: exit status $status)"
