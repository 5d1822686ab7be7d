#include "Core/Apps/Linux/NameKeys.h"

#include "Platform/Characters.h"

#include <algorithm>

namespace brimvale::linuxApps {

namespace {

/// Shorter names match too much.
constexpr std::size_t shortestName = 4;

/// Whether an identifier begins with a domain: only then its parts are its own.
bool isOfDomain(std::string_view identifier) {
    return std::count(identifier.begin(), identifier.end(), '.') >= 2;
}

bool isPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos;
}

} // namespace

NameKeys::NameKeys(const InstalledApp &app, const std::vector<std::string> &generic) {
    std::vector<std::string> identifiers = app.names.identifiers;
    if (app.bundleID)
        identifiers.push_back(*app.bundleID);
    for (const std::string &identifier : identifiers) {
        if (!isPlainName(identifier))
            continue;
        identifiers_.push_back(identifier);
        add(identifier.substr(identifier.rfind('.') + 1), generic);
    }
    for (const auto *names : {&app.names.programs, &app.names.windowClasses, &app.names.names})
        for (const std::string &name : *names) {
            add(name, generic);
            std::string joined = name;
            std::erase(joined, ' ');
            add(joined, generic);
            std::string dashed = name;
            std::replace(dashed.begin(), dashed.end(), ' ', '-');
            add(dashed, generic);
        }
}

void NameKeys::add(std::string_view name, const std::vector<std::string> &generic) {
    std::string folded = caseFolded(name);
    if (isPlainName(name) && perceivedLength(name) >= shortestName &&
        std::find(generic.begin(), generic.end(), folded) == generic.end())
        names_.insert(std::move(folded));
}

bool NameKeys::isIdentifier(std::string_view name) const {
    return std::any_of(identifiers_.begin(), identifiers_.end(), [&](const std::string &identifier) {
        return name == identifier || (isOfDomain(identifier) && name.size() > identifier.size() &&
                                      name.starts_with(identifier) && name[identifier.size()] == '.');
    });
}

bool NameKeys::isName(std::string_view name) const {
    return names_.contains(caseFolded(name));
}

bool NameKeys::isSettingsFile(std::string_view name) const {
    for (const std::string_view ending : {"rc", ".conf", ".xml", "-layoutsrc", "staterc"})
        if (name.size() > ending.size() && name.ends_with(ending) &&
            isName(name.substr(0, name.size() - ending.size())))
            return true;
    return false;
}

bool matches(std::string_view name, std::string_view pattern) {
    return pattern.ends_with('*') ? name.starts_with(pattern.substr(0, pattern.size() - 1)) : name == pattern;
}

bool matchesAny(std::string_view name, const std::vector<std::string> &patterns) {
    return std::any_of(patterns.begin(), patterns.end(),
                       [&](const std::string &pattern) { return matches(name, pattern); });
}

} // namespace brimvale::linuxApps
