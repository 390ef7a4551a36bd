#!/usr/bin/env bash
# Runs a Windows program of this project under Wine: run-wine.sh PROGRAM [ARGUMENT...]
# Arguments, standard streams and the exit status are those of the program. Needs no display.
#
#   run-wine.sh --start FOLDER    prepares the Wine prefix of a build folder and starts its server
#   run-wine.sh --stop FOLDER     ends everything that runs in that prefix
#
# The prefix is the folder "wine" in the program's build folder, or $XMLPLUGIN_WINEPREFIX.
set -euo pipefail

readonly libraries=/usr/lib/wine

# The closest folder above a program that CMake has configured.
build_folder()
{
    local folder
    folder=$(cd "$(dirname "$1")" && pwd)
    while [[ $folder != / && ! -f $folder/CMakeCache.txt ]]; do folder=$(dirname "$folder"); done
    [[ $folder != / ]] || { printf 'run-wine: %s is not in a build folder\n' "$1" >&2 && exit 127; }
    printf '%s\n' "$folder"
}

# Sets what Wine reads from its environment. Text is UTF-8; nothing may ask for a display or open a window.
set_environment()
{
    export WINEPREFIX=${XMLPLUGIN_WINEPREFIX:-$1/wine} WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all} LC_ALL=C.UTF-8
    export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d;winedbg.exe=d'
    local bin=Z:$1/bin
    export WINEPATH=${bin//\//\\}
    unset DISPLAY WAYLAND_DISPLAY
}

# Runs part of Wine itself, cut off from our streams and the lock: its services live on after the call, and who
# reads our output through a pipe must not wait for their end.
detached() { "$libraries/$1" "${@:2}" </dev/null >/dev/null 2>&1 9>&-; }

# Sees to it that the prefix and its server with the services are there; of several callers at once, one does it and
# the others wait. Making a prefix takes some seconds, starting the server one. Left alone, it ends after a minute.
make_ready()
{
    mkdir -p "$WINEPREFIX"
    (
        flock 9
        if [[ ! -f $WINEPREFIX/.ready ]]; then
            detached wine64 wineboot --init
            touch "$WINEPREFIX/.ready"
        fi
        # Fails when the server is up already.
        if detached wineserver64 -p60; then detached wine64 cmd /c exit; fi
    ) 9>"$WINEPREFIX.lock"
}

case ${1-} in
--start)
    set_environment "$(cd "$2" && pwd)"
    make_ready
    ;;
--stop)
    set_environment "$(cd "$2" && pwd)"
    [[ ! -d $WINEPREFIX ]] || detached wineserver64 -k || true # fails when none is up
    ;;
*)
    set_environment "$(build_folder "$1")"
    make_ready
    exec "$libraries/wine64" "$@"
    ;;
esac
