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
    local item=${1:-}
    item=${item%/}
    [ $# -eq 1 ] && [ -e "$item" ] || end 'give the application or the disk image to notarise.'
    account
    command -v xcrun >/dev/null || end 'xcrun is missing: notarising takes a Mac with Xcode.'
    case $item in
        *.app)
            # The service does not accept folders.
            work=$(mktemp -d "${TMPDIR:-/tmp}/brimvale-XXXXXX")
            trap 'rm -rf "$work"' EXIT
            ditto -c -k --keepParent "$item" "$work/${item##*/}.zip"
            submit "$work/${item##*/}.zip"
            ;;
        *) submit "$item" ;;
    esac
    xcrun stapler staple "$item" || end "the ticket could not be attached to ${item##*/}."
    xcrun stapler validate "$item" || end "the ticket of ${item##*/} is not valid."
}

end() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

account() {
    if [ -n "${NOTARY_PROFILE:-}" ]; then
        account=(--keychain-profile "$NOTARY_PROFILE")
    elif [ -n "${NOTARY_KEY:-}" ] && [ -n "${NOTARY_KEY_ID:-}" ] && [ -n "${NOTARY_ISSUER:-}" ]; then
        [ -r "$NOTARY_KEY" ] || end 'NOTARY_KEY is to name a file that can be read.' # and may be the key itself
        account=(--key "$NOTARY_KEY" --key-id "$NOTARY_KEY_ID" --issuer "$NOTARY_ISSUER")
    else
        end 'set NOTARY_PROFILE, or NOTARY_KEY, NOTARY_KEY_ID and NOTARY_ISSUER.'
    fi
}

# Waits for the result. A refusal may also have status 0, so the words decide; the log gives the reasons.
submit() {
    local said identifier status=0
    said=$(xcrun notarytool submit "$1" "${account[@]}" --wait 2>&1) || status=$?
    printf '%s\n' "$said" >&2
    case $status$said in
        0*'status: Accepted'*) return ;;
    esac
    identifier=$(printf '%s\n' "$said" | awk '$1 == "id:" && !found++ { print $2 }')
    [ -z "$identifier" ] || xcrun notarytool log "$identifier" "${account[@]}" >&2 || true
    end "${1##*/} was not accepted."
}

main "$@"
