#include "Core/Text/SnapshotName.h"

namespace brimvale::SnapshotName {

namespace {

constexpr std::string_view prefix = "com.apple.TimeMachine.";
constexpr std::string_view suffix = ".local";

void eraseEvery(std::string_view part, std::string &text) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at))
        text.erase(at, part.size());
}

} // namespace

bool isOne(std::string_view name) {
    return name.starts_with(prefix);
}

std::string stamp(std::string name) {
    eraseEvery(prefix, name);
    eraseEvery(suffix, name);
    return name;
}

} // namespace brimvale::SnapshotName
