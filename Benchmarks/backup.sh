#!/usr/bin/env bash
# A backup with its comparison, beside cp and a comparison with diff or cmp, of a tree of small files and of one large file;
# and the transcript of a large Messages database. Run by ./bench, which says in $programs where everything was built.
# Options:
#
#   --rounds N      how often each is measured (3)
#   --files N       how many small files (20000)
#   --messages N    how many messages (1000000)
#   --in FOLDER     keep everything there, 2 GB (default: the user's cache folder)
set -euo pipefail

programs=${programs:?}
rounds=3 files=20000 messages=1000000 folder=${XDG_CACHE_HOME:-$HOME/.cache}/brimvale-bench
while [ $# -gt 1 ]; do
    case $1 in
        --rounds) rounds=$2 ;;
        --files) files=$2 ;;
        --messages) messages=$2 ;;
        --in) folder=$2 ;;
        *) break ;;
    esac
    shift 2
done
if [ $# -gt 0 ]; then
    sed -n '6,9s/^# *//p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi

mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
own=$(mktemp -d "$folder/backup-XXXXXX")
trap 'rm -rf -- "$own"' EXIT
small=$("$programs/MakeTree" --in "$folder" --files "$files" --folders $((files / 11)))
large=$folder/large-file
[ -e "$large" ] || head -c 500000000 /dev/urandom >"$large"
status=0

# beside WHAT ORIGINAL COMPARISON: both write their copy out to the disk before they compare it. The comparison is a
# script that gets the original and the copy.
beside() {
    echo "Backup of $1 on $(getconf _NPROCESSORS_ONLN) cores, $(uname -sr)"
    echo
    # shellcheck disable=SC2016 # the shell that is started expands them
    "$programs/SideBySide" --rounds "$rounds" --before "rm -rf $(printf %q "$own")/* && sync" --at-most 1.25 "cp and cmp" \
        + brimvalectl "$programs/brimvalectl" backup --label one --into "$own" "$2" \
        + "cp and cmp" sh -c 'cp -a "$1" "$2/copy" && sync -f "$2/copy" && set -- "$1" "$2/copy" && '"$3" sh "$2" "$own" ||
        status=1
    echo
}
# shellcheck disable=SC2016
beside "$files small files" "$small" 'diff -r "$1" "$2"'
# A backup compares what the disk has, and not what is still in memory.
# shellcheck disable=SC2016
beside "one large file" "$large" 'dd of="$2" oflag=nocache conv=notrunc count=0 2>/dev/null && cmp "$1" "$2"'

# Message i is in chat i modulo 1,000 and has about 45 characters.
database=$folder/messages-$messages.db
if [ ! -e "$database" ] && command -v sqlite3 >/dev/null; then
    sqlite3 "$own/messages.db" "
        CREATE TABLE message (ROWID INTEGER PRIMARY KEY, is_from_me INTEGER, date INTEGER, text TEXT, attributedBody BLOB,
            cache_has_attachments INTEGER, service TEXT, associated_message_type INTEGER);
        CREATE TABLE chat (ROWID INTEGER PRIMARY KEY, display_name TEXT, chat_identifier TEXT);
        CREATE TABLE chat_message_join (chat_id INTEGER, message_id INTEGER);
        WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 1000)
            INSERT INTO chat SELECT i, 'Chat ' || i, 'chat' || i FROM n;
        WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT $messages)
            INSERT INTO message SELECT i, i % 2, 600000000000000000 + i * 1000000000,
                'Message number ' || i || ' of this conversation here', NULL, 0, 'iMessage', 0 FROM n;
        INSERT INTO chat_message_join SELECT ROWID % 1000 + 1, ROWID FROM message;"
    mv "$own/messages.db" "$database"
fi
echo "Transcript of $messages messages"
echo
"$programs/SideBySide" --rounds "$rounds" --memory 300 \
    + transcript "$programs/brimvalectl" transcript "$database" --output "$own/page.html" || status=1
exit "$status"
