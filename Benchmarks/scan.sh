#!/usr/bin/env bash
# A scan of one large tree by Brimvale, by the usual tools, and by nothing but the system calls that it takes.
# Run by ./bench, which says in $programs where everything was built.
#
# Options:
#   --rounds N         warm rounds (11)
#   --cold-rounds N    rounds with nothing read from disk before, as root on Linux (5; 0 leaves them out)
#   --in FOLDER        where the tree is kept, 2 GB (the cache folder of the user)
#   --tree FOLDER      another tree, which is only read
#   --command WORDS    what is measured instead of "brimvalectl scan --depth 0"
set -euo pipefail

rounds=11 cold_rounds=5 tree=''
make=("$programs/MakeTree")
subject=("$programs/brimvalectl" scan --depth 0)
while (($# > 0)); do
    case $1 in
    --rounds) rounds=$2 ;;
    --cold-rounds) cold_rounds=$2 ;;
    --in) make+=(--in "$2") ;;
    --tree) tree=$2 ;;
    --command) read -ra subject <<<"$2" ;;
    *) echo "bench: scan has no option $1" >&2 && exit 2 ;;
    esac
    shift 2
done
[[ -n $tree ]] || tree=$("${make[@]}")
tree=$(cd "$tree" && pwd)

machine() {
    local volume
    volume=$(df -P "$tree" | tail -n 1 | sed -E 's/^([^ ]+ +){5}//')
    echo "$(getconf _NPROCESSORS_ONLN) cores, $(uname -sr)," \
        "$(mount | sed -nE "s|^.* on $volume (type )?\(?([^ ,]+).*|\2|p" | tail -n 1)"
}

# Where another tool has taken the name gdu (GNU du on macOS), it goes by gdu-go.
gdu=$(command -v gdu-go || echo gdu)
contenders=(
    + brimvalectl "${subject[@]}" "$tree"
    + floor "$programs/ScanFloor" "$tree"
    + du du -s "$tree"
    + ncdu ncdu --ignore-config -0 -o /dev/null "$tree"
    + gdu "$gdu" --non-interactive --no-progress --summarize "$tree")

echo "Scan of $(basename "$tree") on $(machine)"
echo
"$programs/SideBySide" --rounds "$rounds" --at-most 1.25 floor --faster 1.8 du --faster 1.8 ncdu --memory 40 \
    "${contenders[@]}"
if ((cold_rounds > 0)); then
    echo
    "$programs/SideBySide" --cold --rounds "$cold_rounds" --faster 2.5 du "${contenders[@]}"
fi
