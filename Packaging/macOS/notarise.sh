#!/usr/bin/env bash
# Has Apple notarise an application or a disk image, and attaches the ticket to it:
#
#   Packaging/macOS/notarise.sh ITEM
#
# The account is taken from the environment, either as a profile that `xcrun notarytool store-credentials` has put
# into the keychain, or as a key of App Store Connect:
#
# NOTARY_PROFILE    the name of the profile
# NOTARY_KEY        the file with the private key
# NOTARY_KEY_ID     its identifier
# NOTARY_ISSUER     that of the account
set -euo pipefail

main() {
    local item=${1:-} archive
    [ $# -eq 1 ] && [ -e "$item" ] || end 'give the application or the disk image to notarise.'
    account
    command -v xcrun >/dev/null || end 'xcrun is missing: notarising takes a Mac with Xcode.'
    case $item in
        *.app)
            # The service takes no folders.
            archive=$(mktemp -d)/${item##*/}.zip
            ditto -c -k --keepParent "$item" "$archive"
            submit "$archive"
            rm -r "${archive%/*}"
            ;;
        *) submit "$item" ;;
    esac
    xcrun stapler staple "$item"
    xcrun stapler validate "$item"
}

end() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

account() {
    if [ -n "${NOTARY_PROFILE:-}" ]; then
        account=(--keychain-profile "$NOTARY_PROFILE")
    elif [ -n "${NOTARY_KEY:-}" ] && [ -n "${NOTARY_KEY_ID:-}" ] && [ -n "${NOTARY_ISSUER:-}" ]; then
        account=(--key "$NOTARY_KEY" --key-id "$NOTARY_KEY_ID" --issuer "$NOTARY_ISSUER")
    else
        end 'set NOTARY_PROFILE, or NOTARY_KEY, NOTARY_KEY_ID and NOTARY_ISSUER.'
    fi
}

# Waits for the verdict. A refusal has status 0 as well, so the words count; the log tells the reasons.
submit() {
    local said
    said=$(xcrun notarytool submit "$1" "${account[@]}" --wait 2>&1) || end "$said"
    printf '%s\n' "$said"
    case $said in
        *'status: Accepted'*) ;;
        *)
            xcrun notarytool log "$(printf '%s\n' "$said" | awk '$1 == "id:" { print $2; exit }')" \
                "${account[@]}" >&2 || true
            end "${1##*/} was not accepted."
            ;;
    esac
}

main "$@"
