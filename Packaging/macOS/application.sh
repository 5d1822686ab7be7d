#!/usr/bin/env bash
# Builds the application with everything that it needs inside, and signs it: build/dist/Brimvale.app, which is
# there only when all of that worked.
#
#   Packaging/macOS/application.sh [CMAKE-OPTION…]
#
# SIGNING_IDENTITY  the certificate to sign with, as `security find-identity -v -p codesigning` lists it. Without
#                   it the application is signed for this Mac only.
set -euo pipefail # bash 3.2 applies -e to simple commands only, so others handle their failures
top=$(CDPATH='' cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
out="$top/build/dist"
work="$top/build/package/dist"
app="$work/Brimvale.app"
contents="$app/Contents"

main() {
    local tool
    for tool in macdeployqt qtpaths; do
        command -v $tool >/dev/null || end "$tool, which comes with Qt, is not in the PATH."
    done
    for tool in codesign otool plutil xattr; do
        command -v "$tool" >/dev/null || end "$tool is missing: packaging takes a Mac with Xcode's tools."
    done
    rm -rf "$out" # leftovers of an earlier version would look like parts of this one
    build "$@"
    deploy
    check_libraries
    check_minimum
    sign
    check_signature
    mkdir -p "$out"
    mv "$app" "$out"
    echo "$out/${app##*/}"
}

end() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

build() {
    (cd "$top" && cmake --preset package "$@") || end 'the build could not be configured.'
    cmake --build "$top/build/package"
    rm -rf "$work"
    cmake --install "$top/build/package" --prefix "$work"
    [ -e "$contents/PlugIns/brimvale-network.dylib" ] || end 'the library that downloads updates is missing.'
}

# Copies Qt into the bundle, and those of its plug-ins that the programs use. macdeployqt itself would choose them by
# what is installed; it does take care of what the plug-ins in the bundle need.
deploy() {
    local plugins plugin said
    plugins=$(qtpaths --query QT_INSTALL_PLUGINS) || end 'qtpaths does not tell where the plug-ins of Qt are.'
    for plugin in platforms/libqcocoa tls/libqsecuretransportbackend; do
        mkdir -p "$contents/PlugIns/${plugin%/*}"
        cp "$plugins/$plugin.dylib" "$contents/PlugIns/${plugin%/*}" || end "Qt's plug-in $plugin is missing."
    done
    mkdir -p "$contents/Resources"
    printf '[Paths]\nPlugins = PlugIns\n' >"$contents/Resources/qt.conf"
    said=$(macdeployqt "$app" -executable="$contents/MacOS/brimvalectl" -no-plugins 2>&1) || end "$said"
}

# Every library that a program or a library in the bundle loads must be in the bundle or part of macOS. macdeployqt
# leaves out what it does not find, and exits with status 0.
check_libraries() {
    local file library inside
    while IFS= read -r -d '' file; do
        while IFS= read -r library; do
            case $library in
                /usr/lib/* | /System/Library/* | */"${file##*/}") continue ;; # the last one is its own name
                @rpath/*) inside=${library#@rpath/} ;;
                @*/Frameworks/*) inside=${library#*/Frameworks/} ;;
                @loader_path/*) inside=${library##*/} ;;
                *) inside='nothing of that name' ;;
            esac
            [ -e "$contents/Frameworks/$inside" ] ||
                end "${file##*/} loads $library, which is not in the application."
        done < <(otool -arch all -L "$file" 2>/dev/null | awk '/^\t.*[(]compatibility version/ {
            sub(/^\t/, ""); sub(/ [(]compatibility version.*/, ""); print }')
    done < <(find "$contents" -type f -print0)
}

entry() {
    plutil -extract "$1" raw -o - "$contents/Info.plist" || end "Info.plist says nothing of $1."
}

# No library in the bundle may need a newer macOS than the bundle claims, on either kind of Mac: the application
# would not start there.
check_minimum() {
    local promised file needed isKnown=''
    promised=$(entry LSMinimumSystemVersion)
    while IFS= read -r -d '' file; do
        for needed in $(otool -arch all -l "$file" 2>/dev/null | awk '$1 == "minos" { print $2 }'); do
            isKnown=yes
            is_at_least "$promised" "$needed" ||
                end "${file##*/} needs macOS $needed, and the application promises $promised:" \
                    "use a Qt for older systems, or give -DCMAKE_OSX_DEPLOYMENT_TARGET=$needed."
        done
    done < <(find "$contents" -type f -print0)
    [ -n "$isKnown" ] || end 'otool does not tell which macOS the programs need.'
}

# is_at_least VERSION MINIMUM: compares their first two numbers.
is_at_least() {
    awk -v version="$1" -v minimum="$2" 'BEGIN {
        split(version, a, "."); split(minimum, b, ".")
        exit !(a[1] + 0 > b[1] + 0 || (a[1] + 0 == b[1] + 0 && a[2] + 0 >= b[2] + 0))
    }'
}

# From the inside out, because a signature covers those inside it. macdeployqt can sign as well, but without
# entitlements.
sign() {
    local item identifier entitlements="$top/Resources/macOS/Brimvale.entitlements"
    identifier=$(entry CFBundleIdentifier)
    # Finder information and the like, which a synchronised folder gets by itself, cannot be signed.
    xattr -cr "$app" || end 'the extended attributes could not be removed.'
    while IFS= read -r -d '' item; do
        sign_item "$item"
    done < <(find "$contents/Frameworks" "$contents/PlugIns" -depth \
        \( -name '*.framework' -o -name '*.dylib' \) -print0)
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
        # The hardened runtime loads only libraries of the program's own team, and an ad-hoc signature has no team.
        codesign --force --sign - "$@" "$item"
    fi || end "${item##*/} could not be signed."
}

check_signature() {
    local team signed
    codesign --verify --deep --strict "$app" || end 'the signature is not valid.'
    if [ -z "${SIGNING_IDENTITY:-}" ]; then
        echo 'Without SIGNING_IDENTITY the application is signed for this Mac only.' >&2
        return
    fi
    # Installed copies refuse updates from any other team, so this checks what they check.
    team=$(sed -n 's/.*"TeamIdentifier=\(.*\)".*/\1/p' "$top/Sources/Core/Update/SigningTeam.h")
    [ -n "$team" ] || end 'the team from which installed copies take updates is not in SigningTeam.h.'
    signed=$(codesign -dv "$app" 2>&1) || end "$signed"
    # Not anywhere in the text, because the paths in it can have any name.
    [ "$(printf '%s\n' "$signed" | sed -n '/^TeamIdentifier=/h; ${g;p;}')" = "TeamIdentifier=$team" ] &&
        codesign --verify --deep --strict \
            -R "=anchor apple generic and certificate leaf[subject.OU] = \"$team\"" "$app" ||
        end "SIGNING_IDENTITY is not one of team $team, and installed copies take updates from no other."
}

main "$@"
