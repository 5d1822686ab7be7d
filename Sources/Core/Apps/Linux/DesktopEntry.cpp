#include "Core/Apps/Linux/DesktopEntry.h"

#include "Base/KeyFile.h"

#include <algorithm>
#include <utility>

namespace brimvale::linuxApps {

namespace {

constexpr std::string_view mainGroup = "Desktop Entry";

/// Programs that only start another one.
constexpr std::string_view starters[] = {"env",         "nice",    "ionice",   "gamemoderun", "mangohud",
                                         "prime-run",   "optirun", "firejail", "pkexec",      "sudo",
                                         "systemd-run", "setsid",  "nohup",    "primusrun"};
constexpr std::string_view shells[] = {"sh", "bash", "dash", "zsh"};

template<std::size_t count>
bool isOneOf(std::string_view program, const std::string_view (&names)[count]) {
    const std::string_view name = program.substr(program.rfind('/') + 1);
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

std::string translated(const KeyFile &file, std::string_view key, const std::vector<std::string> &locales) {
    for (const std::string &locale : locales)
        if (std::string text = file.text(mainGroup, std::string(key) + '[' + locale + ']'); !text.empty())
            return text;
    return file.text(mainGroup, key);
}

/// Reads the words of a command one after the other.
class CommandReader {
public:
    explicit CommandReader(std::string_view line) : rest_(line) {}

    std::vector<std::string> words() {
        while (!rest_.empty()) {
            const char c = take();
            if (c == ' ' || c == '\t')
                endWord();
            else if (c == '"')
                readQuoted();
            else if (c == '%' && !rest_.empty())
                readFieldCode();
            else
                add(c == '\\' && !rest_.empty() ? take() : c);
        }
        endWord();
        return std::move(words_);
    }

private:
    char take() {
        const char c = rest_.front();
        rest_.remove_prefix(1);
        return c;
    }

    void add(char c) {
        word_ += c;
        isInWord_ = true;
    }

    void readQuoted() {
        isInWord_ = true;
        while (!rest_.empty()) {
            const char c = take();
            if (c == '"')
                return;
            word_ += c == '\\' && !rest_.empty() ? take() : c;
        }
    }

    void readFieldCode() {
        if (take() == '%')
            add('%');
    }

    void endWord() {
        if (isInWord_)
            words_.push_back(std::exchange(word_, {}));
        isInWord_ = false;
    }

    std::string_view rest_;
    std::vector<std::string> words_;
    std::string word_;
    bool isInWord_ = false;
};

} // namespace

std::vector<std::string> localeEndings(std::string_view locale) {
    const std::size_t at = std::min(locale.find('@'), locale.size());
    const std::string modifier(locale.substr(at));
    const std::string_view place = locale.substr(0, std::min(at, locale.find('.')));
    const std::string language(place.substr(0, place.find('_')));
    if (language.empty() || language == "C" || language == "POSIX")
        return {};
    std::vector<std::string> endings;
    for (const std::string &base : {std::string(place), language})
        for (const std::string &end : {modifier, std::string()})
            if (std::string ending = base + end;
                std::find(endings.begin(), endings.end(), ending) == endings.end())
                endings.push_back(std::move(ending));
    return endings;
}

std::vector<std::string> commandWords(std::string_view line) {
    return CommandReader(line).words();
}

std::string DesktopEntry::program() const {
    for (std::size_t i = 0; i < command.size(); ++i) {
        const std::string &word = command[i];
        if (isOneOf(word, shells))
            return i + 1 < command.size() && !command[i + 1].starts_with('-') ? command[i + 1] : "";
        const bool isAssignment = i > 0 && word.find('=') < word.find('/');
        if (!isOneOf(word, starters) && !isAssignment && !(i > 0 && word.starts_with('-')))
            return word;
    }
    return "";
}

DesktopEntry parseDesktopEntry(std::string id, std::string path, std::string_view bytes,
                               const std::vector<std::string> &locales) {
    const KeyFile file(bytes);
    const auto text = [&](std::string_view key) { return file.text(mainGroup, key); };
    DesktopEntry entry{.id = std::move(id), .path = std::move(path)};
    entry.name = translated(file, "Name", locales);
    entry.icon = translated(file, "Icon", locales);
    entry.command = commandWords(text("Exec"));
    entry.tryCommand = text("TryExec");
    entry.windowClass = text("StartupWMClass");
    entry.version = text("X-AppImage-Version");
    entry.flatpak = text("X-Flatpak");
    entry.snap = text("X-SnapInstanceName");
    entry.commonID = text("X-SnapCommonID");
    entry.categories = file.list(mainGroup, "Categories");
    if (!file.isTrue(mainGroup, "Hidden"))
        entry.types = file.list(mainGroup, "MimeType");
    entry.onlyShownIn = file.list(mainGroup, "OnlyShowIn");
    entry.notShownIn = file.list(mainGroup, "NotShowIn");
    entry.isListed = text("Type") == "Application" && !entry.name.empty() &&
                     !file.isTrue(mainGroup, "NoDisplay") && !file.isTrue(mainGroup, "Hidden") &&
                     !file.isTrue(mainGroup, "Terminal");
    return entry;
}

} // namespace brimvale::linuxApps
