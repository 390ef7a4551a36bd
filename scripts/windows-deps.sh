#!/usr/bin/env bash
# Prepares everything that the cross build for 64-bit Windows needs, on Debian 12 or later:
#   1. the compiler, Wine and the build tools, from their packages;
#   2. Xerces-C and libzip as static libraries, built from Debian's source packages at the version that the
#      machine's own libxerces-c-dev and libzip-dev packages have.
#
# The last line on standard output is the folder that holds the libraries; everything else goes to standard error.
# Builds only once: the name of the folder is a key made of the versions and the settings below, and a folder with that
# name is used as it is. "current" next to it links to the folder in use. If XMLPLUGIN_CACHE is set, windows-deps/ is
# in that folder instead of .cache in the project.
#
# Needs root or sudo only if packages or the list of sources must change.
set -euo pipefail

readonly packages=(
    g++-mingw-w64-x86-64-posix libz-mingw-w64-dev binutils-mingw-w64-x86-64
    wine64
    cmake ninja-build make dpkg-dev patch xz-utils ca-certificates
    googletest libcli11-dev nlohmann-json3-dev
)
# Packages of headers only: what they hold is copied beside the libraries, so that the cross compiler never looks
# into the build machine's own include folder.
readonly header_packages=(libcli11-dev nlohmann-json3-dev)
# The settings are part of the key.
readonly common_settings=(
    -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF "-DCMAKE_CXX_FLAGS_RELEASE=-O2" "-DCMAKE_C_FLAGS_RELEASE=-O2"
)
readonly xerces_settings=(
    -Dtranscoder=windows -Dmessage-loader=inmemory -Dnetwork=OFF -Dxmlch-type=char16_t
)
readonly libzip_settings=(
    -DENABLE_COMMONCRYPTO=OFF -DENABLE_GNUTLS=OFF -DENABLE_MBEDTLS=OFF -DENABLE_OPENSSL=OFF
    -DENABLE_WINDOWS_CRYPTO=OFF -DENABLE_BZIP2=OFF -DENABLE_LZMA=OFF -DENABLE_ZSTD=OFF
    -DZLIB_USE_STATIC_LIBS=ON -DBUILD_TOOLS=OFF -DBUILD_REGRESS=OFF -DBUILD_EXAMPLES=OFF -DBUILD_DOC=OFF
)
# Raised when the building itself changes in a way that the settings do not show.
readonly recipe=1

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
readonly project
readonly cache=${XMLPLUGIN_CACHE:-$project/.cache}/windows-deps
readonly toolchain=$project/cmake/toolchains/mingw-w64.cmake

say() { printf 'windows-deps: %s\n' "$*" >&2; }
die()
{
    say "$*"
    exit 1
}

as_root()
{
    if ((EUID == 0)); then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        die "needs root or sudo for: $*"
    fi
}

apt_get() { as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=600 "$@" >&2; }

