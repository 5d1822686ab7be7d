#!/usr/bin/env bash
# Makes a disk image from which the application is dragged into Applications:
#
#   Packaging/macOS/disk-image.sh APPLICATION IMAGE.dmg
#
# SIGNING_IDENTITY  the certificate to sign the image with; without it, it is not signed.
set -euo pipefail

end() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

if [ $# -ne 2 ] || [ ! -d "$1" ] || [[ $2 != *.dmg ]]; then
    sed -n '4s/^# *//p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
app=${1%/}
name=${app##*/}
# In the folder of the image; it gets its name only when it is complete.
work=$(mktemp -d "$(dirname "$2")/disk-image-XXXXXX")
trap 'rm -rf "$work"' EXIT

make_image() {
    local said
    for _ in 1 2 3; do
        said=$(hdiutil create -ov -volname "${name%.app}" -srcfolder "$work/contents" -fs HFS+ -format ULFO \
            "$work/image.dmg" 2>&1) && return
        # The system may still be scanning the new files.
        case $said in
            *'Resource busy'*) sleep 5 ;;
            *) break ;;
        esac
    done
    end "$said"
}

mkdir "$work/contents"
ditto "$app" "$work/contents/$name"
ln -s /Applications "$work/contents/Applications"
make_image
[ -z "${SIGNING_IDENTITY:-}" ] || codesign --force --sign "$SIGNING_IDENTITY" --timestamp "$work/image.dmg" ||
    end 'the image could not be signed.'
mv -f "$work/image.dmg" "$2"
