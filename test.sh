#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test.
#   ./test.sh [--preset release|debug|asan|tsan] [ctest options, such as -R pattern]
set -euo pipefail
cd "$(dirname "$0")"

preset=release
if [ "${1:-}" = --preset ]; then
    preset=${2:?--preset needs a name: release, debug, asan or tsan}
    shift 2
fi

scripts/bootstrap.sh
scripts/build.sh "$preset"
exec ctest --preset "$preset" -j "$(nproc)" "$@"
