#include "Core/Apps/Linux/SoftwareLinks.h"

#include "Base/Text.h"
#include "Core/Apps/Linux/AppFinders.h"
#include "Core/Apps/Linux/EntrySearch.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <optional>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostDescriptionBytes = 1 << 20;
constexpr std::string_view linkType = "x-scheme-handler/appstream";
constexpr std::string_view idEnding = ".desktop";

bool isLinkOpener(const DesktopEntry &entry, const DesktopPlaces &places) {
    return std::find(entry.types.begin(), entry.types.end(), linkType) != entry.types.end() &&
           !programFile(entry.program(), places).empty();
}

/// An element of XML.
struct Element {
    std::string_view attributes;
    std::string_view text; ///< before the first element inside
    std::size_t end;       ///< where to look for the next one
};

/// The first element with this name at `start` or after it.
std::optional<Element> elementIn(std::string_view xml, std::string_view name, std::size_t start = 0) {
    const std::string opening = std::string("<").append(name);
    for (std::size_t at = xml.find(opening, start); at != std::string_view::npos;
         at = xml.find(opening, at + 1)) {
        const std::size_t inside = at + opening.size();
        const std::size_t close = xml.find('>', inside);
        if (close == std::string_view::npos)
            return std::nullopt;
        if (xml[inside] != '>' && xml[inside] != ' ' && xml[inside] != '\n')
            continue; // a longer name
        const std::size_t end = std::min(xml.find('<', close), xml.size());
        return Element{xml.substr(inside, close - inside), trimmed(xml.substr(close + 1, end - close - 1)),
                       end};
    }
    return std::nullopt;
}

std::string entryOfComponent(std::string_view id) {
    return std::string(id.ends_with(idEnding) ? id.substr(0, id.size() - idEnding.size()) : id);
}

} // namespace

SoftwareLinks::SoftwareLinks(const DesktopPlaces &places, const std::vector<DesktopEntry> &entries) {
    if (std::none_of(entries.begin(), entries.end(),
                     [&](const DesktopEntry &entry) { return isLinkOpener(entry, places); }))
        return;
    for (const std::string &data : places.data)
        for (const char *kind : {"metainfo", "appdata"}) {
            const std::string folder = joinPath(data, kind);
            for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>()))
                if (name.ends_with(".xml"))
                    readDescription(
                        contentsOfFile(joinPath(folder, name), mostDescriptionBytes).value_or(""));
        }
}

/// Notes the entries that start the component: those that it names, or the one with its own name.
void SoftwareLinks::readDescription(std::string_view bytes) {
    const std::optional<Element> id = elementIn(bytes, "id");
    if (!id || !isInstalledName(id->text))
        return;
    const std::string component(id->text);
    components_.try_emplace(entryOfComponent(component), component);
    for (std::optional<Element> one = elementIn(bytes, "launchable"); one;
         one = elementIn(bytes, "launchable", one->end))
        if (one->attributes.find("desktop-id") != std::string_view::npos)
            components_.try_emplace(entryOfComponent(one->text), component);
}

std::string SoftwareLinks::of(const std::string &entry) const {
    const auto found = components_.find(entry);
    return found == components_.end() ? "" : std::string("appstream:").append(found->second);
}

} // namespace brimvale::linuxApps
