#!/usr/bin/env bash
# Measuring a home folder for Cleanup and for Overview, beside one walk of the same files. Much of it lies in
# several of the places that are measured, and is to be walked once nevertheless. To be run by ./bench, which
# says in $programs where everything was built. Options:
#
#   --rounds N     rounds with everything in memory (11)
#   --files N      files in each of the home folder's five trees (90000)
#   --in FOLDER    keep the home folder there (default: the user's cache folder)
set -euo pipefail

programs=${programs:?}
rounds=11 files=90000 folder=${XDG_CACHE_HOME:-$HOME/.cache}/brimvale-bench
while [ $# -gt 1 ]; do
    case $1 in
        --rounds) rounds=$2 ;;
        --files) files=$2 ;;
        --in) folder=$2 ;;
        *) break ;;
    esac
    shift 2
done
if [ $# -gt 0 ]; then
    sed -n '6,8s/^# *//p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi

mkdir -p "$folder"
home=$(cd "$folder" && pwd)/home-$files
# Two targets and a category want the first, one and System Data the second, a target and a category the others.
for place in Library/Caches/Homebrew Library/Caches/com.example.app Library/Developer/Xcode/DerivedData \
    .cache/uv .Trash; do
    mkdir -p "$home/$place"
    "$programs/MakeTree" --in "$home/$place" --files "$files" --folders $((files / 11)) >/dev/null
done

# What the overview covers besides.
system=()
for place in /Applications /Library /System /Users/Shared /private/var /usr /opt; do
    if [ -d "$place" ] && [ ! -L "$place" ]; then system+=("$place"); fi
done

printf 'Measuring %s on %s cores, %s\n\n' "$(basename "$home")" "$(getconf _NPROCESSORS_ONLN)" "$(uname -sr)"
beside() {
    "$programs/SideBySide" --rounds "$rounds" --at-most 1.1 "one walk" \
        + "$1" env HOME="$home" "$programs/brimvalectl" --system macos "$1" --json \
        + "one walk" env HOME="$home" "$programs/brimvalectl" --system macos size "${@:2}"
}
status=0
beside cleanup "$home" || status=1
echo
beside overview "$home" "${system[@]}" || status=1
exit "$status"
