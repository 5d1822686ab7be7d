#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"
#include "Base/Result.h"
#include "Platform/Host.h"

#include <optional>
#include <string>

namespace brimvale::sample {

/// The folder with the samples of this user: in the cache folder of their home.
[[nodiscard]] FileURL sampleFolder();

/// The sample of a disk with this system, which is built where it is missing, incomplete or of another
/// version of the builder, and if `isNew`. Its folder stands for "/". Otherwise the reason, as a sentence.
/// Takes a second or two.
[[nodiscard]] Result<FileURL, std::string> preparedSample(System system, const FileURL &folder, bool isNew,
                                                          Date today = now());

/// The home on the sample of a disk with this system, inside `disk`.
[[nodiscard]] FileURL homeOnSample(System system, const FileURL &disk);

/// Removes the samples in this folder with the folder. The reason for a failure, as a sentence.
[[nodiscard]] std::optional<std::string> removeSamples(const FileURL &folder);

} // namespace brimvale::sample
