#!/usr/bin/env bash
# The search for duplicates, by Brimvale and by the usual tools. To be run by ./bench, which says in $programs where
# everything was built. Options:
#
#   --rounds N         rounds with everything in memory (7)
#   --cold-rounds N    rounds with nothing in memory, which need Linux and root (3; 0: none)
#   --in FOLDER        keep the tree there, 1.5 GB (default: the user's cache folder)
#   --tree FOLDER      search another tree
set -euo pipefail

programs=${programs:?}
rounds=7 coldRounds=3 folder=${XDG_CACHE_HOME:-$HOME/.cache}/brimvale-bench tree=''
while [ $# -gt 1 ]; do
    case $1 in
        --rounds) rounds=$2 ;;
        --cold-rounds) coldRounds=$2 ;;
        --in) folder=$2 ;;
        --tree) tree=$2 ;;
        *) break ;;
    esac
    shift 2
done
if [ $# -gt 0 ]; then
    sed -n '5,8s/^# *//p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi

# pieces FOLDER COUNT BYTES: as many files of one length, all with other contents.
pieces() {
    mkdir -p "$1"
    head -c "$(($2 * $3))" /dev/urandom | split -a 5 -b "$3" - "$1/piece-"
}

# Files of 4 KB, 100 KB, 2 MB and 60 MB: a half of each is there twice, the other half once, and all of one kind have one
# length. A fifth of those of 100 KB differ from another one only in their last byte.
make_tree() {
    rm -rf "$tree"
    pieces "$tree/small" 10000 4096
    pieces "$tree/small-alone" 10000 4096
    pieces "$tree/medium" 1500 100000
    pieces "$tree/medium-alone" 1500 100000
    pieces "$tree/large" 80 2000000
    pieces "$tree/large-alone" 80 2000000
    pieces "$tree/huge" 4 60000000
    pieces "$tree/huge-alone" 2 60000000
    cp -r "$tree/small" "$tree/medium" "$tree/large" "$tree/huge" "$(mkdir -p "$tree/copies" && echo "$tree/copies")"
    cp -r "$tree/medium-alone" "$tree/medium-changed"
    for file in "$tree"/medium-changed/piece-aaa*; do
        printf 'x' | dd of="$file" bs=1 seek=99999 conv=notrunc status=none
    done
    sync
    touch "$tree.made"
}

if [ -z "$tree" ]; then
    mkdir -p "$folder"
    tree=$(cd "$folder" && pwd)/duplicates
    [ -f "$tree.made" ] || make_tree
fi
tree=$(cd "$tree" && pwd)

# All compare whole contents: fdupes and jdupes byte by byte, rdfind by SHA-1, rmlint by BLAKE2b.
contenders=(
    + brimvalectl "$programs/brimvalectl" duplicates "$tree"
    + jdupes jdupes -r -q "$tree"
    + rmlint rmlint -T df -o json:stdout "$tree"
    + rdfind rdfind -dryrun true -makeresultsfile false "$tree"
    + fdupes fdupes -r -q "$tree")

echo "Duplicates in $(basename "$tree") on $(getconf _NPROCESSORS_ONLN) cores, $(uname -sr)"
echo
status=0
"$programs/SideBySide" --rounds "$rounds" --faster 1 jdupes --faster 1 rmlint --faster 1 rdfind --faster 1 fdupes \
    "${contenders[@]}" || status=1
if [ "$coldRounds" -gt 0 ]; then
    echo
    "$programs/SideBySide" --cold --rounds "$coldRounds" --faster 1 jdupes --faster 1 rmlint --faster 1 rdfind \
        "${contenders[@]}" || status=1
fi
exit "$status"
