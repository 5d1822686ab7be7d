#pragma once

#include "Base/FileURL.h"
#include "Base/Result.h"
#include "Platform/Host.h"

#include <optional>
#include <string>
#include <string_view>

namespace brimvale::sample {

/// What the option "--sample" asks for.
enum class Wish {
    use,    ///< the sample as it is, built if it is missing
    useNew, ///< a sample as on the first day
    remove
};

/// The option's value: empty, "new" or "remove". Nothing for any other.
[[nodiscard]] std::optional<Wish> wishNamed(std::string_view value);

/// Makes this program show a sample of a disk with this system in place of the computer, and confines it to
/// that: its home, its tools and its volumes are those of the sample. Call it before anything reads the disk
/// and before there is a window. The folder that stands for "/"; or the reason why there is no sample, as a
/// sentence.
[[nodiscard]] Result<FileURL, std::string> useSample(System system, bool isNew);

/// A sentence about a sample that is shown: where it is, and how it is removed with this program.
[[nodiscard]] std::string noteAbout(const FileURL &disk, std::string_view program);

/// Removes the user's samples. Why that failed, as a sentence.
[[nodiscard]] std::optional<std::string> removeSample();

} // namespace brimvale::sample
