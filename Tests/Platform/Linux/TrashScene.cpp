#include "Platform/Linux/TrashScene.h"

#include "Platform/Trash.h"
#include "Support/AtPath.h"
#include "Support/ChildProcess.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>

namespace brimvale::testing {

namespace fs = std::filesystem;

namespace {

std::string decoded(const std::string &text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bytes.push_back(text[i] != '%' ? text[i]
                                       : static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16)));
        i += text[i] == '%' ? 2U : 0U;
    }
    return bytes;
}

} // namespace

std::string outcome(const std::string &path) {
    const std::optional<FileError> error = testing::moveToTrashAt(FileURL(path));
    if (!error)
        return "trashed";
    return std::to_string(error->code) +
           (error->underlying ? " over " + std::to_string(error->underlying->code) : "");
}

std::map<std::string, std::string> originalPaths(const std::string &trash) {
    std::map<std::string, std::string> paths;
    const std::string suffix = ".trashinfo";
    for (const auto &entry : fs::directory_iterator(trash + "/info")) {
        const std::string name = entry.path().filename().native();
        const std::string text = contentOf(entry.path().native());
        const std::string item = name.substr(0, name.size() - suffix.size());
        constexpr std::string_view head = "[Trash Info]\nPath=", date = "\nDeletionDate=";
        const std::size_t end = text.find(date);
        std::tm time{};
        const bool isWellFormed = name.ends_with(suffix) && text.starts_with(head) &&
                                  end != std::string::npos &&
                                  strptime(text.c_str() + end + date.size(), "%Y-%m-%dT%H:%M:%S", &time) ==
                                      text.data() + text.size() - 1;
        paths[item] = !isWellFormed ? "ill-formed: " + text
                      : !isThere(trash + "/files/" + item)
                          ? "no item"
                          : decoded(text.substr(head.size(), end - head.size()));
    }
    for (const auto &entry : fs::directory_iterator(trash + "/files"))
        paths.try_emplace(entry.path().filename().native(), "no info");
    return paths;
}

void inHome(const std::function<void(const TemporaryFolder &)> &test, As user) {
    inChild([&] {
        if (user == As::ordinaryUser)
            becomeOrdinaryUser();
        const TemporaryFolder folder;
        setenv("XDG_DATA_HOME", folder.path("home/data").c_str(), 1);
        folder.makeFolder("home");
        test(folder);
    });
}

} // namespace brimvale::testing
