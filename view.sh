#!/usr/bin/env bash
# Installs what is missing, builds, and shows a model.
#   ./view.sh [SCENE...] [options]        ./view.sh --help lists the options
# With a display a window opens; without one, or with --output FILE.png, a picture is written.
set -euo pipefail
root=$(cd "$(dirname "$0")" && pwd)

python=
wants_picture=
[ -n "${DISPLAY:-}" ] || wants_picture=yes
arguments=("$@")
for ((i = 0; i < $#; i++)); do
    case ${arguments[i]} in
    --python) python=${arguments[i + 1]:-} ;;
    --python=*) python=${arguments[i]#--python=} ;;
    --output | --output=* | --pick | --pick=* | --help | -h) wants_picture=yes ;;
    esac
done
if [ -z "$python" ]; then
    # The window toolkit is packaged for Python 3 alone.
    if [ -n "$wants_picture" ]; then python=2.7; else python=3; fi
fi
case $python in
2.7 | 3) ;;
*) printf 'view: --python takes 2.7 or 3, not "%s"\n' "$python" >&2; exit 2 ;;
esac

# Installing and building are passed over while no source is newer than the last build.
build=$root/build/release
stamp=$build/view.stamp
is_built() {
    [ -e "$stamp" ] &&
        [ -z "$(find "$root/CMakeLists.txt" "$root/cmake" "$root/ostrel" "$root/viewer_api" \
                     "$root/plugins" "$root/viewer" "$root/scripts" -type f ! -name '*.pyc' \
                     -newer "$stamp" -print -quit)" ]
}
if ! is_built; then
    "$root/scripts/bootstrap.sh"
    "$root/scripts/build.sh" release view
    touch "$stamp"
fi

interpreter=$(sed -n "s/^OSTREL_PYTHON${python/./}:FILEPATH=//p" "$build/CMakeCache.txt")
export PYTHONPATH=$build/python$python${PYTHONPATH:+:$PYTHONPATH}
export OSTREL_PLUGINS=$build/plugins
# Large pages, where the system lends them: most of a picture's time is filling memory once. A
# process that ends with its picture keeps what it frees, and has large blocks one behind the other:
# mapped each for itself, they begin and end with small pages.
tunables=glibc.malloc.hugetlb=1
if [ -n "$wants_picture" ]; then
    tunables+=:glibc.malloc.mmap_threshold=33554432:glibc.malloc.trim_threshold=1073741824
fi
export GLIBC_TUNABLES=${GLIBC_TUNABLES:+$GLIBC_TUNABLES:}$tunables
exec "$interpreter" "$root/viewer/view.py" "$@"
