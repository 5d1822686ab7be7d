#!/usr/bin/env bash
# Makes a release for macOS in build/dist: the application, a disk image for people, and for the update feed an
# archive with the entry that announces it.
#
#   Packaging/macOS/package.sh [CMAKE-OPTION…]
#
# With SIGNING_IDENTITY it is signed (see application.sh), and notarised if there is an account for notarise.sh
# besides.
set -euo pipefail
here=$(CDPATH='' cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
out=$(CDPATH='' cd "$here/../.." && pwd)/build/dist
app="$out/Brimvale.app"
downloads=https://updates.brimvale.example

main() {
    local version name
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

announce() {
    local build minimum digest
    build=$(entry CFBundleVersion)
    minimum=$(entry LSMinimumSystemVersion)
    digest=$(shasum -a 256 "$2") || end "the digest of ${2##*/} could not be computed."
    printf '{"version": "%s", "build": %s, "url": "%s", "sha256": "%s", "minimumSystemVersion": "%s"}\n' \
        "$1" "$build" "$downloads/${2##*/}" "${digest%% *}" "$minimum"
}

main "$@"
