#!/usr/bin/env bash
# Builds the application with everything that it needs inside, and signs it: build/dist/Brimvale.app
#
#   Packaging/macOS/application.sh [CMAKE-OPTION…]
#
# SIGNING_IDENTITY  the certificate to sign with, as `security find-identity -v -p codesigning` lists it. Without
#                   it the application is signed for this Mac only.
set -euo pipefail
top=$(CDPATH='' cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
app="$top/build/dist/Brimvale.app"
contents="$app/Contents"

main() {
    command -v macdeployqt >/dev/null || end 'macdeployqt, which comes with Qt, is not in the PATH.'
    build "$@"
    deploy
    check_minimum
    sign
    check_signature
    echo "$app"
}

end() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

build() {
    (cd "$top" && cmake --preset package "$@")
    cmake --build "$top/build/package"
    rm -rf "$app"
    cmake --install "$top/build/package" --prefix "${app%/*}"
}

# Copies Qt and its plug-ins into the bundle. It answers 0 even when something was missing, and tells so only.
deploy() {
    local said
    said=$(macdeployqt "$app" -executable="$contents/MacOS/brimvalectl" 2>&1) || end "$said"
    case $said in
        *ERROR:*) end "$said" ;;
    esac
}

# No library inside may need a newer macOS than the bundle says it does: it would not start there.
check_minimum() {
    local promised file needed
    promised=$(plutil -extract LSMinimumSystemVersion raw -o - "$contents/Info.plist")
    while IFS= read -r -d '' file; do
        for needed in $(otool -l "$file" 2>/dev/null | awk '$1 == "minos" { print $2 }'); do
            is_at_least "$promised" "$needed" ||
                end "${file##*/} needs macOS $needed, and the application promises $promised:" \
                    "use a Qt for older systems, or give -DCMAKE_OSX_DEPLOYMENT_TARGET=$needed."
        done
    done < <(find "$contents" -type f -print0)
}

# is_at_least VERSION MINIMUM: compares their first two numbers.
is_at_least() {
    awk -v version="$1" -v minimum="$2" 'BEGIN {
        split(version, a, "."); split(minimum, b, ".")
        exit !(a[1] > b[1] || (a[1] == b[1] && a[2] + 0 >= b[2] + 0))
    }'
}

# From the inside out, since a signature covers those within it. macdeployqt can sign as well, but takes no
# entitlements.
sign() {
    local item identifier entitlements="$top/Resources/macOS/Brimvale.entitlements"
    identifier=$(plutil -extract CFBundleIdentifier raw -o - "$contents/Info.plist")
    find "$contents/Frameworks" "$contents/PlugIns" -depth \( -name '*.framework' -o -name '*.dylib' \) -print0 |
        while IFS= read -r -d '' item; do
            sign_item "$item"
        done
    sign_item "$contents/MacOS/brimvalectl" --identifier "$identifier.brimvalectl" --entitlements "$entitlements"
    sign_item "$app" --entitlements "$entitlements"
}

# sign_item ITEM OPTION…
sign_item() {
    local item=$1
    shift
    if [ -n "${SIGNING_IDENTITY:-}" ]; then
        codesign --force --sign "$SIGNING_IDENTITY" --options runtime --timestamp "$@" "$item"
    else
        # The hardened runtime loads only libraries of the program's own team, and such a signature has none.
        codesign --force --sign - "$@" "$item"
    fi
}

check_signature() {
    local team signed
    codesign --verify --deep --strict "$app"
    if [ -z "${SIGNING_IDENTITY:-}" ]; then
        echo 'Without SIGNING_IDENTITY the application is signed for this Mac only.' >&2
        return
    fi
    # An installed copy takes no update from anybody else.
    team=$(sed -n 's/.*"TeamIdentifier=\(.*\)".*/\1/p' "$top/Sources/Core/UpdateStaging.cpp")
    signed=$(codesign -dv "$app" 2>&1)
    case $signed in
        *"TeamIdentifier=$team"*) ;;
        *) end "SIGNING_IDENTITY is not one of team $team, and installed copies take updates from no other." ;;
    esac
}

main "$@"