missing_packages()
{
    local package
    for package in "${packages[@]}"; do
        [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || printf '%s\n' "$package"
    done
}

install_packages()
{
    local missing
    mapfile -t missing < <(missing_packages)
    ((${#missing[@]} == 0)) && return
    say "installing ${missing[*]}"
    # The lists of a fresh machine may be absent, or name versions that the archive no longer has.
    apt_get install -y --no-install-recommends "${missing[@]}" ||
        { apt_get update && apt_get install -y --no-install-recommends "${missing[@]}"; }
}

# The source packages of the candidates of binary packages: "NAME VERSION", one per line, in apt's order.
sources_of()
{
    apt-cache show --no-all-versions "$@" 2>/dev/null | awk '
        function finish()
        {
            if (name != "") print source == "" ? name : source, version
            name = source = version = ""
        }
        $1 == "Package:" { finish(); name = $2 }
        $1 == "Version:" { if (version == "") version = $2 }
        $1 == "Source:" { source = $2; if ($3 != "") version = substr($3, 2, length($3) - 2) }
        END { finish() }'
}

# Whether apt can get the source package $1 at version $2.
has_source() { apt-cache showsrc "$1" 2>/dev/null | awk -v v="$2" '$1 == "Version:" && $2 == v { f = 1 } END { exit !f }'; }

# The addresses from which apt knows the given packages, one per line.
archives() { LC_ALL=C apt-cache policy "$@" | awk '$1 ~ /^[0-9]+$/ && $2 ~ /:/ { print $2 }' | sort -u; }

# Binary entries of the one-line format, from files named as arguments, as source entries: those at one of the
# addresses in $1.
source_lines()
{
    local wanted=$1
    shift
    awk -v wanted="$wanted" '
        BEGIN { n = split(wanted, list, "\n"); for (i = 1; i <= n; ++i) { sub(/\/+$/, "", list[i]); want[list[i]] = 1 } }
        $1 == "deb" {
            rest = $0
            sub(/^[ \t]*deb[ \t]+(\[[^]]*\][ \t]*)?/, "", rest)
            split(rest, field, /[ \t]+/)
            uri = field[1]
            sub(/\/+$/, "", uri)
            if (uri in want) { line = $0; sub(/^[ \t]*deb/, "deb-src", line); print line }
        }' "$@"
}

# The same for stanzas ("Types: deb", "URIs: ..."). Comments are left out, other fields are kept as they are.
source_stanzas()
{
    local wanted=$1 file
    shift
    for file in "$@"; do
        { grep -v '^#' "$file" || true; printf '\n'; } | awk -v wanted="$wanted" '
            function finish(   i, n, list, uri)
            {
                n = split(uris, list, /[ \t]+/)
                found = 0
                for (i = 1; i <= n; ++i) { uri = list[i]; sub(/\/+$/, "", uri); if (uri in want) found = 1 }
                if (binary && enabled && found) printf "Types: deb-src\n%s\n", text
                text = uris = name = ""; binary = 0; enabled = 1
            }
            BEGIN {
                n = split(wanted, list, "\n")
                for (i = 1; i <= n; ++i) { sub(/\/+$/, "", list[i]); want[list[i]] = 1 }
                enabled = 1
            }
            /^[ \t]*$/ { finish(); next }
            {
                if ($0 !~ /^[ \t]/) { name = tolower($1); sub(/:.*/, "", name) }
                value = $0
                sub(/^[^ \t:]*:/, "", value)
                if (name == "types") { if (" " value " " ~ /[ \t]deb[ \t]/) binary = 1; next }
                if (name == "uris") uris = uris " " value
                if (name == "enabled" && tolower(value) ~ /no|false|off|0/) enabled = 0
                if (name == "architectures") next
                text = text $0 "\n"
            }
            END { finish() }'
    done
}

# Writes standard input to a file of root's, unless it is empty or the file has that text already.
write_if_new()
{
    local text
    text=$(cat)
    [[ -n $text ]] || return 0
    if [[ ! -f $1 || $(<"$1") != "$text" ]]; then
        say "adding $1"
        printf '%s\n' "$text" | as_root tee "$1" >/dev/null
        as_root chmod 644 "$1"
    fi
}

# Lets apt know the sources beside the binaries: derived from the machine's own entries, in files of our own.
add_source_entries()
{
    local list parts wanted file lines=() stanzas=()
    list=/etc/apt/sources.list parts=/etc/apt/sources.list.d/
    eval "$(apt-config shell list Dir::Etc::sourcelist/f parts Dir::Etc::sourceparts/d)"
    wanted=$(archives libxerces-c-dev libzip-dev)
    for file in "$list" "${parts%/}"/*.list; do [[ -f $file ]] && lines+=("$file"); done
    for file in "${parts%/}"/*.sources; do [[ -f $file ]] && stanzas+=("$file"); done
    ((${#lines[@]} == 0)) || source_lines "$wanted" "${lines[@]}" | write_if_new "${parts%/}/xmlplugin-deb-src.list"
    ((${#stanzas[@]} == 0)) ||
        source_stanzas "$wanted" "${stanzas[@]}" | write_if_new "${parts%/}/xmlplugin-deb-src.sources"
    apt_get update
}

# Runs a command that has much to say; what it said is shown only when it fails.
quietly()
{
    local log
    log=$(mktemp)
    if ! "$@" >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        die "failed: $*"
    fi
    rm -f "$log"
}

# Downloads and unpacks NAME VERSION below the folder $3, as $3/source. Apt checks what it gets.
fetch()
{
    local unpacked
    say "fetching $1 $2"
    mkdir -p "$3"
    (cd "$3" && quietly apt-get -o APT::Sandbox::User="$(id -un)" source --only-source "$1=$2")
    unpacked=("$3"/*/)
    ((${#unpacked[@]} == 1)) || die "$1 $2 was not unpacked as one folder"
    mv "${unpacked[0]%/}" "$3/source"
}

# Configures $1/source in $1/build with the given settings, for installation in $2.
configure()
{
    local work=$1 prefix=$2
    shift 2
    cmake -S "$work/source" -B "$work/build" -G Ninja -Wno-dev \
        -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DXMLPLUGIN_WINDOWS_DEPS="$prefix" \
        -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib "${common_settings[@]}" "$@"
}

# The library alone: tests, samples and documents are neither built nor installed.
build_xerces()
{
    configure "$1" "$2" "${xerces_settings[@]}" &&
        cmake --build "$1/build" --target xerces-c &&
        cmake --install "$1/build/src"
}

build_libzip()
{
    configure "$1" "$2" "${libzip_settings[@]}" &&
        cmake --build "$1/build" --target zip &&
        cmake --install "$1/build" &&
        # Its package file leaves it to the user of a static library to look for zlib.
        sed -i '1i include(CMakeFindDependencyMacro)\nfind_dependency(ZLIB)' "$2/lib/cmake/libzip/libzip-config.cmake"
}

copy_headers()
{
    local package file
    for package in "${header_packages[@]}"; do
        while read -r file; do
            if [[ -f $file ]]; then install -D -m 644 "$file" "$1/${file#/usr/}"; fi
        done < <(dpkg -L "$package" | grep -E '^/usr/(include|share/cmake)/')
    done
}

# Everything that decides what the folder will hold, as text.
describe()
{
    local package
    printf '%s\n' "recipe $recipe" "$xerces" "$libzip" "${common_settings[@]}" "${xerces_settings[@]}" \
        "${libzip_settings[@]}"
    for package in g++-mingw-w64-x86-64-posix libz-mingw-w64-dev "${header_packages[@]}"; do
        dpkg-query -W -f '${Package} ${Version}\n' "$package"
    done
}

build_all()
{
    local work prefix=$1
    work=$(mktemp -d)
    # shellcheck disable=SC2064  # the folder of now, not of later
    trap "rm -rf '$work' '$prefix'" EXIT
    # shellcheck disable=SC2086  # "NAME VERSION" as two words
    {
        fetch $xerces "$work/xerces"
        fetch $libzip "$work/libzip"
    }
    say "building $xerces"
    quietly build_xerces "$work/xerces" "$prefix"
    say "building $libzip"
    quietly build_libzip "$work/libzip" "$prefix"
    copy_headers "$prefix"
}

main()
{
    local versions version lock xerces libzip description key folder
    install_packages
    mapfile -t versions < <(sources_of libxerces-c-dev libzip-dev)
    if ((${#versions[@]} != 2)); then
        apt_get update
        mapfile -t versions < <(sources_of libxerces-c-dev libzip-dev)
    fi
    for version in "${versions[@]}"; do
        case $version in
        xerces-c\ *) xerces=$version ;;
        libzip\ *) libzip=$version ;;
        esac
    done
    [[ -n ${xerces-} && -n ${libzip-} ]] || die "apt knows no libxerces-c-dev or no libzip-dev"
    description=$(describe)
    key=$(sha256sum <<<"$description")
    folder=$cache/${key:0:16}

    mkdir -p "$cache"
    exec {lock}>"$cache/lock"
    flock "$lock"
    if [[ ! -f $folder/contents.txt ]]; then
        # shellcheck disable=SC2086  # "NAME VERSION" as two words
        if ! { has_source $xerces && has_source $libzip; }; then
            add_source_entries
            { has_source $xerces && has_source $libzip; } || die "apt finds no source package for $xerces or $libzip"
        fi
        rm -rf "$folder" "$folder.part"
        build_all "$folder.part"
        printf '%s\n' "$description" >"$folder.part/contents.txt"
        mv -T "$folder.part" "$folder"
    fi
    [[ $(readlink "$cache/current") == "${folder##*/}" ]] || ln -sfnT "${folder##*/}" "$cache/current"
    printf '%s\n' "$folder"
}

main
