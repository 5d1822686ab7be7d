#include "Core/Apps/Linux/LastUse.h"

#include "Base/FileURL.h"
#include "Core/Apps/Linux/DesktopEntry.h"
#include "Platform/FileContents.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <string_view>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostRecordBytes = 32 << 20;

/// The value of an attribute in an XML element; empty where it has none.
std::string_view attribute(std::string_view element, std::string_view name) {
    for (std::size_t at = element.find(name); at != std::string_view::npos; at = element.find(name, at + 1)) {
        const std::string_view rest = element.substr(at + name.size());
        if (at > 0 && element[at - 1] == ' ' && rest.starts_with("=\""))
            return rest.substr(2, rest.find('"', 2) - 2);
    }
    return {};
}

/// Calls `use` with the inside of each element of this name.
template<class Use>
void forEachElement(std::string_view document, std::string_view name, const Use &use) {
    const std::string start = '<' + std::string(name) + ' ';
    for (std::size_t at = document.find(start); at != std::string_view::npos;
         at = document.find(start, at + 1))
        use(document.substr(at, document.find('>', at) - at));
}

std::string withEntitiesResolved(std::string_view text) {
    std::string resolved(text);
    for (const auto &[entity, character] :
         {std::pair("&apos;", "'"), std::pair("&quot;", "\""), std::pair("&amp;", "&")})
        for (std::size_t at = resolved.find(entity); at != std::string::npos;
             at = resolved.find(entity, at + 1))
            resolved.replace(at, std::string_view(entity).size(), character);
    return resolved;
}

/// The seconds since 1970 in a text.
std::optional<Date> dateOfSeconds(std::string_view text) {
    std::int64_t seconds = 0;
    constexpr std::int64_t endOfDates = std::int64_t{1} << 33;
    if (std::from_chars(text.data(), text.data() + text.size(), seconds).ec != std::errc() || seconds <= 0 ||
        seconds > endOfDates)
        return std::nullopt;
    return Date(std::chrono::seconds(seconds));
}

int numberIn(std::string_view text) {
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// A moment such as "2026-03-01T09:30:00.123Z", to the second.
std::optional<Date> dateOfIso(std::string_view text) {
    using namespace std::chrono;
    if (text.size() < 19 || text[4] != '-' || text[10] != 'T')
        return std::nullopt;
    const year_month_day day(year(numberIn(text.substr(0, 4))),
                             month(static_cast<unsigned>(numberIn(text.substr(5, 2)))),
                             std::chrono::day(static_cast<unsigned>(numberIn(text.substr(8, 2)))));
    if (!day.ok())
        return std::nullopt;
    return Date(sys_days(day) + hours(numberIn(text.substr(11, 2))) + minutes(numberIn(text.substr(14, 2))) +
                seconds(numberIn(text.substr(17, 2))));
}

} // namespace

LastUse::LastUse(const DesktopPlaces &places) {
    for (const std::string &data : places.ownData) {
        readWindows(
            contentsOfFile(joinPath(data, "gnome-shell/application_state"), mostRecordBytes).value_or(""));
        readDocuments(contentsOfFile(joinPath(data, "recently-used.xbel"), mostRecordBytes).value_or(""));
    }
}

void LastUse::note(const std::string &name, Date date) {
    Date &latest = dates_.try_emplace(name, date).first->second;
    latest = std::max(latest, date);
}

void LastUse::readWindows(const std::string &record) {
    constexpr std::string_view ending = ".desktop";
    forEachElement(record, "application", [&](std::string_view element) {
        std::string_view id = attribute(element, "id");
        if (id.ends_with(ending))
            id.remove_suffix(ending.size());
        if (const std::optional<Date> date = dateOfSeconds(attribute(element, "last-seen"));
            date && !id.empty())
            note(std::string(id), *date);
    });
}

/// The program is in the command of a document's application: "'gimp %u'".
void LastUse::readDocuments(const std::string &list) {
    forEachElement(list, "bookmark:application", [&](std::string_view element) {
        const std::optional<Date> date = dateOfIso(attribute(element, "modified"));
        if (!date)
            return;
        std::string command = withEntitiesResolved(attribute(element, "exec"));
        std::erase(command, '\'');
        if (const std::vector<std::string> words = commandWords(command); !words.empty())
            note(words.front().substr(words.front().rfind('/') + 1), *date);
        if (const std::string_view name = attribute(element, "name"); !name.empty())
            note(withEntitiesResolved(name), *date);
    });
}

std::optional<Date> LastUse::of(const InstalledApp &app) const {
    std::optional<Date> latest;
    for (const std::vector<std::string> *texts :
         {&app.names.identifiers, &app.names.programs, &app.names.names})
        for (const std::string &text : *texts)
            if (const auto date = dates_.find(text); date != dates_.end())
                latest = std::max(latest.value_or(date->second), date->second);
    return latest;
}

} // namespace brimvale::linuxApps
