#include "Support/TestProgram.h"

#include "Platform/Host.h"

#include <array>
#include <clocale>
#include <cstdlib>
#include <string_view>
#include <unistd.h>
#include <vector>

/// What the address sanitizer asks each program for. Libraries that are not built with it, such as Qt and
/// GoogleTest, change vectors without telling it how much of them is in use.
extern "C" const char *__asan_default_options() { // NOLINT: the name is the sanitizer's
    return "detect_container_overflow=0";
}

namespace brimvale::testing {

namespace {

/// macOS takes language and region from the account, not from the environment. Arguments go before.
constexpr std::array<const char *, 4> region = {"-AppleLanguages", "(en)", "-AppleLocale", "en_US"};

void useRegionOfMac(int &argc, char **argv) {
    const std::vector<std::string_view> given(argv, argv + argc);
    if (given.size() > region.size() && given[given.size() - region.size()] == region.front()) {
        argc -= static_cast<int>(region.size());
        return;
    }
    std::vector<char *> words(argv, argv + argc);
    for (const char *word : region)
        words.push_back(const_cast<char *>(word));
    words.push_back(nullptr);
    execvp(argv[0], words.data());
}

} // namespace

void startTestProgram(int &argc, char **argv) {
    if (platformSystem() == System::macOS)
        useRegionOfMac(argc, argv);
    if (std::setlocale(LC_ALL, "C.UTF-8") != nullptr) // which not every Mac has
        setenv("LC_ALL", "C.UTF-8", 1);
    setenv("TZ", "Europe/Berlin", 1);
}

} // namespace brimvale::testing
