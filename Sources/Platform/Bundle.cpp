#include "Platform/Bundle.h"

#include "Platform/InfoDictionary.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

namespace brimvale {

std::optional<BundleInfo> bundleInfo(const FileURL &bundle) {
    static constexpr std::array parts = {"Contents", "Info.plist", "WrappedBundle"};
    const bool isBundle = std::any_of(parts.begin(), parts.end(), [&](const char *part) {
        std::error_code error;
        return std::filesystem::exists(bundle.appending(part).path(), error);
    });
    return isBundle ? std::optional(infoDictionary(bundle)) : std::nullopt;
}

} // namespace brimvale
