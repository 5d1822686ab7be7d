#!/usr/bin/env bash
# How the time and memory of a scan grow with the tree, compared with the bare system calls: trees of empty
# files, a chain of nested folders, and one folder with all files. Run by ./bench, which says in
# $programs where everything was built. The trees are removed at the end, because they take many inodes; not sooner,
# because ext4 makes new files slowly after a large removal. Options:
#
#   --rounds N      rounds with everything in memory (3)
#   --files LIST    the sizes of the trees ("1000000 2000000"; 10000000 takes minutes to make)
#   --chain N       the folders of the chain (100000; 0: none)
#   --flat N        the files of the one folder (1000000; 0: none)
#   --in FOLDER     make the trees in a new folder there (default: the user's cache folder)
set -euo pipefail

programs=${programs:?}
rounds=3 files='1000000 2000000' chain=100000 flat=1000000 place=${XDG_CACHE_HOME:-$HOME/.cache}
while [ $# -gt 1 ]; do
    case $1 in
        --rounds) rounds=$2 ;;
        --files) files=$2 ;;
        --chain) chain=$2 ;;
        --flat) flat=$2 ;;
        --in) place=$2 ;;
        *) break ;;
    esac
    shift 2
done
if [ $# -gt 0 ]; then
    sed -n '7,11s/^# *//p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi

mkdir -p "$place"
own=$(mktemp -d "$place/brimvale-growth-XXXXXX")
trap '"$programs/RemoveItem" "$own"' EXIT
status=0

# measure WHAT SHAPE OPTION...
measure() {
    local tree
    printf '%s on %s cores, %s\n\n' "$1" "$(getconf _NPROCESSORS_ONLN)" "$(uname -sr)"
    tree=$("$programs/MakeTree" --in "$own" --shape "$2" "${@:3}")
    "$programs/SideBySide" --rounds "$rounds" --at-most 1.5 floor \
        + brimvalectl "$programs/brimvalectl" scan --depth 0 "$tree" \
        + floor "$programs/ScanFloor" "$tree" || status=1
    echo
}

for count in $files; do
    measure "A tree of $count files" empty --files "$count" --folders $((count * 2 / 23 + 1))
done
[ "$chain" -eq 0 ] || measure "A chain of $chain folders" chain --folders "$chain"
[ "$flat" -eq 0 ] || measure "A folder of $flat files" flat --files "$flat"
exit "$status"
