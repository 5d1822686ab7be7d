#include "Core/Update/UpdateState.h"

#include <utility>

namespace brimvale {

const char *localizedDescription(UpdateError error) {
    switch (error) {
    case UpdateError::badResponse:
        return "The update server did not answer properly.";
    case UpdateError::checksumMismatch:
        return "The download did not match its checksum and was discarded.";
    case UpdateError::unpackFailed:
        return "The update could not be unpacked.";
    case UpdateError::signatureInvalid:
        return "The downloaded app is not validly signed and was discarded.";
    case UpdateError::wrongTeam:
        return "The downloaded app is signed by someone else and was discarded.";
    }
    return "";
}

UpdateFailure::UpdateFailure(std::string sentence) : localizedDescription(std::move(sentence)) {}

UpdateFailure::UpdateFailure(UpdateError error)
    : localizedDescription(brimvale::localizedDescription(error)) {}

} // namespace brimvale
