#!/usr/bin/env bash
# Makes a disk image from which the application is dragged into Applications:
#
#   Packaging/macOS/disk-image.sh APPLICATION IMAGE.dmg
#
# SIGNING_IDENTITY  the certificate to sign the image with; without it, it is not signed.
set -euo pipefail

if [ $# -ne 2 ] || [ ! -d "$1" ]; then
    sed -n '4s/^# *//p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
ditto "$1" "$folder/${1##*/}"
ln -s /Applications "$folder/Applications"
name=${1##*/}
hdiutil create -quiet -ov -volname "${name%.app}" -srcfolder "$folder" -fs HFS+ -format ULFO "$2"
[ -z "${SIGNING_IDENTITY:-}" ] || codesign --force --sign "$SIGNING_IDENTITY" --timestamp "$2"
