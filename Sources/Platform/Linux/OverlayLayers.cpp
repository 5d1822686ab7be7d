#include "Platform/Linux/OverlayLayers.h"

#include "Base/FileURL.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace brimvale {

namespace {

/// Splits at colons, except at those after a backslash. Two colons in a row separate, too.
std::vector<std::string> splitLayers(std::string_view text) {
    std::vector<std::string> layers(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == ':')
            layers.emplace_back();
        else
            layers.back().push_back(text[i] == '\\' && i + 1 < text.size() ? text[++i] : text[i]);
    }
    std::erase(layers, "");
    return layers;
}

/// The layers as the mount was told them.
std::vector<std::string> givenLayers(std::string_view options) {
    std::vector<std::string> layers;
    while (!options.empty()) {
        const std::string_view option = options.substr(0, options.find(','));
        options.remove_prefix(std::min(option.size() + 1, options.size()));
        const std::string_view name = option.substr(0, option.find('='));
        const std::string value = decodedField(option.substr(std::min(name.size() + 1, option.size())));
        if (name == "upperdir" || name == "lowerdir+" || name == "datadir+")
            layers.push_back(value);
        else if (name == "lowerdir")
            for (std::string &layer : splitLayers(value))
                layers.push_back(std::move(layer));
    }
    return layers;
}

std::optional<std::string> withoutLinks(const std::string &path, MountPoints &mounts) {
    if (mounts.mayBlock(path))
        return std::nullopt;
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
    return real ? std::optional<std::string>(real.get()) : std::nullopt;
}

/// The path of a layer that is relative to one of the ancestors of `base`.
std::optional<std::string> aroundPath(const std::string &base, const std::string &layer,
                                      MountPoints &mounts) {
    for (FileURL folder(base); folder.path() != "/"; folder = folder.parent())
        if (auto found = withoutLinks(joinPath(folder.path(), layer), mounts))
            return found;
    return std::nullopt;
}

} // namespace

std::vector<std::string> overlayLayers(const Mount &mount, MountPoints &mounts) {
    if (mount.type != "overlay")
        return {};
    const std::vector<std::string> given = givenLayers(mount.options);
    const auto absolute = std::find_if(given.begin(), given.end(),
                                       [](const std::string &layer) { return layer.starts_with('/'); });
    std::vector<std::string> layers;
    for (const std::string &layer : given) {
        const bool isRelative = !layer.starts_with('/');
        // A list that would be too long is given from a folder that the layers have in common.
        std::optional<std::string> found =
            isRelative ? aroundPath(mount.point, layer, mounts) : withoutLinks(layer, mounts);
        if (!found && isRelative && absolute != given.end())
            found = aroundPath(*absolute, layer, mounts);
        if (found)
            layers.push_back(*std::move(found));
    }
    return layers;
}

} // namespace brimvale
