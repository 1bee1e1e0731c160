#!/usr/bin/env bash
# Installs what the project needs on Debian 12, and says what. Does nothing when nothing is
# missing. Needs root or sudo only when it has something to install.
set -euo pipefail

packages=(
    # tools
    g++ cmake ninja-build ccache pkg-config git
    # libraries (docs/dependencies.md says what each is for)
    libimath-dev libboost-dev libboost-chrono-dev libglew-dev libegl-dev libgl-dev libx11-dev
    libtbb-dev libxxhash-dev libassimp-dev libspdlog-dev libisal-dev libpng-dev
    libstb-dev
    libgtest-dev libgmock-dev
    # software OpenGL, a virtual display for the tests, models to look at
    libgl1-mesa-dri libegl-mesa0 xvfb assimp-testmodels
    # Python 3: the distribution's own, and the window toolkits
    python3 python3-dev python3-tk
    python3-pyside2.qtcore python3-pyside2.qtgui python3-pyside2.qtwidgets
)

say() { printf 'bootstrap: %s\n' "$*"; }
die() { printf 'bootstrap: %s\n' "$*" >&2; exit 1; }

command -v dpkg-query >/dev/null || die "this is not a Debian system; install by hand: ${packages[*]}"

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        die "need root or sudo to run: $*"
    fi
}

# The names among "$@" that are not installed.
missing_of() {
    local installed package
    installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null |
                awk '$2 == "installed" {print $1}') || true
    for package in "$@"; do
        grep -qx -- "$package" <<<"$installed" || printf '%s\n' "$package"
    done
}

apt_is_fresh=
apt_install() {
    if [ -z "$apt_is_fresh" ]; then
        say "refreshing the package lists"
        as_root apt-get -q update >/dev/null || die "apt-get update failed"
        apt_is_fresh=yes
    fi
    say "installing: $*"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o Acquire::Retries=3 \
        install --no-install-recommends "$@" >/dev/null || die "apt-get install failed: $*"
}

# Whether "$1" runs, is Python 2.7 and has its headers.
is_python27() {
    "$1" -c 'import os, sys, sysconfig
header = os.path.join(sysconfig.get_config_var("INCLUDEPY"), "Python.h")
sys.exit(sys.version_info[:2] != (2, 7) or not os.path.exists(header))' >/dev/null 2>&1
}

# The mirror and the signing key that this machine's own sources use for the distribution's
# release "$1": "URI KEYRING", KEYRING empty when the source names none. Reads both forms of
# source file.
distribution_mirror() {
    # A blank line ends a stanza, and so does the end of a file.
    for file in /etc/apt/sources.list.d/*.sources; do
        [ ! -e "$file" ] || { cat "$file"; echo; }
    done | awk -v codename="$1" '
        function flush() {
            if (!found && suites ~ ("(^| )" codename "( |$)") && uri != "") {
                print uri, key
                found = 1
            }
            uri = suites = key = ""
        }
        /^[ \t]*$/ { flush(); next }
        /^#/ { next }
        { field = tolower($1); value = $0; sub(/^[^:]*:[ \t]*/, "", value) }
        field == "uris:" { split(value, uris, " "); uri = uris[1] }
        field == "suites:" { suites = value }
        field == "signed-by:" { key = value }
        END { flush() }' | grep . && return
    cat /etc/apt/sources.list /etc/apt/sources.list.d/*.list 2>/dev/null |
        awk -v codename="$1" '
        $1 == "deb" {
            key = ""; i = 2
            if ($2 ~ /^\[/) {
                for (; i <= NF; i++) {
                    option = $i; gsub(/[][]/, "", option)
                    if (option ~ /^signed-by=/) key = substr(option, 11)
                    if ($i ~ /\]$/) break
                }
                i++
            }
            if ($(i + 1) == codename) { print $i, key; exit }
        }'
}

# Debian 12 packages no Python 2.7; Debian 11 does, and its packages install beside. The source
# is pinned so low that nothing else is ever taken from it.
add_debian11_source() {
    local list=/etc/apt/sources.list.d/bullseye-python2.sources
    [ ! -e "$list" ] || return 0
    local codename mirror key
    codename=$(. /etc/os-release && printf '%s' "$VERSION_CODENAME")
    read -r mirror key <<<"$(distribution_mirror "$codename")" || true
    [ -n "$mirror" ] || die "no apt source for $codename found to take Debian 11's mirror from"
    say "adding Debian 11 as a source for Python 2.7 alone ($list)"
    {
        printf 'Types: deb\nURIs: %s\nSuites: bullseye\nComponents: main\n' "$mirror"
        [ -z "$key" ] || printf 'Signed-By: %s\n' "$key"
    } | as_root tee "$list" >/dev/null
    printf 'Package: *\nPin: release n=bullseye\nPin-Priority: 100\n' |
        as_root tee /etc/apt/preferences.d/bullseye-python2 >/dev/null
    apt_is_fresh=
}

mapfile -t missing < <(missing_of "${packages[@]}")
[ ${#missing[@]} = 0 ] || apt_install "${missing[@]}"

if ! is_python27 python2.7 && ! is_python27 /usr/bin/python2.7; then
    add_debian11_source
    apt_install python2.7-dev python-tk
    is_python27 /usr/bin/python2.7 || die "python2.7-dev is installed, yet /usr/bin/python2.7 does not work"
fi
