#include "Core/Removal/SameContents.h"

#include "Platform/Dataless.h"
#include "Platform/SteadyFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace brimvale {

namespace {

constexpr std::int64_t bytesAtOnce = 1 << 20;

bool isOpenAs(const SteadyFile &file, const FileIdentity &identity) {
    return file.isOpen() && file.record().identity == identity;
}

} // namespace

std::optional<bool> haveSameContents(const KnownFile &one, const KnownFile &other, const StopFlag &stopped) {
    const NoMaterialization guard;
    const SteadyFile a(one.path), b(other.path);
    if (!isOpenAs(a, one.identity) || !isOpenAs(b, other.identity))
        return std::nullopt;
    const std::int64_t length = a.record().length;
    bool areEqual = length == b.record().length;
    std::vector<char> bytesOfA(static_cast<std::size_t>(std::min(length, bytesAtOnce)));
    std::vector<char> bytesOfB(bytesOfA.size());
    std::int64_t offset = 0;
    while (areEqual && offset < length) {
        if (stopped.isSet())
            return std::nullopt;
        const std::optional<std::string_view> pieceOfA = a.read(offset, bytesOfA);
        const std::optional<std::string_view> pieceOfB = b.read(offset, bytesOfB);
        if (!pieceOfA || !pieceOfB || pieceOfA->empty())
            return std::nullopt;
        areEqual = *pieceOfA == *pieceOfB;
        offset += static_cast<std::int64_t>(pieceOfA->size());
    }
    return a.isUnchanged() && b.isUnchanged() ? std::optional(areEqual) : std::nullopt;
}

} // namespace brimvale
