# To be sourced by a script that then calls
#
#   build PRESET [CMAKE-OPTION…]
#
# which configures the preset where that is due, and builds it. Says nothing where there is nothing to do, one
# line where there is, and everything where it fails.
# shellcheck shell=bash

top=$(CDPATH='' cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

build() {
    local preset=$1 folder="$top/build/$1" log="$top/build/$1.log"
    shift
    if [ $# -eq 0 ] && [ "$folder/build.ninja" -nt "$top/CMakePresets.json" ]; then
        # Ninja sees by itself when CMake is to run again, save for the presets.
        case $(cmake --build "$folder" -- -n 2>&1) in
            *'no work to do'*) return ;;
        esac
        echo "Building $preset" >&2
    else
        echo "Building $preset" >&2
        mkdir -p "$top/build"
        (cd "$top" && cmake --preset "$preset" "$@") >"$log" 2>&1 || show_failed_build "$log" || return
    fi
    cmake --build "$folder" >"$log" 2>&1 || show_failed_build "$log"
}

show_failed_build() {
    cat "$1" >&2
    return 1
}
