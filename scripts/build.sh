#!/usr/bin/env bash
# Configures (when needed) and builds one preset: scripts/build.sh [preset] [targets...]
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-release}
shift || true
log=build/$preset/configure.log

if [ ! -e "build/$preset/build.ninja" ]; then
    printf 'build: configuring %s\n' "$preset"
    mkdir -p "build/$preset"
    if ! cmake --preset "$preset" >"$log" 2>&1; then
        cat "$log" >&2
        printf 'build: configuring failed; the whole log is %s\n' "$log" >&2
        exit 1
    fi
fi

if ! NINJA_STATUS='[%f/%t] ' ninja -C "build/$preset" "$@"; then
    printf 'build: compiling failed (preset %s)\n' "$preset" >&2
    exit 1
fi
