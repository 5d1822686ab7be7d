#!/usr/bin/env bash
# The removal of one large tree, by Brimvale and by rm, each of a tree of its own that is made for it just before
# and is on the disk by then. Run by ./bench, which says in $programs where everything was built. Options:
#
#   --rounds N     how often each removes a tree (3)
#   --files N      the size of the tree (460000)
#   --folders N    its folders, at most as many (a twelfth of the files or so)
#   --in FOLDER    make the trees in a fresh folder there, 2 GB (default: the user's cache folder)
set -euo pipefail

rounds=3 files=460000 folders='' place=${XDG_CACHE_HOME:-$HOME/.cache}
while [ $# -gt 1 ]; do
    case $1 in
        --rounds) rounds=$2 ;;
        --files) files=$2 ;;
        --folders) folders=$2 ;;
        --in) place=$2 ;;
        *) break ;;
    esac
    shift 2
done
if [ $# -gt 0 ]; then
    sed -n '6,9s/^# *//p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi

mkdir -p "$place"
own=$(mktemp -d "$place/brimvale-remove-XXXXXX")
trap 'rm -rf -- "$own"' EXIT
make=("$programs/MakeTree" --in "$own/trees" --files "$files" --folders "${folders:-$((files * 2 / 23 + 1))}")

printf 'Removal of %s files on %s cores, %s\n\n' "$files" "$(getconf _NPROCESSORS_ONLN)" "$(uname -sr)"
"$programs/SideBySide" --rounds "$rounds" --before "$(printf '%q ' "${make[@]}") >/dev/null 2>&1" --faster 2.2 rm \
    + brimvale "$programs/RemoveItem" "$own/trees" \
    + rm rm -rf -- "$own/trees"
