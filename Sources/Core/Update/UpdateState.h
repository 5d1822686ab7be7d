#pragma once

#include "Base/Result.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace brimvale {

/// The states of a self-update: idle → checking → available, upToDate, failed or idle; available →
/// downloading → readyToRelaunch or failed.
namespace updateState {

/// There is a newer build.
struct Available {
    std::string version;
    std::int64_t build = 0;
    std::optional<std::string> notes;
    friend bool operator==(const Available &, const Available &) = default;
};

/// The archive is being downloaded, unpacked or verified.
struct Downloading {
    double progress = 0; ///< 0 to 1; stays 0 if the server does not send the size
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

/// The current state of a self-update.
using UpdateState =
    std::variant<updateState::Available, updateState::Downloading, updateState::Failed, updateState::Idle,
                 updateState::Checking, updateState::UpToDate, updateState::ReadyToRelaunch>;

/// The errors of an update itself.
enum class UpdateError { badResponse, checksumMismatch, unpackFailed, signatureInvalid, wrongTeam };

/// The sentence that the user reads about an error.
[[nodiscard]] const char *localizedDescription(UpdateError error);

/// The failure of a step: an error of the update itself, or one from the network, the file system or reading
/// the feed.
struct UpdateFailure {
    std::string localizedDescription; ///< a readable sentence

    explicit UpdateFailure(std::string sentence);
    UpdateFailure(UpdateError error);

    friend bool operator==(const UpdateFailure &, const UpdateFailure &) = default;
};

/// The result of a step of an update.
template<class Value>
using UpdateResult = Result<Value, UpdateFailure>;

} // namespace brimvale
