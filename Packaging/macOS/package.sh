#!/usr/bin/env bash
# Makes a release for macOS in build/dist: the application, a disk image for people, and for the update feed an
# archive with the entry that announces it.
#
#   Packaging/macOS/package.sh [CMAKE-OPTION…]
#
# With SIGNING_IDENTITY it is signed (see application.sh), and notarised if there is an account for notarise.sh
# besides. Installed copies take a release only if its build number is higher than theirs: without -DBRIMVALE_BUILD it is
# the number of commits until now.
#
# RELEASE_NOTES     a text file that says what is new, for the entry; without it, the entry does not say
set -euo pipefail
here=$(CDPATH='' cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
out=$(CDPATH='' cd "$here/../.." && pwd)/build/dist
app="$out/Brimvale.app"
downloads=https://updates.brimvale.example

main() {
    local version name build
    [ -z "${RELEASE_NOTES:-}" ] || [ -r "$RELEASE_NOTES" ] || end "$RELEASE_NOTES cannot be read."
    case " $*" in
        *' -DBRIMVALE_BUILD='*) ;;
        *)
            build=$(number_of_commits)
            set -- "-DBRIMVALE_BUILD=$build" "$@"
            ;;
    esac
    "$here/application.sh" "$@"
    notarise "$app"
    version=$(entry CFBundleShortVersionString)
    name="Brimvale-$version"
    # All or nothing: everything in build/dist can be published as it is.
    work=$(mktemp -d "$out/unfinished-XXXXXX")
    trap 'rm -rf "$work"' EXIT
    "$here/disk-image.sh" "$app" "$work/$name.dmg"
    notarise "$work/$name.dmg"
    ditto -c -k --keepParent "$app" "$work/$name.zip"
    announce "$version" "$work/$name.zip" >"$work/appcast.json"
    mv "$work"/* "$out"
    rmdir "$work"
    ls -l "$out"
}

end() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# Read from the bundle itself, so that the two always agree.
entry() {
    plutil -extract "$1" raw -o - "$app/Contents/Info.plist" || end "Info.plist says nothing of $1."
}

# notarise.sh reports an incomplete account.
notarise() {
    if [ -n "${SIGNING_IDENTITY:-}" ] &&
        [ -n "${NOTARY_PROFILE:-}${NOTARY_KEY:-}${NOTARY_KEY_ID:-}${NOTARY_ISSUER:-}" ]; then
        "$here/notarise.sh" "$1"
    else
        echo "${1##*/} is not notarised: that takes SIGNING_IDENTITY and an account (see notarise.sh)." >&2
    fi
}

# A copy of only the last commits would give a number that has been used before.
number_of_commits() {
    [ "$(cd "$here" && git rev-parse --is-shallow-repository 2>/dev/null)" = false ] &&
        (cd "$here" && git rev-list --count HEAD) ||
        end 'the commits cannot be counted here; give -DBRIMVALE_BUILD=NUMBER, higher than that of the last release.'
}

# The member of the entry with the notes as a JSON text; nothing without notes.
notes() {
    [ -n "${RELEASE_NOTES:-}" ] || return 0
    printf '"notes": "'
    LC_ALL=C tr '\t' ' ' <"$RELEASE_NOTES" | LC_ALL=C tr -d '\000-\011\013-\037' | LC_ALL=C sed 's/\\/\\\\/g; s/"/\\"/g' |
        LC_ALL=C awk '{ printf "%s%s", (NR > 1 ? "\\n" : ""), $0 }'
    printf '", '
}

announce() {
    local build minimum digest
    build=$(entry CFBundleVersion)
    minimum=$(entry LSMinimumSystemVersion)
    digest=$(shasum -a 256 "$2") || end "the digest of ${2##*/} could not be computed."
    printf '{"version": "%s", "build": %s, %s"url": "%s", "sha256": "%s", "minimumSystemVersion": "%s"}\n' \
        "$1" "$build" "$(notes)" "$downloads/${2##*/}" "${digest%% *}" "$minimum"
}

main "$@"
