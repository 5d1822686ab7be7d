#!/usr/bin/env bash
# Makes a release for macOS in build/dist: the application, a disk image for people, and for the update feed an
# archive with the entry that announces it.
#
#   Packaging/macOS/package.sh [CMAKE-OPTION…]
#
# With SIGNING_IDENTITY it is signed (see application.sh), and notarised if notarise.sh finds an account besides.
set -euo pipefail
here=$(CDPATH='' cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
out=$(CDPATH='' cd "$here/../.." && pwd)/build/dist
app="$out/Brimvale.app"
downloads=https://updates.brimvale.example

main() {
    local version image archive
    "$here/application.sh" "$@"
    notarise "$app"
    version=$(entry CFBundleShortVersionString)
    image="$out/Brimvale-$version.dmg" archive="$out/Brimvale-$version.zip"
    "$here/disk-image.sh" "$app" "$image"
    notarise "$image"
    rm -f "$archive"
    ditto -c -k --keepParent "$app" "$archive"
    announce "$version" "$archive" >"$out/appcast.json"
    ls -l "$out"
}

# What the bundle itself says, so that nothing else can contradict it.
entry() {
    plutil -extract "$1" raw -o - "$app/Contents/Info.plist"
}

notarise() {
    if [ -n "${SIGNING_IDENTITY:-}" ] && [ -n "${NOTARY_PROFILE:-}${NOTARY_KEY:-}" ]; then
        "$here/notarise.sh" "$1"
    else
        echo "${1##*/} is not notarised: that takes SIGNING_IDENTITY and an account (see notarise.sh)." >&2
    fi
}

announce() {
    local digest
    digest=$(shasum -a 256 "$2")
    printf '{"version": "%s", "build": %s, "url": "%s", "sha256": "%s", "minimumSystemVersion": "%s"}\n' \
        "$1" "$(entry CFBundleVersion)" "$downloads/${2##*/}" "${digest%% *}" "$(entry LSMinimumSystemVersion)"
}

main "$@"
