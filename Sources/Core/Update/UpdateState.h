#pragma once

#include "Base/Result.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace brimvale {

/// The steps that a self-update goes through:
/// idle → checking → available, upToDate, failed or idle; available → downloading → readyToRelaunch or
/// failed.
namespace updateState {

/// There is a newer build.
struct Available {
    std::string version;
    std::int64_t build = 0;
    std::optional<std::string> notes;
    friend bool operator==(const Available &, const Available &) = default;
};

/// The archive is on its way, or is being unpacked and verified.
struct Downloading {
    double progress = 0; ///< 0 to 1; stays 0 where the server does not tell the size
    friend bool operator==(const Downloading &, const Downloading &) = default;
};

struct Failed {
    std::string message; ///< a readable sentence
    friend bool operator==(const Failed &, const Failed &) = default;
};

struct Idle {
    friend bool operator==(const Idle &, const Idle &) = default;
};

struct Checking {
    friend bool operator==(const Checking &, const Checking &) = default;
};

struct UpToDate {
    friend bool operator==(const UpToDate &, const UpToDate &) = default;
};

/// The new application is staged and verified.
struct ReadyToRelaunch {
    friend bool operator==(const ReadyToRelaunch &, const ReadyToRelaunch &) = default;
};

} // namespace updateState

/// How far a self-update has got.
using UpdateState =
    std::variant<updateState::Available, updateState::Downloading, updateState::Failed, updateState::Idle,
                 updateState::Checking, updateState::UpToDate, updateState::ReadyToRelaunch>;

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
