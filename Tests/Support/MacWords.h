#pragma once

#include <QRegularExpression>
#include <QStringList>
#include <string>

namespace brimvale::testing {

/// Those of the texts that hold a word which only a Mac's users know, one a line.
[[nodiscard]] inline std::string macTexts(const QStringList &texts) {
    static const QRegularExpression words(
        R"(\b(Macs?|macOS|Macintosh|Finder|Time Machine|Full Disk Access|App Management|Xcode|Apple|Keychain)"
        R"(|Safari|Spotlight|bundles?|Zero KB)\b|~/Library|[⌘⌥])");
    QStringList found = texts.filter(words);
    found.removeDuplicates();
    return found.join('\n').toStdString();
}

} // namespace brimvale::testing
