#!/usr/bin/env bash
# A scan of one large tree, by Brimvale, by the usual tools, and by nothing but the system calls that it takes.
# To be run by ./bench, which says in $programs where everything was built. Options:
#
#   --rounds N         rounds with everything in memory (11)
#   --cold-rounds N    rounds with nothing in memory, which need Linux and root (5; 0: none)
#   --in FOLDER        keep the tree there, 2 GB (default: the user's cache folder)
#   --tree FOLDER      scan another tree
#   --command WORDS    measure this instead of "brimvalectl scan --depth 0"; the tree's path is added
set -euo pipefail

rounds=11 coldRounds=5 tree=''
make=("$programs/MakeTree")
scan=("$programs/brimvalectl" scan --depth 0)
while [ $# -gt 1 ]; do
    case $1 in
        --rounds) rounds=$2 ;;
        --cold-rounds) coldRounds=$2 ;;
        --in) make+=(--in "$2") ;;
        --tree) tree=$2 ;;
        --command) read -r -a scan <<<"$2" ;;
        *) break ;;
    esac
    shift 2
done
if [ $# -gt 0 ]; then
    sed -n '5,9s/^# *//p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi

# What figures depend on besides the programs.
machine() {
    local volume
    volume=$(df -P "$tree" | tail -n 1 | sed -E 's/^([^ ]+ +){5}//')
    echo "$(getconf _NPROCESSORS_ONLN) cores, $(uname -sr)," \
        "$(mount | sed -nE "s|^.* on $volume (type )?\(?([^ ,]+).*|\2|p" | tail -n 1)"
}

[ -n "$tree" ] || tree=$("${make[@]}")
tree=$(cd "$tree" && pwd)
# On a Mac the name gdu may be another tool's; then it goes by gdu-go.
gdu=$(command -v gdu-go || echo gdu)
contenders=(
    + brimvalectl "${scan[@]}" "$tree"
    + floor "$programs/ScanFloor" "$tree"
    + du du -s "$tree"
    + ncdu ncdu --ignore-config -0 -o /dev/null "$tree"
    + gdu "$gdu" --non-interactive --no-progress --summarize "$tree")

printf 'Scan of %s on %s\n\n' "$(basename "$tree")" "$(machine)"
status=0
"$programs/SideBySide" --rounds "$rounds" --at-most 1.05 floor --faster 2.3 du --faster 2.3 ncdu --memory 20 \
    "${contenders[@]}" || status=1
if [ "$coldRounds" -gt 0 ]; then
    echo
    "$programs/SideBySide" --cold --rounds "$coldRounds" --at-most 1.05 floor --faster 3 du "${contenders[@]}" ||
        status=1
fi
exit "$status"
