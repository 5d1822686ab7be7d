#!/usr/bin/env bash
# How quickly the window answers on a tree of a million nodes, and how long its thread is held up while it scans,
# removes 100,000 files and measures. Run by ./bench, which says in $programs where everything was built. Options:
#
#   --files N      the size of the tree that is scanned (460000)
#   --removed N    how many files are removed from it (100000)
#   --in FOLDER    keep the tree there, 2 GB (default: the user's cache folder)
set -euo pipefail

programs=${programs:?}
files=460000 removed=100000 folder=${XDG_CACHE_HOME:-$HOME/.cache}/brimvale-bench
while [ $# -gt 1 ]; do
    case $1 in
        --files) files=$2 ;;
        --removed) removed=$2 ;;
        --in) folder=$2 ;;
        *) break ;;
    esac
    shift 2
done
if [ $# -gt 0 ]; then
    sed -n '5,7s/^# *//p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi

status=0
"$programs/Window" || status=1

# In a home folder of its own, so that measuring has something to measure.
mkdir -p "$folder/removed"
home=$(cd "$folder" && pwd)
"$programs/MakeTree" --in "$home" --files "$files" >/dev/null
"$programs/MakeTree" --in "$home/removed" --files "$removed" --folders $((removed / 100)) >/dev/null
echo
HOME=$home XDG_CACHE_HOME=$home/.cache "$programs/Stalls" "$home" "$home/removed" || status=1
exit "$status"
