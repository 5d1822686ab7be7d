#pragma once

#include "Base/Result.h"

#include <string>

namespace brimvale {

/// What can be wrong with an update itself.
enum class UpdateError { badResponse, checksumMismatch, unpackFailed, signatureInvalid, wrongTeam };

/// The sentence that the user reads about it.
[[nodiscard]] const char *localizedDescription(UpdateError error);

/// Why a step of an update failed: an error of the update's own, or what the network, the file system or the
/// decoding of the feed had to say.
struct UpdateFailure {
    std::string localizedDescription; ///< a readable sentence

    explicit UpdateFailure(std::string sentence);
    UpdateFailure(UpdateError error);

    friend bool operator==(const UpdateFailure &, const UpdateFailure &) = default;
};

/// What a step of an update answers.
template<class Value>
using UpdateResult = Result<Value, UpdateFailure>;

} // namespace brimvale
