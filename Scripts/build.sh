# To be sourced by a script that then calls
#
#   build PRESET [CMAKE-OPTION…]
#
# which configures the preset if needed, and builds it. Prints nothing when everything is up to date, one line when
# it builds, and the whole log when it fails. The build stops after $faults failures (default: 1; 0: never). It builds
# only $target if that is set.
# shellcheck shell=bash

top=$(CDPATH='' cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

build() {
    local preset=$1 folder="$top/build/$1" log="$top/build/$1.log"
    shift
    if [ $# -eq 0 ] && [ "$folder/build.ninja" -nt "$top/CMakePresets.json" ]; then
        # Ninja notices by itself when CMake must run again, except for changed presets.
        case $(cmake --build "$folder" ${target:+--target "$target"} -- -n 2>&1) in
            *'no work to do'*) return ;;
        esac
        echo "Building $preset" >&2
    else
        echo "Building $preset" >&2
        mkdir -p "$top/build"
        (cd "$top" && cmake --preset "$preset" "$@") >"$log" 2>&1 || show_failed_build "$log" || return
    fi
    cmake --build "$folder" ${target:+--target "$target"} -- -k "${faults:-1}" >"$log" 2>&1 || show_failed_build "$log"
}

show_failed_build() {
    cat "$1" >&2
    return 1
}
